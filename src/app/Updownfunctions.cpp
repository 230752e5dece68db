#include "app/Updownfunctions.h"

#include <cmath>

#include "numerics/CheckedMath.h"
#include "numerics/Formatfunctions.h"
#include "numerics/Mathfunctions.h"
#include "numerics/Protofunctions.h"

namespace nerivane {

void ReadNumPoles(DesignState& state, EditBox& box) {
    const char* maximum = state.TopologyIndex >= VcvsBandPass ? "10" : "20";
    const std::int32_t poles = EditBoxToInt(box, "1", "3", maximum);
    box.SetText(std::to_string(poles));
    state.NumPoles = poles;
    state.NumSections = SectionsForPoles(state.TopologyIndex, poles);
}

double RippleMaximum(std::int32_t responseIndex, std::int32_t numPoles) {
    if (responseIndex != Chebyshev || numPoles < 16) return responseIndex == Chebyshev ? 1.0 : 2.0;
    // High-order Chebyshev sections get extreme Q quickly; the limit keeps them buildable.
    switch (numPoles) {
        case 16: return 0.5;
        case 17: return 0.4;
        case 18: return 0.25;
        case 19: return 0.125;
        default: return 0.1;
    }
}

void ReadRipple(DesignState& state, EditBox& box) {
    const std::string maximum = FormatFixed(RippleMaximum(state.ResponseIndex, state.NumPoles), 3);
    const double ripple = EditBoxToDouble(box, "0.000", "0.20", maximum);
    box.SetText(FormatFixed(ripple, 3));
    state.Ripple = ClampDouble(0.001, ripple, 2.0);
}

void ReadF0(DesignState& state, EditBox& box) {
    const double kilohertz = EditBoxToDouble(box, ".001", "1.0", "1.0E5");
    box.SetText(FormatFixed(kilohertz, 3));
    state.F0 = kilohertz * 1000.0;
}

void ReadBandWidth(DesignState& state, EditBox& box) {
    const double kilohertz = EditBoxToDouble(box, ".01", "1.0", "1.0E5");
    box.SetText(FormatFixed(kilohertz, 3));
    state.BandWidth = kilohertz * 1000.0;
}

double PlotTopForGain(std::int32_t numSections, double gainDb) {
    const auto total = static_cast<std::int32_t>(numSections * gainDb + 7.0);
    return 10.0 * (total / 10) + 10.0;
}

void ReadGain(DesignState& state, EditBox& box) {
    // Only the inverting stages can attenuate; a VCVS stage's gain is at least 1.
    const bool inverting = state.TopologyIndex == MfbLowPass || state.TopologyIndex == MfbHighPass;
    const double gainDb = EditBoxToDouble(box, inverting ? "-20.0" : "0", "0", "20.0");
    box.SetText(FormatFixed(gainDb, 3));
    state.PlotTopDb = PlotTopForGain(state.NumSections, gainDb);
    state.SectionGain = CheckedPow(10.0, 0.05 * gainDb);
}

void ReadSection(DesignState& state, EditBox& box) {
    const std::int32_t section = EditBoxToInt(box, "0", "1", std::to_string(state.NumSections - 1));
    box.SetText(std::to_string(section));
    state.SelectedSection = section;
}

void ReadGamma(DesignState& state, EditBox& box) {
    const double gamma = EditBoxToDouble(box, "-1.0", "0.0", "1.0");
    box.SetText(FormatFixed(gamma, 2));
    state.Gamma = gamma;
}

std::string GammaLabelText(double gamma, bool gammaEnabled) {
    if (!gammaEnabled) return "Adj Gauss";
    if (gamma < -0.9) return "~ Gauss";
    if (gamma > 0.9) return "~Butterworth";
    if (gamma >= -0.75 && gamma <= -0.65) return "~ Bessel";
    return "Adj Gauss";
}

void ReadPhaseThreshold(DesignState& state, EditBox& box) {
    const double threshold = EditBoxToDouble(box, "-200.0", "20.0", "200.0");
    state.PhaseThreshold = threshold < 0.0 ? threshold : -threshold;
}

}  // namespace nerivane
