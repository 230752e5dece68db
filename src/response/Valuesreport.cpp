#include "response/Valuesreport.h"

#include "numerics/Formatfunctions.h"

namespace nerivane {
namespace {

constexpr const char* Ohm = "\u03A9";

}  // namespace

std::vector<std::string> CircuitValuesReport(const SectionComponents& parts, int numSections) {
    std::vector<std::string> lines;
    for (int s = 0; s < numSections && s < MaxSections; ++s) {
        const WorkingComponents c = parts.Section(s);
        lines.push_back("Section " + std::to_string(s));
        lines.push_back("R1 = " + FormatEngineering(c.R1, 2, Ohm));
        lines.push_back("R2 = " + FormatEngineering(c.R2, 2, Ohm));
        // Negative values mark parts the topology lacks; NaN fails the test too.
        if (c.R3 >= 0.0) lines.push_back("R3 = " + FormatEngineering(c.R3, 2, Ohm));
        if (c.R4 >= 0.0) lines.push_back("R4 = " + FormatEngineering(c.R4, 2, Ohm));
        lines.push_back("C1 = " + FormatEngineering(c.C1, 2, "F"));
        if (c.C2 >= 0.0) lines.push_back("C2 = " + FormatEngineering(c.C2, 2, "F"));
        lines.emplace_back();
    }
    return lines;
}

}  // namespace nerivane
