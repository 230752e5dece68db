// How hard each part of a section pulls on its f0 and Q: the change, in percent, of the ideal
// section's figures when that part alone is 1 % larger. The part that pulls hardest is the one
// to buy with the tightest tolerance.
#pragma once

#include <span>
#include <vector>

#include "circuit/Sectionfigures.h"

namespace nerivane {

struct PartSensitivity {
    const char* part;  // "R1" .. "C2"
    double f0Percent;
    double qPercent;  // NaN for a first-order section
};

// One entry per fitted part, in the order of SectionParts; figures are the section's own.
std::vector<PartSensitivity> SensitivitiesOf(Topology topology, const WorkingComponents& parts,
                                             const SectionFigures& figures);

// The part that moves f0 or Q most; nullptr when no part moves either by a number.
const PartSensitivity* MostSensitive(std::span<const PartSensitivity> sensitivities);

}  // namespace nerivane
