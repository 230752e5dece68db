// A section's circuit as the drawing and the netlist describe it, for the node solver: the
// reference the section responses and the parts' sensitivities are checked against.
#pragma once

#include "Nodal.h"
#include "circuit/Sectioncircuits.h"

namespace nerivane {

// The circuit that draws and exports the section, solved node by node, with the two rules of
// the section responses: a follower's open R3 is simulated as (Ro + 1) * 10 kΩ, and the
// notch's shunt capacitor is exactly 2 * C1.
inline nodal::Circuit NodalCircuit(Topology topology, const WorkingComponents& p, double A,
                                   double Ro, bool notchShuntAsDesigned) {
    WorkingComponents simulated = p;
    if (p.R3 >= NotUsedThreshold &&
        (topology == Topology::VcvsLowPass || topology == Topology::VcvsHighPass))
        simulated.R3 = (Ro + 1.0) * 10000.0;
    if (topology == Topology::VcvsNotch && notchShuntAsDesigned) simulated.C2 = 2.0 * p.C1;
    nodal::Circuit c;
    for (const CircuitPart& part : CircuitOf(topology).Parts()) {
        const char* a = NodeName(part.from);
        const char* b = NodeName(part.to);
        const double value = ValueOf(simulated, part.value);
        const PartState state = ConditionOf(part, simulated).state;
        if (state == PartState::Wire) c.Wire(a, b);
        if (state == PartState::Placed && part.kind == PartKind::Resistor) c.Resistor(a, b, value);
        if (state == PartState::Placed && part.kind != PartKind::Resistor) c.Capacitor(a, b, value);
    }
    const OpAmpPins& pins = CircuitOf(topology).opAmp;
    // An op-amp input on ground or on the output is the same node under another name.
    if (pins.plus == Node::Gnd) c.Wire("p", "gnd");
    if (pins.minus == Node::Out) c.Wire("m", "out");
    c.OpAmp("p", "m", "out", A, Ro);
    return c;
}

}  // namespace nerivane
