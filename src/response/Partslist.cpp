#include "response/Partslist.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

#include "circuit/Sectioncircuits.h"
#include "numerics/Formatfunctions.h"
#include "numerics/Sivalue.h"
#include "response/Schematic.h"

namespace nerivane {
namespace {

constexpr double NoExactValue = std::numeric_limits<double>::quiet_NaN();

std::string OpAmpValue(const PartsListDesign& design) {
    if (design.idealOpAmp) return "ideal";
    return "GBW " + FormatEngineering(design.settings->gainBandwidth, 2, "Hz") + ", Ro " +
           FormatEngineering(design.settings->outputResistance, 2, "\u03A9");
}

PartsListRow PartRow(const PartsListDesign& design, const SectionCircuit& circuit, int index,
                     int section, const WorkingComponents& values) {
    const CircuitPart& part = circuit.parts[index];
    const ComponentSettings& settings = *design.settings;
    const bool resistor = part.kind == PartKind::Resistor;
    const ToleranceClass& toleranceClass =
        resistor ? settings.resistorClass : settings.capacitorClass;
    PartsListRow row;
    row.designator = Designator(circuit, index, section);
    row.section = section;
    row.role = RoleOf(part);
    row.kind = resistor ? "resistor" : "capacitor";
    row.printed = PrintedValue(part, values);
    const bool placed = ConditionOf(part, values).state == PartState::Placed;
    row.exactValue = placed ? ValueOf(values, part.value) : NoExactValue;
    // Exact resistors are what the design asks for, not values of a series.
    const bool decadeSeries = settings.build.resistorSeries != ResistorSeries::ToleranceClass;
    row.series = resistor && settings.mode == ToleranceMode::Exact ? "exact"
                 : resistor && decadeSeries ? DecadeSeriesName(settings.build.resistorSeries)
                                            : SeriesName(toleranceClass);
    row.tolerance = ToleranceCaption(toleranceClass);
    const bool notchShunt = design.topology == Topology::VcvsNotch && part.value == PartValue::C2;
    if (notchShunt && placed && values.C2 != 2.0 * values.C1) {
        row.alternative =
            "two C1 (" + FormatEngineering(values.C1, 2, "F") + ") in parallel: exactly 2 C1";
    }
    return row;
}

bool SameValue(const PartsListRow& a, const PartsListRow& b) {
    if (a.kind != b.kind) return false;
    if (std::isnan(a.exactValue) || std::isnan(b.exactValue)) return a.printed == b.printed;
    return a.exactValue == b.exactValue;
}

std::string Field(const std::string& text) {
    if (text.find_first_of(",\"\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

}  // namespace

std::vector<PartsListRow> PartsList(const PartsListDesign& design) {
    const SectionCircuit& circuit = CircuitOf(design.topology);
    std::vector<PartsListRow> rows;
    for (int s = 0; s < std::clamp(design.numSections, 0, MaxSections); ++s) {
        const WorkingComponents values = design.parts->Section(s);
        for (int i = 0; i < circuit.partCount; ++i) {
            const PartState state = ConditionOf(circuit.parts[i], values).state;
            if (state == PartState::Wire || state == PartState::LeftOut ||
                state == PartState::Absent)
                continue;
            rows.push_back(PartRow(design, circuit, i, s, values));
        }
        rows.push_back({OpAmpDesignator(s), s, "op amp", "op amp", OpAmpValue(design), NoExactValue,
                        "", "", 0});
    }
    // Section by section: resistors, capacitors, then the op amp, each by number.
    const auto rank = [](const PartsListRow& row) {
        return std::tuple(row.section,
                          row.kind == "op amp"      ? 2
                          : row.kind == "capacitor" ? 1
                                                    : 0,
                          row.designator);
    };
    std::sort(rows.begin(), rows.end(),
              [&rank](const PartsListRow& a, const PartsListRow& b) { return rank(a) < rank(b); });
    for (PartsListRow& row : rows)
        row.sameValueCount = static_cast<int>(
            std::count_if(rows.begin(), rows.end(),
                          [&row](const PartsListRow& other) { return SameValue(row, other); }));
    return rows;
}

std::string PartsListCsv(const std::vector<PartsListRow>& rows) {
    std::string text =
        "designator,section,role,kind,value,exact_value,series,tolerance,same_value_count,"
        "alternative\n";
    for (const PartsListRow& row : rows) {
        const std::string exact = std::isnan(row.exactValue) ? "" : ExactText(row.exactValue);
        text += Field(row.designator) + "," + std::to_string(row.section) + "," + Field(row.role) +
                "," + Field(row.kind) + "," + Field(row.printed) + "," + exact + "," +
                Field(row.series) + "," + Field(row.tolerance) + "," +
                std::to_string(row.sameValueCount) + "," + Field(row.alternative) + "\n";
    }
    return text;
}

}  // namespace nerivane
