// The op amp a section needs: the smallest gain-bandwidth product of a single-pole op amp
// (0 ohms) that keeps the section within 0.1 dB of its ideal response wherever that is within
// 20 dB of its peak over the sweep.
#pragma once

#include <span>

#include "circuit/Components.h"
#include "circuit/Sectionfigures.h"

namespace nerivane {

// A point of a fixed grid, 1 % a step, rather than a number a search lands on, so a build's
// rounding does not show in it; NaN when none up to 10 THz does.
double GainBandwidthNeeded(const IdealSection& ideal, std::span<const double> frequencies,
                           double f0Hz);

// The largest departure in dB of a section with a single-pole op amp of this GBW (0 ohms)
// from its ideal response, over the points of the sweep within 20 dB of the ideal peak.
double DepartureFromIdealDb(Topology topology, const WorkingComponents& parts, double gainBandwidth,
                            std::span<const double> frequencies);

}  // namespace nerivane
