// A 0.5 dB Chebyshev design at 5 kHz (band 2 kHz) built through the program's own value
// calculation, so first-order sections, followers and their wired and left-out parts come out as
// a user's design has them. C1 10 nF and C2 22 nF from the 5 % series, so the notch's shunt
// capacitor 2 C1 = 20 nF is a standard value and the stored C2 is exactly the 2 C1 it assumes.
#pragma once

#include <cmath>
#include <vector>

#include "app/DesignState.h"
#include "circuit/Valuecalculations.h"
#include "numerics/Polymain.h"

namespace nerivane {

inline SectionComponents ChebyshevDesign(Topology topology, int poles, double gainDb) {
    ProtoSections prototype{};
    BuildPrototype(Response::Chebyshev, poles, 0.5, 0.0, prototype);
    std::vector<double> c1(MaxSections, 10e-9), c2(MaxSections, 22e-9);
    const ComponentInputs inputs{topology, SectionsForPoles(topology, poles), 0,         5000.0,
                                 2000.0,   std::pow(10.0, gainDb / 20.0),     c1.data(), c2.data()};
    ComponentSettings settings;
    settings.capacitorClass = *ToleranceClassOf(5);
    SectionComponents parts{};
    SectionPanelHints hints;
    Messages messages;
    CalculateComponents(inputs, prototype, settings, parts, hints, messages);
    return parts;
}

}  // namespace nerivane
