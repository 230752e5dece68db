#include "app/Calculationdriver.h"

#include <algorithm>
#include <optional>

#include "app/Initializevars.h"
#include "app/Updownfunctions.h"
#include "numerics/Formatfunctions.h"
#include "numerics/Protofunctions.h"
#include "response/Fftfunctions.h"
#include "response/Magphasefunctions.h"
#include "response/Valuesreport.h"

namespace nerivane {
namespace {

// The traces of one run; the nominal run also keeps its response and, when the pulse box is
// ticked and usable, gets its square-pulse response.
void MakeRunTraces(int run, const DesignState& state, const ComponentSettings& settings,
                   DesignResults& results, std::span<const Complex> response) {
    const std::span<const double> axis(results.frequencies.data(), results.points);
    Traces& traces = run == 0 ? results.traces : results.runTraces;
    ComputeTraces(response, axis, state.PhaseThreshold, state.TopologyIndex, state.NumSections,
                  traces);
    traces.hasPulse = false;
    if (run != 0) return;
    std::copy(response.begin(), response.end(), results.response.begin());
    if (state.PlotPulse && state.Tolerance != ToleranceMode::WorstCase) {
        PulseInputs pulse;
        pulse.topology = state.TopologyIndex;
        pulse.numSections = state.NumSections;
        pulse.f0 = state.F0;
        pulse.parts = &results.parts;
        pulse.settings = &settings;
        CalcPulseResponse(pulse, traces, results.messages);
    }
}

std::vector<std::string> LoweredCapacitorNotes(const DesignState& state,
                                               const SectionComponents& parts) {
    std::vector<std::string> notes;
    for (int s = 0; s < state.NumSections && s < MaxSections; ++s) {
        // A band-pass section whose split failed keeps what it had, which may be nothing.
        if (!(parts.C1[s] > 0.0 && parts.C1[s] < state.SectionC1[s])) continue;
        notes.push_back("Section " + std::to_string(s) + ": C1 of " +
                        FormatEngineering(state.SectionC1[s], 2, "F") + " lowered to " +
                        FormatEngineering(parts.C1[s], 2, "F") +
                        " so that the section can be built.");
    }
    return notes;
}

}  // namespace

ComponentInputs ComponentInputsOf(const DesignState& state) {
    ComponentInputs inputs;
    inputs.topology = state.TopologyIndex;
    inputs.numSections = state.NumSections;
    inputs.selectedSection = state.SelectedSection;
    inputs.f0 = state.F0;
    inputs.bandwidth = state.BandWidth;
    inputs.gain = state.SectionGain;
    inputs.sectionC1 = state.SectionC1;
    inputs.sectionC2 = state.SectionC2;
    return inputs;
}

void LayOutFrequencyAxis(DesignState& state, std::span<double> axis) {
    const SweepLimits limits = SweepLimitsFor(state.SweepIndex, state.F0);
    state.FreqMin = limits.start;
    state.FreqMax = limits.end;
    ReferenceFrequencyGrid(state.SweepIndex, state.F0, axis);
    // Even the linear sweep's first point is a tenth of its second, never the 1 Hz start.
    if (axis.size() > 1) axis[0] = 0.1 * axis[1];
}

void GatherInputs(DesignState& state, const ParameterBoxes& boxes, ComponentSettings& settings,
                  DesignResults& results) {
    // Poles first: the ripple limit depends on the order, the gain scale on the sections.
    AdjustNumPoles(state, boxes[BoxId::NumPoles], results.messages);
    AdjustRipple(state, boxes[BoxId::Ripple], results.messages);
    AdjustF0(state, boxes[BoxId::F0], results.messages);
    AdjustBandWidth(state, boxes[BoxId::BandWidth], results.messages);
    AdjustGain(state, boxes[BoxId::Gain], results.messages);
    AdjustGamma(state, boxes[BoxId::Gamma], results.messages);
    AdjustSection(state, boxes[BoxId::Section], {boxes[BoxId::C1Value], boxes[BoxId::C2Value]},
                  results.messages);
    AdjustTestValue(state, boxes[BoxId::TestValue], results.messages);

    const double gainBandwidthHz = 1e6 * ReadBoxValue(state, boxes[BoxId::GainBandwidth],
                                                      BoxId::GainBandwidth, results.messages);
    const double outputResistanceOhm = ReadBoxValue(state, boxes[BoxId::OutputResistance],
                                                    BoxId::OutputResistance, results.messages);
    results.opAmpLabels =
        SetOpAmp(settings, gainBandwidthHz, outputResistanceOhm, state.IdealOpAmp != 0);
    settings.worstCaseRuns =
        ReadBoxInteger(state, boxes[BoxId::WorstCaseRuns], BoxId::WorstCaseRuns, results.messages);
    settings.mode = state.Tolerance;
    state.OpAmpGainBandwidth = settings.gainBandwidth;
    state.OpAmpOutputResistance = settings.outputResistance;
    results.toleranceLabel = ToleranceLabelText(settings);
    state.CapacitorTolerancePercent = settings.capacitorClass.percent;
    state.ResistorTolerancePercent = settings.resistorClass.percent;

    ReadPhaseThreshold(state, boxes[BoxId::PhaseThreshold], results.messages);
    results.gammaLabel =
        GammaLabelText(state.Gamma, state.ResponseIndex == Response::AdjustableGauss);
}

void Calculate(DesignState& state, const ParameterBoxes& boxes, ComponentSettings& settings,
               DesignResults& results, ToleranceRandom& random, const CalculationOptions& options) {
    results.reportNotes.clear();
    results.messages.clear();
    GatherInputs(state, boxes, settings, results);

    results.prototype = BuildPrototype(state.ResponseIndex, state.NumPoles, state.Ripple,
                                       state.Gamma, state.Sections);
    if (results.prototype.note) results.reportNotes.emplace_back(results.prototype.note);

    std::vector<StandardValueErrors> searched;  // empty, and never allocated, unless searched
    CalculateComponents(ComponentInputsOf(state), state.Sections, settings, results.parts,
                        results.hints, results.messages, &searched);
    results.capacitorNotes = LoweredCapacitorNotes(state, results.parts);

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
    const std::span<Complex> response(results.runResponse.data(), PlotPoints);
    results.runs = 0;
    std::optional<RequirementChecker> checker;
    results.requirement = {};
    if (options.mask) checker.emplace(*options.mask, simulation, random, results.requirement);
    // Every run's traces go into the envelope and the requirement's check; the front end may
    // draw them too.
    const auto finishRun = [&](int run) {
        MakeRunTraces(run, state, settings, results, response);
        const Traces& traces = run == 0 ? results.traces : results.runTraces;
        AddToEnvelope(run, traces, results.envelope);
        if (checker) checker->CheckRun(run, axis, traces);
    };
    Simulate(simulation, response, random, [&](int run) {
        results.runs = run + 1;
        finishRun(run);
        if (options.perRun) options.perRun(run, run == 0 ? results.traces : results.runTraces);
    });
    if (options.singlePass) {
        results.runs = 1;
        finishRun(0);
    }
    results.report = CircuitValuesReport(results.parts, state.NumSections);
    BuildCheckInputs check;
    check.topology = state.TopologyIndex;
    check.numSections = state.NumSections;
    check.parts = &results.parts;
    check.settings = &settings;
    check.idealOpAmp = state.IdealOpAmp;
    check.frequencies = axis;
    check.response = std::span<const Complex>(results.response.data(), PlotPoints);
    check.standardValues = searched;
    results.checks = CheckBuild(check);
    for (std::string& line : BuildCheckLines(results.checks)) results.report.push_back(line);
    // A single pass made the nominal run alone: no yield to tell.
    const bool yieldMade = state.Tolerance == ToleranceMode::WorstCase && !options.singlePass;
    for (std::string& line : RequirementLines(results.requirement, yieldMade))
        results.report.push_back(line);
}

}  // namespace nerivane
