#include "app/Parameterboxes.h"

#include "app/Updownfunctions.h"
#include "numerics/CheckedMath.h"
#include "numerics/Formatfunctions.h"

namespace nerivane {
namespace {

template <const char* Minimum, const char* Repair, const char* Maximum>
BoxLimits Fixed(const DesignState&) {
    return {Minimum, Repair, Maximum};
}

// Band pass and notch have one section per pole, so half as many poles fit.
BoxLimits PoleLimits(const DesignState& s) {
    return {"1", "3", s.TopologyIndex >= Topology::VcvsBandPass ? "10" : "20"};
}

BoxLimits RippleLimits(const DesignState& s) {
    return {"0.000", "0.20", FormatFixed(RippleMaximum(s.ResponseIndex, s.NumPoles), 3)};
}

// Only the inverting stages can attenuate; a VCVS stage's gain is at least 1.
BoxLimits GainLimits(const DesignState& s) {
    const bool inverting =
        s.TopologyIndex == Topology::MfbLowPass || s.TopologyIndex == Topology::MfbHighPass;
    return {inverting ? "-20.0" : "0", "0", "20.0"};
}

BoxLimits SectionLimits(const DesignState& s) {
    return {"0", "1", std::to_string(s.NumSections - 1)};
}

constexpr char F0Min[] = ".001", BandWidthMin[] = ".01", KiloHertzRepair[] = "1.0",
               KiloHertzMax[] = "1.0E5";
constexpr char GammaMin[] = "-1.0", GammaRepair[] = "0.0", GammaMax[] = "1.0";
constexpr char TestMin[] = "-100.0", TestRepair[] = "0.0", TestMax[] = "100.0";
constexpr char ThresholdMin[] = "-200.0", ThresholdRepair[] = "20.0", ThresholdMax[] = "200.0";
constexpr char GbwMin[] = "0.001", GbwRepair[] = "10.0", GbwMax[] = "100.0";
constexpr char RoMin[] = "0.0", RoRepair[] = "10.0", RoMax[] = "1.0E4";
constexpr char RunsMin[] = "1", RunsRepair[] = "10", RunsMax[] = "1000";

std::string Fixed3(double value) {
    return FormatFixed(value, 3);
}

// clang-format off
const std::array<BoxRule, BoxCount> Rules = {{
    {BoxId::NumPoles, "NumPolesBox", "N Poles", "3", "", true, PoleLimits,
     BoxFormat::Integer, 0, 1.0, 1.0,
     [](const DesignState& s) { return std::to_string(s.NumPoles); }},
    {BoxId::Ripple, "RippleBox", "Ripple", "0.2", "dB", true, RippleLimits,
     BoxFormat::Fixed, 3, 0.01, 0.1,
     [](const DesignState& s) { return Fixed3(s.Ripple); }},
    {BoxId::F0, "F0Box", "F0  (kHz)", "5", "kHz", true, Fixed<F0Min, KiloHertzRepair, KiloHertzMax>,
     BoxFormat::Fixed, 3, 0.1, 1.0,
     [](const DesignState& s) { return Fixed3(s.F0 / 1000.0); }},
    {BoxId::BandWidth, "BandWidthBox", "BW (kHz)", "2", "kHz", true,
     Fixed<BandWidthMin, KiloHertzRepair, KiloHertzMax>, BoxFormat::Fixed, 3, 0.1, 1.0,
     [](const DesignState& s) { return Fixed3(s.BandWidth / 1000.0); }},
    {BoxId::Gain, "FilterGainBox", "Sect Gain (dB)", "0", "dB", true, GainLimits,
     BoxFormat::Fixed, 3, 0.1, 1.0,
     [](const DesignState& s) { return Fixed3(20.0 * CheckedLog10(s.SectionGain)); }},
    {BoxId::Gamma, "GammaBox", "Adj Poly", "0.0", "", true, Fixed<GammaMin, GammaRepair, GammaMax>,
     BoxFormat::Fixed, 2, 0.05, 0.5,
     [](const DesignState& s) { return FormatFixed(s.Gamma, 2); }},
    {BoxId::Section, "SectionBox", "Section", "0", "", true, SectionLimits,
     BoxFormat::Integer, 0, 1.0, 1.0, nullptr},
    {BoxId::TestValue, "UpDownBox", "Test", "0.0", "", true, Fixed<TestMin, TestRepair, TestMax>,
     BoxFormat::Fixed, 3, 0.01, 1.0, nullptr},
    {BoxId::C1Value, "C1ValueBox", "C1", "100pF", "F", false, nullptr,
     BoxFormat::AsTyped, 0, 0.0, 0.0, nullptr},
    {BoxId::C2Value, "C2ValueBox", "C2", "1.0nF", "F", false, nullptr,
     BoxFormat::AsTyped, 0, 0.0, 0.0, nullptr},
    {BoxId::PhaseThreshold, "GDPhaseThresholdBox", "Phase Plot Threshold", "20", "dB",
     true, Fixed<ThresholdMin, ThresholdRepair, ThresholdMax>, BoxFormat::AsTyped, 0, 0.0, 0.0,
     nullptr},
    {BoxId::GainBandwidth, "GainBWBox", "BW  MHz", "10", "MHz", true,
     Fixed<GbwMin, GbwRepair, GbwMax>, BoxFormat::AsTyped, 0, 0.0, 0.0,
     [](const DesignState& s) { return Fixed3(s.OpAmpGainBandwidth / 1e6); }},
    {BoxId::OutputResistance, "OutputZBox", "Output Z", "10", "ohm", true,
     Fixed<RoMin, RoRepair, RoMax>, BoxFormat::AsTyped, 0, 0.0, 0.0,
     [](const DesignState& s) { return Fixed3(s.OpAmpOutputResistance); }},
    {BoxId::WorstCaseRuns, "WorstCaseMaxBox", "Number of Worst Case Simulations  <= 1000", "100",
     "", true, Fixed<RunsMin, RunsRepair, RunsMax>, BoxFormat::AsTyped, 0, 0.0, 0.0, nullptr},
}};
// clang-format on

}  // namespace

const std::array<BoxRule, BoxCount>& BoxRules() {
    return Rules;
}

const BoxRule& RuleOf(BoxId id) {
    return Rules[static_cast<std::size_t>(id)];
}

}  // namespace nerivane
