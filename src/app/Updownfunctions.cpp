#include "app/Updownfunctions.h"

#include <cmath>

#include "circuit/Valuecalculations.h"
#include "numerics/Boxreading.h"
#include "numerics/CheckedMath.h"
#include "numerics/Formatfunctions.h"
#include "numerics/Mathfunctions.h"
#include "numerics/Numberreading.h"
#include "numerics/Protofunctions.h"

namespace nerivane {
namespace {

// A real-valued box: read against its row's limits, stepped within them, written back with
// the row's decimals. Returns the value.
double AdjustReal(const DesignState& state, EditBox& box, BoxId id, Messages& messages, Step step) {
    const BoxRule& rule = RuleOf(id);
    const BoxLimits limits = rule.limits(state);
    double value = EditBoxToDouble(box, limits.minimum, limits.repair, limits.maximum, messages);
    if (step.direction != StepDirection::None) {
        const double size = step.coarse ? rule.coarseStep : rule.fineStep;
        value += step.direction == StepDirection::Up ? size : -size;
        // A click never pushes past a limit, so it never turns the box silver.
        value = ClampDouble(ParseFloatOr(limits.minimum, value), value,
                            ParseFloatOr(limits.maximum, value));
    }
    box.SetText(FormatFixed(value, rule.decimals));
    return value;
}

std::int32_t AdjustInteger(const DesignState& state, EditBox& box, BoxId id, Messages& messages,
                           Step step) {
    const BoxLimits limits = RuleOf(id).limits(state);
    std::int32_t value = EditBoxToInt(box, limits.minimum, limits.repair, limits.maximum, messages);
    if (step.direction != StepDirection::None) {
        value += step.direction == StepDirection::Up ? 1 : -1;
        value = ClampInt(std::stoi(limits.minimum), value, std::stoi(limits.maximum));
    }
    box.SetText(std::to_string(value));
    return value;
}

}  // namespace

void AdjustNumPoles(DesignState& state, EditBox& box, Messages& messages, Step step) {
    const std::int32_t poles = AdjustInteger(state, box, BoxId::NumPoles, messages, step);
    state.NumPoles = poles;
    state.NumSections = SectionsForPoles(state.TopologyIndex, poles);
}

double RippleMaximum(Response responseIndex, std::int32_t numPoles) {
    if (responseIndex != Response::Chebyshev) return 2.0;
    // High-order Chebyshev sections get extreme Q quickly; the limit keeps them buildable.
    switch (numPoles) {
        case 16: return 0.5;
        case 17: return 0.4;
        case 18: return 0.25;
        case 19: return 0.125;
        default: return numPoles > 19 ? 0.1 : 1.0;
    }
}

void AdjustRipple(DesignState& state, EditBox& box, Messages& messages, Step step) {
    const double ripple = AdjustReal(state, box, BoxId::Ripple, messages, step);
    state.Ripple = ClampDouble(0.001, ripple, 2.0);
}

void AdjustF0(DesignState& state, EditBox& box, Messages& messages, Step step) {
    state.F0 = 1000.0 * AdjustReal(state, box, BoxId::F0, messages, step);
}

void AdjustBandWidth(DesignState& state, EditBox& box, Messages& messages, Step step) {
    state.BandWidth = 1000.0 * AdjustReal(state, box, BoxId::BandWidth, messages, step);
}

double PlotTopForGain(std::int32_t numSections, double gainDb) {
    const auto total = static_cast<std::int32_t>(numSections * gainDb + 7.0);
    return 10.0 * (total / 10) + 10.0;
}

void AdjustGain(DesignState& state, EditBox& box, Messages& messages, Step step) {
    const double gainDb = AdjustReal(state, box, BoxId::Gain, messages, step);
    state.PlotTopDb = PlotTopForGain(state.NumSections, gainDb);
    state.SectionGain = CheckedPow(10.0, 0.05 * gainDb);
}

void AdjustGamma(DesignState& state, EditBox& box, Messages& messages, Step step) {
    state.Gamma = AdjustReal(state, box, BoxId::Gamma, messages, step);
}

std::string GammaLabelText(double gamma, bool gammaEnabled) {
    if (!gammaEnabled) return "Adj Gauss";
    if (gamma < -0.9) return "~ Gauss";
    if (gamma > 0.9) return "~Butterworth";
    if (gamma >= -0.75 && gamma <= -0.65) return "~ Bessel";
    return "Adj Gauss";
}

std::string CapacitorBoxText(double farads) {
    return FormatEngineering(farads, 2, "F");
}

void AdjustSection(DesignState& state, EditBox& box, CapacitorBoxes capacitors, Messages& messages,
                   Step step) {
    const std::int32_t section = AdjustInteger(state, box, BoxId::Section, messages, step);
    state.SelectedSection = section;
    if (section < 0 || section >= MaxSections) return;
    capacitors.c1.SetText(CapacitorBoxText(state.SectionC1[section]));
    capacitors.c2.SetText(CapacitorBoxText(state.SectionC2[section]));
}

void AdjustTestValue(DesignState& state, EditBox& box, Messages& messages, Step step) {
    state.TestValue = AdjustReal(state, box, BoxId::TestValue, messages, step);
}

void StepSectionCapacitor(DesignState& state, EditBox& box, Capacitor which, bool up,
                          const ComponentSettings& settings) {
    const int section = ClampInt(0, state.SelectedSection, MaxSections - 1);
    double& stored = which == Capacitor::C1 ? state.SectionC1[section] : state.SectionC2[section];
    stored = StepCapacitor(settings, stored, up);
    box.SetText(CapacitorBoxText(stored));
}

double ReadBoxValue(const DesignState& state, EditBox& box, BoxId id, Messages& messages) {
    const BoxLimits limits = RuleOf(id).limits(state);
    return EditBoxToDouble(box, limits.minimum, limits.repair, limits.maximum, messages);
}

std::int32_t ReadBoxInteger(const DesignState& state, EditBox& box, BoxId id, Messages& messages) {
    const BoxLimits limits = RuleOf(id).limits(state);
    return EditBoxToInt(box, limits.minimum, limits.repair, limits.maximum, messages);
}

void ReadPhaseThreshold(DesignState& state, EditBox& box, Messages& messages) {
    const double threshold = ReadBoxValue(state, box, BoxId::PhaseThreshold, messages);
    state.PhaseThreshold = threshold < 0.0 ? threshold : -threshold;
}

}  // namespace nerivane
