// Schematics of the section circuits: laid out on a grid from the circuits' description (one
// section as a picture or with its values, or the whole cascade from input to output with
// designators unique across it) and drawn through a Canvas, so the window, the command line,
// the circuit pictures and the SVG files all show the same drawing.
#pragma once

#include <string>
#include <vector>

#include "circuit/Sectioncircuits.h"
#include "response/Canvas.h"

namespace nerivane {

struct SchematicPart {
    std::string name;   // "R1" on a section, "R101" on the cascade
    std::string value;  // as printed ("1.50 kΩ", "no solution"); empty on a picture
    double exactValue;  // ohms or farads; NaN where there is none
    PartKind kind;
    bool asWire;  // a part that joins its nodes is drawn as a wire
    GridPath path;
    int symbolSegment;
    LabelSide label;
    // Where the part comes from, for whoever checks the drawing against the netlist.
    int section;
    int partIndex;  // in the section circuit's parts
};

struct SchematicOpAmp {
    OpAmpPlacement placement;
    std::string name;  // empty, or "U101"
};

struct SchematicText {
    GridPoint at;  // top left
    std::string text;
};

struct SchematicPort {
    GridPoint at;
    std::string label;  // "in", "out"
};

// Everything is in grid units; parts left out of the built circuit are not in it.
struct Schematic {
    std::vector<SchematicPart> parts;
    std::vector<GridPath> wires;
    std::vector<SchematicOpAmp> opAmps;
    std::vector<GridPoint> grounds;
    std::vector<SchematicPort> ports;
    std::vector<SchematicText> texts;
    GridPoint extent;
};

// The circuit picture of a topology: every part with its name, no values.
Schematic CircuitPicture(Topology topology);

// One section as built with these values; parts named as the report names them.
Schematic SectionSchematic(Topology topology, int section, const WorkingComponents& values);

// The bias divider of a single-supply op amp: R1 from the supply Vs to the tap Vb, R2 from
// the tap to ground and, decoupled, C from the tap to ground beside it.
Schematic BiasDividerPicture(bool decoupled);

// The cascade from input to output, sections in rows, designators unique across it and the
// title above.
Schematic CascadeSchematic(Topology topology, const SectionComponents& parts, int numSections,
                           const std::string& title);

// "R101": the part's kind, the section counted from 1, and its number within the section.
// A second part of the same value (the second C1 of a band pass) takes the next free number.
std::string Designator(const SectionCircuit& circuit, int partIndex, int section);
std::string OpAmpDesignator(int section);

// The printed value of a part in its condition: "1.50 kΩ", "no solution", "no value".
std::string PrintedValue(const CircuitPart& part, const WorkingComponents& values);

// Points where three or more connections meet, which get a dot.
std::vector<GridPoint> Junctions(const Schematic& schematic);

inline constexpr int SchematicPitch = 12;   // pixels per grid unit at scale 1
inline constexpr int SchematicMargin = 12;  // pixels around the drawing

// The picture's size in pixels at scale 1.
TextSize SchematicSize(const Schematic& schematic);

// Draws on a white background; each part is a group named by its designator.
void DrawSchematic(Canvas& canvas, const Schematic& schematic);

}  // namespace nerivane
