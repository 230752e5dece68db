#include "app/Statusline.h"

#include <array>

#include "numerics/Formatfunctions.h"

namespace nerivane {
namespace {

constexpr std::array<const char*, TopologyCount> CircuitNames = {
    "VCVS Low Pass",  "MFB Low Pass",  "VCVS High Pass", "MFB High Pass",
    "VCVS Band Pass", "MFB Band Pass", "VCVS Notch"};
constexpr std::array<const char*, 6> FamilyNames = {"Butterworth", "Chebyshev", "Papoulis",
                                                    "Bessel",      "Gaussian",  "Adjustable Gauss"};

template <std::size_t N>
std::string NameOf(const std::array<const char*, N>& names, int index) {
    if (index >= 0 && index < static_cast<int>(N)) return names[static_cast<std::size_t>(index)];
    return "family " + std::to_string(index);  // the numbers past the list that F5 reaches
}

}  // namespace

std::string FamilyName(Response family) {
    return NameOf(FamilyNames, Index(family));
}

std::string DesignSummaryText(const DesignState& state) {
    std::string text = NameOf(CircuitNames, Index(state.TopologyIndex)) + ", " +
                       FamilyName(state.ResponseIndex) + ", " + std::to_string(state.NumPoles) +
                       (state.NumPoles == 1 ? " pole" : " poles") + ", F0 " +
                       FormatEngineering(state.F0, 2, "Hz");
    const bool band = state.TopologyIndex == Topology::VcvsBandPass ||
                      state.TopologyIndex == Topology::MfbBandPass ||
                      state.TopologyIndex == Topology::VcvsNotch;
    if (band) text += ", band width " + FormatEngineering(state.BandWidth, 2, "Hz");
    return text;
}

std::string RequirementSummaryText(const RequirementCheck& check, bool worstCase) {
    if (!check.active) return {};
    std::string text = check.nominal.Meets() ? "requirement met" : "requirement NOT met";
    // A single pass (a section or capacitor stepped) is no analysis of the tolerances.
    if (worstCase && check.runs > 1) {
        text += ", yield " + FormatFixedPlain(100.0 * check.runsMeeting / check.runs, 1) + " % (" +
                std::to_string(check.runsMeeting) + " of " + std::to_string(check.runs) + " runs)";
    }
    return text;
}

std::string WarningsSummaryText(const std::vector<std::string>& warnings) {
    if (warnings.empty()) return {};
    return std::to_string(warnings.size()) + (warnings.size() == 1 ? " warning: " : " warnings: ") +
           warnings.front();
}

}  // namespace nerivane
