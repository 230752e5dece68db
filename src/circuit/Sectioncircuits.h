// The seven section circuits as data: every part with the two nodes it sits between, the op
// amp's pins, and where each part goes on a drawing. The SPICE export and the schematics both
// read this one description, so a drawn circuit is the exported one.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>

#include "circuit/Components.h"

namespace nerivane {

enum class Node : std::uint8_t { In, Out, Gnd, A, B, P, M };

// "in", "out", "gnd", "a", "b", "p", "m": the names the netlists use.
const char* NodeName(Node node);

enum class PartKind : std::uint8_t { Resistor, Capacitor };

// Which of a section's stored values a part takes.
enum class PartValue : std::uint8_t { R1, R2, R3, R4, C1, C2 };

double ValueOf(const WorkingComponents& values, PartValue which);

// A point of the drawing grid; x to the right, y down.
struct GridPoint {
    int x = 0;
    int y = 0;
    friend bool operator==(GridPoint, GridPoint) = default;
};

inline constexpr int MaxPathPoints = 4;

// A polyline on the grid, horizontal and vertical segments only.
struct GridPath {
    GridPoint points[MaxPathPoints];
    int count = 0;
    std::span<const GridPoint> Points() const { return {points, static_cast<std::size_t>(count)}; }
};

// The polyline through these points, a point that repeats the one before it dropped.
GridPath PathThrough(std::initializer_list<GridPoint> points);

enum class LabelSide : std::uint8_t { Above, Below, Left, Right };

// Where a part is drawn: a path from its first node's point to its second's, the symbol on
// one segment of it and the name and value beside the symbol. A part to ground runs down
// to its ground symbol.
struct PartPlacement {
    GridPath path;
    int symbolSegment = 0;
    LabelSide label = LabelSide::Above;
};

struct CircuitPart {
    const char* name;  // the element's name in the netlist: "R1", "C1b" for a second C1
    PartKind kind;
    PartValue value;
    Node from;
    Node to;
    // A first-order high pass has no R1; its series capacitor (the VCVS C1, the second MFB
    // C1) then joins its nodes, whatever value it holds.
    bool wiredWhenR1Open = false;
    PartPlacement placement;
};

// A connection drawn between the points of one node.
struct NodeWire {
    Node node;
    GridPath path;
};

struct OpAmpPins {
    Node plus;
    Node minus;
    Node output;
};

// The op amp's triangle: its inputs on the left edge two units above and below the middle,
// its output six units to the right of it.
struct OpAmpPlacement {
    GridPoint inputsMiddle;
    bool plusOnTop = true;
    GridPoint PlusPin() const { return {inputsMiddle.x, inputsMiddle.y + (plusOnTop ? -2 : 2)}; }
    GridPoint MinusPin() const { return {inputsMiddle.x, inputsMiddle.y + (plusOnTop ? 2 : -2)}; }
    GridPoint OutputPin() const { return {inputsMiddle.x + 6, inputsMiddle.y}; }
};

// The part's role, the stored value it takes ("C1" for both C1 of a band pass), as the report
// and the parts list name it.
std::string RoleOf(const CircuitPart& part);
// The second of two parts that take the same value ("C1b").
bool IsSecondPart(const CircuitPart& part);

inline constexpr int MaxCircuitParts = 7;
inline constexpr int MaxNodeWires = 5;

struct SectionCircuit {
    const char* title;        // "VCVS low pass (Sallen-Key)"
    const char* pictureName;  // the circuit picture's file name, "VCVS_LPF.bmp"
    const char* helpPage;     // its help page's, "VCVS_LPF.md"
    CircuitPart parts[MaxCircuitParts];
    int partCount = 0;
    OpAmpPins opAmp;
    NodeWire wires[MaxNodeWires];
    int wireCount = 0;
    // Ground symbols that no part carries (an op-amp input tied to ground).
    GridPoint grounds[1];
    int groundCount = 0;
    OpAmpPlacement opAmpPlacement;
    GridPoint input;   // where the section's input arrives
    GridPoint output;  // where its output leaves
    GridPoint extent;  // the drawing's size, labels included

    std::span<const CircuitPart> Parts() const {
        return {parts, static_cast<std::size_t>(partCount)};
    }
    std::span<const NodeWire> Wires() const { return {wires, static_cast<std::size_t>(wireCount)}; }
    std::span<const GridPoint> Grounds() const {
        return {grounds, static_cast<std::size_t>(groundCount)};
    }
};

// The circuit of a topology index 0 .. 6.
const SectionCircuit& CircuitOf(Topology topology);

// What a part is in a built section, from its stored value and the markers.
enum class PartState : std::uint8_t {
    Placed,      // a part with this value
    Wire,        // joins its nodes (a 0-ohm resistor, an unused series capacitor)
    LeftOut,     // open: not fitted
    NoSolution,  // no real, positive value was found; the stored number stands
    NoValue,     // not a number: cannot be fitted
    Absent,      // marked as a part this section does not have
};

struct PartCondition {
    PartState state;
    const char* reason;  // why it is not placed as it stands ("open", "= 0"), or empty
};

PartCondition ConditionOf(const CircuitPart& part, const WorkingComponents& values);

// True when any resistor of the section has no real, positive value.
bool SectionHasFailed(const WorkingComponents& values);

}  // namespace nerivane
