// The circuit values report: every section's resistors and capacitors in engineering
// notation, the lines the user copies onto a schematic and that "Save Circuit Values" writes.
#pragma once

#include <string>
#include <vector>

#include "circuit/Components.h"

namespace nerivane {

// "Section 0", "R1 = 1.50 kΩ", ..., then an empty line, for each section. R3, R4 and C2 are
// left out where the topology has no such part; open parts read "Not Used".
std::vector<std::string> CircuitValuesReport(const SectionComponents& parts, int numSections);

// The two lines the text export puts before the report.
inline constexpr const char* ReportOrderNote =
    "Sections are listed in order of highest damping factor to lowest.";
inline constexpr const char* ReportOvershootNote =
    "The highest damping factors will have the least overshoot.";

}  // namespace nerivane
