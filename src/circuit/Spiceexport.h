// A SPICE netlist of the whole cascade: each section a subcircuit wired as the section
// circuits are, the op amp a subcircuit of its own (single pole, the design's GBW and output
// resistance) that a user can replace by a vendor model, an AC source and an .ac sweep over
// the design's sweep. It runs in ngspice as it stands.
#pragma once

#include <optional>
#include <string>

#include "circuit/Components.h"

namespace nerivane {

struct SpiceDesign {
    Topology topology = Topology::VcvsLowPass;
    int numSections = 1;
    double freqMin = 500.0;  // Hz, the sweep of the design
    double freqMax = 50000.0;
    int points = 1024;
    bool linearSweep = false;
    double gainBandwidth = 1e8;  // Hz
    double outputResistance = 0.0;
    bool idealOpAmp = true;
    std::string title = "Nerivane filter";
    // When set, every op amp is a constant real gain A behind the output resistance (what a
    // comparison with the internal simulation at a fixed gain needs).
    std::optional<double> constantGain;
};

// Nodes: the cascade's input "in"; section k's output "s<k>" (s0, s1, ...), so the last
// section's output is the filter's output.
std::string SpiceNetlist(const SpiceDesign& design, const SectionComponents& parts);

}  // namespace nerivane
