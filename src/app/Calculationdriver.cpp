#include "app/Calculationdriver.h"

#include "app/Initializevars.h"
#include "app/Updownfunctions.h"
#include "numerics/CheckedMath.h"
#include "numerics/Protofunctions.h"

namespace nerivane {
namespace {

struct SweepSpan {
    double start;  // times F0, except the linear sweep's fixed 1 Hz
    double end;
};

// clang-format off
constexpr SweepSpan Sweeps[] = {
    {0.0, 2.0}, {0.5, 2.0}, {0.25, 4.0}, {0.125, 8.0}, {0.1, 10.0}, {0.01, 100.0},
};
// clang-format on

void RecordToleranceTexts(DesignState& state, const ComponentSettings& settings) {
    // "Worst Case" is recorded as "Standard R" on purpose: a loaded design comes back with
    // standard values, not with a long analysis.
    const char* mode = state.Tolerance == ToleranceMode::Exact ? "Exact R" : "Standard R";
    WriteRecordText(state.ToleranceText, std::size(state.ToleranceText), mode);
    WriteRecordText(state.CapacitorToleranceText, std::size(state.CapacitorToleranceText),
                    ToleranceCaption(settings.capacitorClass));
    WriteRecordText(state.ResistorToleranceText, std::size(state.ResistorToleranceText),
                    ToleranceCaption(settings.resistorClass));
}

}  // namespace

bool RippleEnabled(std::int32_t responseIndex) {
    return responseIndex == Chebyshev || responseIndex == Papoulis;
}

bool GammaEnabled(std::int32_t responseIndex) {
    return responseIndex == AdjustableGauss;
}

void LayOutFrequencyAxis(DesignState& state, std::span<double> axis) {
    const int index = state.SweepIndex >= 0 && state.SweepIndex <= 5 ? state.SweepIndex : 4;
    state.FreqMin = index == 0 ? 1.0 : Sweeps[index].start * state.F0;
    state.FreqMax = Sweeps[index].end * state.F0;
    const std::size_t n = axis.size();
    // The divisor is the point count, so the last point stops one step short of FreqMax.
    if (index == 0) {
        const double step = (state.FreqMax - state.FreqMin) / static_cast<double>(n);
        for (std::size_t i = 0; i < n; ++i) axis[i] = state.FreqMin + i * step;
    } else {
        const double logStep = CheckedLog(state.FreqMax / state.FreqMin) / static_cast<double>(n);
        for (std::size_t i = 0; i < n; ++i) axis[i] = state.FreqMin * CheckedExp(i * logStep);
    }
    if (n > 1) axis[0] = 0.1 * axis[1];
}

void GatherInputs(DesignState& state, ParameterBoxes& boxes, ComponentSettings& settings,
                  DesignResults& results) {
    // Poles first: the ripple limit depends on the order, the gain scale on the sections.
    ReadNumPoles(state, boxes.numPoles);
    ReadRipple(state, boxes.ripple);
    ReadF0(state, boxes.f0);
    ReadBandWidth(state, boxes.bandWidth);
    ReadGain(state, boxes.gain);
    ReadGamma(state, boxes.gamma);
    ReadSection(state, boxes.section);

    OpAmpBoxes opAmp{boxes.gainBandwidthMHz, boxes.outputResistance};
    results.opAmpLabels = ReadOpAmp(settings, opAmp, state.IdealOpAmp != 0);
    ReadWorstCaseRuns(settings, boxes.worstCaseRuns);
    settings.mode = state.Tolerance;
    state.OpAmpGainBandwidth = settings.gainBandwidth;
    state.OpAmpOutputResistance = settings.outputResistance;
    results.toleranceLabel = ToleranceLabelText(settings);
    RecordToleranceTexts(state, settings);

    ReadPhaseThreshold(state, boxes.phaseThreshold);
    StampFormatVersion(state);
    results.gammaLabel = GammaLabelText(state.Gamma, GammaEnabled(state.ResponseIndex));
}

void Calculate(DesignState& state, ParameterBoxes& boxes, ComponentSettings& settings,
               DesignResults& results, ToleranceRandom& random, const CalculationOptions& options) {
    results.reportNotes.clear();
    GatherInputs(state, boxes, settings, results);

    results.prototype = BuildPrototype(state.ResponseIndex, state.NumPoles, state.Ripple,
                                       state.Gamma, state.Sections);
    if (results.prototype.note) results.reportNotes.emplace_back(results.prototype.note);

    ComponentInputs inputs;
    inputs.topology = state.TopologyIndex;
    inputs.numSections = state.NumSections;
    inputs.selectedSection = state.SelectedSection;
    inputs.f0 = state.F0;
    inputs.bandwidth = state.BandWidth;
    inputs.gain = state.SectionGain;
    inputs.sectionC1 = state.SectionC1;
    inputs.sectionC2 = state.SectionC2;
    CalculateComponents(inputs, state.Sections, settings, results.parts, results.hints);

    results.points = PlotPoints;
    const std::span<double> axis(results.frequencies.data(), PlotPoints);
    LayOutFrequencyAxis(state, axis);

    SimulationInputs simulation;
    simulation.topology = state.TopologyIndex;
    simulation.numSections = state.NumSections;
    simulation.parts = &results.parts;
    simulation.settings = &settings;
    simulation.frequencies = axis;
    simulation.singlePass = options.singlePass;
    Simulate(simulation, std::span<Complex>(results.response.data(), PlotPoints), random,
             options.perRun);
}

}  // namespace nerivane
