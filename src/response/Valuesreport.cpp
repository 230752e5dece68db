#include "response/Valuesreport.h"

#include <algorithm>

#include "numerics/Formatfunctions.h"
#include "response/Schematic.h"

namespace nerivane {
namespace {

constexpr const char* Ohm = "\u03A9";

std::string Printed(double value, PartKind kind) {
    return FormatEngineering(value, 2, kind == PartKind::Resistor ? Ohm : "F");
}

}  // namespace

std::vector<std::string> CircuitValuesReport(const SectionComponents& parts, int numSections) {
    std::vector<std::string> lines;
    for (int s = 0; s < numSections && s < MaxSections; ++s) {
        const WorkingComponents c = parts.Section(s);
        lines.push_back("Section " + std::to_string(s));
        lines.push_back("R1 = " + Printed(c.R1, PartKind::Resistor));
        lines.push_back("R2 = " + Printed(c.R2, PartKind::Resistor));
        // Negative values mark parts the topology lacks; NaN fails the test too.
        if (c.R3 >= 0.0) lines.push_back("R3 = " + Printed(c.R3, PartKind::Resistor));
        if (c.R4 >= 0.0) lines.push_back("R4 = " + Printed(c.R4, PartKind::Resistor));
        lines.push_back("C1 = " + Printed(c.C1, PartKind::Capacitor));
        if (c.C2 >= 0.0) lines.push_back("C2 = " + Printed(c.C2, PartKind::Capacitor));
        lines.emplace_back();
    }
    return lines;
}

std::vector<ReportedPart> ReportedParts(Topology topology, const SectionComponents& parts,
                                        int numSections) {
    const SectionCircuit& circuit = CircuitOf(topology);
    std::vector<ReportedPart> listed;
    for (int s = 0; s < std::min(numSections, MaxSections); ++s) {
        const WorkingComponents values = parts.Section(s);
        for (const PartValue role : {PartValue::R1, PartValue::R2, PartValue::R3, PartValue::R4,
                                     PartValue::C1, PartValue::C2}) {
            for (int i = 0; i < circuit.partCount; ++i) {
                const CircuitPart& part = circuit.parts[i];
                if (part.value != role) continue;
                const PartState state = ConditionOf(part, values).state;
                if (state == PartState::Absent) continue;
                const double value = ValueOf(values, role);
                listed.push_back({s, Designator(circuit, i, s), RoleOf(part), state, value,
                                  Printed(value, part.kind)});
            }
        }
    }
    return listed;
}

}  // namespace nerivane
