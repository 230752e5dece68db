#include "app/Requirementfields.h"

#include <cmath>
#include <optional>

#include "app/Statusline.h"
#include "numerics/Formatfunctions.h"
#include "numerics/Sivalue.h"

namespace nerivane {
namespace {

bool IsTwoSided(MaskKind kind) {
    return kind == MaskKind::BandPass || kind == MaskKind::Notch;
}

// The value of one field, or the problem with it.
std::optional<double> Read(const std::string& text, const char* name, const char* unit,
                           const char* what, std::string& problem) {
    if (!problem.empty()) return std::nullopt;
    const std::optional<double> value = ParseTypedValue(text, unit);
    if (value && std::isfinite(*value)) return value;
    problem =
        std::string(name) + ": " + (text.empty() ? "type" : "\"" + text + "\" is not") + " " + what;
    return std::nullopt;
}

constexpr const char* Frequency = "a frequency (1k, 2.2 kHz)";
constexpr const char* Decibels = "a number of dB";

std::string DecibelText(double db) {
    return FormatFixedPlain(db, 2) + " dB";
}

}  // namespace

const char* PassEdgeName(MaskKind kind, int index) {
    if (!IsTwoSided(kind)) return "fp";
    return index == 0 ? "fp1" : "fp2";
}

const char* StopEdgeName(MaskKind kind, int index) {
    if (!IsTwoSided(kind)) return "fs";
    return index == 0 ? "fs1" : "fs2";
}

ParsedMask MaskFromFields(const MaskFields& fields) {
    RequirementMask mask;
    mask.kind = fields.kind;
    std::string problem;
    const int edges = IsTwoSided(fields.kind) ? 2 : 1;
    for (int i = 0; i < edges; ++i) {
        const auto at = static_cast<std::size_t>(i);
        mask.passEdgesHz[at] =
            Read(fields.passEdges[at], PassEdgeName(fields.kind, i), "Hz", Frequency, problem)
                .value_or(0.0);
        mask.stopEdgesHz[at] =
            Read(fields.stopEdges[at], StopEdgeName(fields.kind, i), "Hz", Frequency, problem)
                .value_or(0.0);
    }
    if (edges == 1) mask.passEdgesHz[1] = mask.stopEdgesHz[1] = 0.0;
    if (edges == 2 && !fields.centre.empty())
        mask.centreHz = Read(fields.centre, "f0", "Hz", Frequency, problem).value_or(0.0);
    else
        mask.centreHz = 0.0;
    mask.passDb = Read(fields.passDb, "ap", "dB", Decibels, problem).value_or(0.0);
    mask.stopDb = Read(fields.stopDb, "as", "dB", Decibels, problem).value_or(0.0);
    if (problem.empty()) problem = MaskProblem(mask);
    if (!problem.empty()) return {std::nullopt, problem};
    return {mask, {}};
}

MaskFields FieldsOf(const RequirementMask& mask) {
    const auto hertz = [](double hz) { return SiText(hz, 9, ""); };
    MaskFields fields;
    fields.kind = mask.kind;
    const int edges = IsTwoSided(mask.kind) ? 2 : 1;
    for (std::size_t i = 0; i < static_cast<std::size_t>(edges); ++i) {
        fields.passEdges[i] = hertz(mask.passEdgesHz[i]);
        fields.stopEdges[i] = hertz(mask.stopEdgesHz[i]);
    }
    if (edges == 2 && mask.centreHz > 0.0) fields.centre = hertz(mask.centreHz);
    fields.passDb = FormatGeneral(mask.passDb, 9);
    fields.stopDb = FormatGeneral(mask.stopDb, 9);
    return fields;
}

std::array<std::string, OrderColumnCount> OrderRowCells(const OrderRow& row, int maxPoles) {
    std::array<std::string, OrderColumnCount> cells;
    cells[0] = FamilyName(row.family);
    if (!row.Meets()) {
        cells[1] = "none up to " + std::to_string(maxPoles) + " poles";
        return cells;
    }
    cells[1] = std::to_string(row.poles);
    cells[2] = FormatEngineering(row.f0Hz, 3, "Hz");
    if (row.bandwidthHz > 0.0) cells[3] = FormatEngineering(row.bandwidthHz, 3, "Hz");
    cells[4] = DecibelText(row.passMarginDb);
    cells[5] = DecibelText(row.stopMarginDb);
    cells[6] = FormatEngineering(row.delayVariationS, 2, "s");
    if (!std::isnan(row.overshootPercent))
        cells[7] = FormatFixedPlain(row.overshootPercent, 1) + " %";
    return cells;
}

}  // namespace nerivane
