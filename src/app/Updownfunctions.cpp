#include "app/Updownfunctions.h"

#include <cmath>

#include "circuit/Valuecalculations.h"
#include "numerics/CheckedMath.h"
#include "numerics/Formatfunctions.h"
#include "numerics/Mathfunctions.h"
#include "numerics/Protofunctions.h"

namespace nerivane {
namespace {

// A real-valued box: read with its limit texts, step within the limits, write back with the
// given decimals. Returns the value.
double AdjustReal(EditBox& box, const std::string& minText, const std::string& defaultText,
                  const std::string& maxText, Step step, double fine, double coarse, int decimals) {
    double value = EditBoxToDouble(box, minText, defaultText, maxText);
    if (step.direction != StepDirection::None) {
        const double size = step.coarse ? coarse : fine;
        value += step.direction == StepDirection::Up ? size : -size;
        // A click never pushes past a limit, so it never turns the box silver.
        value = ClampDouble(ParseFloatOr(minText, value), value, ParseFloatOr(maxText, value));
    }
    box.SetText(FormatFixed(value, decimals));
    return value;
}

std::int32_t AdjustInteger(EditBox& box, const std::string& minText, const std::string& defaultText,
                           std::int32_t maximum, Step step) {
    std::int32_t value = EditBoxToInt(box, minText, defaultText, std::to_string(maximum));
    if (step.direction != StepDirection::None) {
        value += step.direction == StepDirection::Up ? 1 : -1;
        value = ClampInt(std::stoi(minText), value, maximum);
    }
    box.SetText(std::to_string(value));
    return value;
}

}  // namespace

void AdjustNumPoles(DesignState& state, EditBox& box, Step step) {
    const std::int32_t maximum = state.TopologyIndex >= VcvsBandPass ? 10 : 20;
    const std::int32_t poles = AdjustInteger(box, "1", "3", maximum, step);
    state.NumPoles = poles;
    state.NumSections = SectionsForPoles(state.TopologyIndex, poles);
}

double RippleMaximum(std::int32_t responseIndex, std::int32_t numPoles) {
    if (responseIndex != Chebyshev) return 2.0;
    // High-order Chebyshev sections get extreme Q quickly; the limit keeps them buildable.
    switch (numPoles) {
        case 16: return 0.5;
        case 17: return 0.4;
        case 18: return 0.25;
        case 19: return 0.125;
        default: return numPoles > 19 ? 0.1 : 1.0;
    }
}

void AdjustRipple(DesignState& state, EditBox& box, Step step) {
    const std::string maximum = FormatFixed(RippleMaximum(state.ResponseIndex, state.NumPoles), 3);
    const double ripple = AdjustReal(box, "0.000", "0.20", maximum, step, 0.01, 0.1, 3);
    state.Ripple = ClampDouble(0.001, ripple, 2.0);
}

void AdjustF0(DesignState& state, EditBox& box, Step step) {
    state.F0 = 1000.0 * AdjustReal(box, ".001", "1.0", "1.0E5", step, 0.1, 1.0, 3);
}

void AdjustBandWidth(DesignState& state, EditBox& box, Step step) {
    state.BandWidth = 1000.0 * AdjustReal(box, ".01", "1.0", "1.0E5", step, 0.1, 1.0, 3);
}

double PlotTopForGain(std::int32_t numSections, double gainDb) {
    const auto total = static_cast<std::int32_t>(numSections * gainDb + 7.0);
    return 10.0 * (total / 10) + 10.0;
}

void AdjustGain(DesignState& state, EditBox& box, Step step) {
    // Only the inverting stages can attenuate; a VCVS stage's gain is at least 1.
    const bool inverting = state.TopologyIndex == MfbLowPass || state.TopologyIndex == MfbHighPass;
    const double gainDb =
        AdjustReal(box, inverting ? "-20.0" : "0", "0", "20.0", step, 0.1, 1.0, 3);
    state.PlotTopDb = PlotTopForGain(state.NumSections, gainDb);
    state.SectionGain = CheckedPow(10.0, 0.05 * gainDb);
}

void AdjustGamma(DesignState& state, EditBox& box, Step step) {
    state.Gamma = AdjustReal(box, "-1.0", "0.0", "1.0", step, 0.05, 0.5, 2);
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

void AdjustSection(DesignState& state, EditBox& box, CapacitorBoxes capacitors, Step step) {
    const std::int32_t section = AdjustInteger(box, "0", "1", state.NumSections - 1, step);
    state.SelectedSection = section;
    if (section < 0 || section >= MaxSections) return;
    capacitors.c1.SetText(CapacitorBoxText(state.SectionC1[section]));
    capacitors.c2.SetText(CapacitorBoxText(state.SectionC2[section]));
}

void AdjustTestValue(DesignState& state, EditBox& box, Step step) {
    state.TestValue = AdjustReal(box, "-100.0", DefaultTestValueText, "100.0", step, 0.01, 1.0, 3);
}

void StepSectionCapacitor(DesignState& state, EditBox& box, Capacitor which, bool up,
                          const ComponentSettings& settings) {
    const int section = ClampInt(0, state.SelectedSection, MaxSections - 1);
    double& stored = which == Capacitor::C1 ? state.SectionC1[section] : state.SectionC2[section];
    stored = StepCapacitor(settings, stored, up);
    box.SetText(CapacitorBoxText(stored));
}

void ReadPhaseThreshold(DesignState& state, EditBox& box) {
    const double threshold = EditBoxToDouble(box, "-200.0", "20.0", "200.0");
    state.PhaseThreshold = threshold < 0.0 ? threshold : -threshold;
}

}  // namespace nerivane
