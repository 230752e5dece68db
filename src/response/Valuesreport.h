// The circuit values report: every section's resistors and capacitors in engineering
// notation, the lines the user copies onto a schematic and that "Save Circuit Values" writes.
#pragma once

#include <string>
#include <vector>

#include "circuit/Components.h"
#include "circuit/Sectioncircuits.h"

namespace nerivane {

// "Section 0", "R1 = 1.50 kΩ", ..., then an empty line, for each section. R3, R4 and C2 are
// left out where the topology has no such part; open parts read "Not Used".
std::vector<std::string> CircuitValuesReport(const SectionComponents& parts, int numSections);

// A fitted or left-out part as the report prints it, for a script that wants the parts without
// reading the report's text: its designator, what it is in the built section and its value.
struct ReportedPart {
    int section = 0;
    std::string designator;  // "R101"
    std::string role;        // "R1"; both C1 of a band pass are "C1"
    PartState state = PartState::Placed;
    double value = 0.0;   // as stored, markers included
    std::string printed;  // the report's text after "R1 = "
};

// Every part of the sections' circuits but those marked absent, section by section in the
// report's order of roles.
std::vector<ReportedPart> ReportedParts(Topology topology, const SectionComponents& parts,
                                        int numSections);

// The two lines the text export puts before the report.
inline constexpr const char* ReportOrderNote =
    "Sections are listed in order of highest damping factor to lowest.";
inline constexpr const char* ReportOvershootNote =
    "The highest damping factors will have the least overshoot.";

}  // namespace nerivane
