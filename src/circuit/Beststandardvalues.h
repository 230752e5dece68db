// A section's resistors as standard values. Plain rounding takes each resistor's nearest value
// on its own; the search tries each resistor's neighbours below and above together and keeps
// the combination whose ideal f0 and Q come nearest the exact section's.
#pragma once

#include "circuit/Components.h"
#include "circuit/Componentsettings.h"

namespace nerivane {

// How far the standard values move a section's f0 and Q from the exact design's, as
// fractions (|f0 / f0 exact - 1|; Q likewise, NaN for a first-order section): rounded plainly,
// and as the search left them.
struct StandardValueErrors {
    int section = 0;
    double f0Before = 0.0;
    double qBefore = 0.0;
    double f0After = 0.0;
    double qAfter = 0.0;
};

// exact with each resistor at its nearest standard value; capacitors stay as they are.
WorkingComponents RoundedResistors(const WorkingComponents& exact,
                                   const ComponentSettings& settings);

// exact with its resistors at the best standard values; markers, zero and NaN stay as they
// are, and so does plain rounding when nothing beats it. errors gets both errors.
WorkingComponents SearchedResistors(Topology topology, const WorkingComponents& exact,
                                    const ComponentSettings& settings, StandardValueErrors& errors);

}  // namespace nerivane
