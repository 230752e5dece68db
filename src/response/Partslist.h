// The parts list a purchaser orders from: one row per part fitted in the built cascade (the
// resistors, capacitors and op amp of every section) with its designator, value as printed
// and exact, the series and tolerance class it is bought in, and how many parts share it.
#pragma once

#include <string>
#include <vector>

#include "circuit/Components.h"
#include "circuit/Componentsettings.h"

namespace nerivane {

struct PartsListRow {
    std::string designator;  // "R101"
    int section;
    std::string role;  // "R1", "C1", or "op amp"
    std::string kind;  // "resistor", "capacitor", "op amp"
    std::string printed;
    double exactValue;  // NaN where there is none (an op amp, a part without a solution)
    std::string series;
    std::string tolerance;
    int sameValueCount;  // parts of this kind with this value, this one included
    // What else fits: a notch's shunt capacitor that is not exactly 2 C1 can be two C1 in
    // parallel.
    std::string alternative = {};
};

struct PartsListDesign {
    Topology topology = Topology::VcvsLowPass;
    int numSections = 1;
    const SectionComponents* parts = nullptr;
    const ComponentSettings* settings = nullptr;  // classes, mode and op amp
    bool idealOpAmp = true;
};

std::vector<PartsListRow> PartsList(const PartsListDesign& design);

// designator,section,role,kind,value,exact_value,series,tolerance,same_value_count,
// alternative: a header and one line per row, fields with a comma or a quote quoted.
std::string PartsListCsv(const std::vector<PartsListRow>& rows);

}  // namespace nerivane
