// Times the whole calculation from the boxes to traces and report, as every keystroke runs
// it. Targets (median): start-up design 200 us, a 20-pole design 1 ms, with the square-pulse
// trace 2 ms, a 1000-run worst-case analysis with the traces of every run (their envelope, and
// with a requirement the yield) 300 ms; the same with the single-pole op amp (a real one, 1 MHz
// behind 50 ohms, so the stages load each other) within twice those; Choose Capacitors for 20 poles
// within half a second. A 20-pole design in standard values, rounded plainly and with the best
// standard values searched.
#include <benchmark/benchmark.h>

#include <memory>
#include <optional>

#include "app/Calculationdriver.h"
#include "app/Capacitorchoice.h"
#include "app/Initializevars.h"
#include "app/Parameterboxes.h"
#include "env/Allocator.h"

namespace nerivane {
namespace {

struct Case {
    const char* poles;
    bool pulse;
    bool worstCase;
    bool singlePole = false;
    ToleranceMode mode = ToleranceMode::Exact;
    bool bestStandard = false;
    const char* mask = nullptr;  // a requirement every run is checked against
};

void Run(benchmark::State& benchState, Case c) {
    KeepCalculationMemory();  // as the window and the command line do
    DesignState state = DefaultDesignState();
    state.PlotPulse = c.pulse;
    state.Tolerance = c.worstCase ? ToleranceMode::WorstCase : c.mode;
    auto boxes = std::make_unique<TextBoxes>();
    (*boxes)[BoxId::NumPoles].SetText(c.poles);
    (*boxes)[BoxId::WorstCaseRuns].SetText("1000");
    ParameterBoxes parameters = boxes->Parameters();
    ComponentSettings settings;
    settings.build.bestStandardValues = c.bestStandard;
    if (c.singlePole) {
        settings.build.opAmpModel = OpAmpModel::SinglePole;
        state.IdealOpAmp = false;
        (*boxes)[BoxId::GainBandwidth].SetText("1");
        (*boxes)[BoxId::OutputResistance].SetText("50");
    }
    auto results = std::make_unique<DesignResults>();
    CalculationOptions options;
    // The plot's hook: a worst-case analysis makes the traces of every run.
    options.perRun = [](int, const Traces& traces) { benchmark::DoNotOptimize(&traces); };
    const std::optional<RequirementMask> mask =
        c.mask ? ParseMask(c.mask).mask : std::optional<RequirementMask>();
    options.mask = mask ? &*mask : nullptr;
    for (auto _ : benchState) {
        ToleranceRandom random;
        Calculate(state, parameters, settings, *results, random, options);
        benchmark::DoNotOptimize(results->traces.magnitudeDb.data());
    }
}

void StartUpDesign(benchmark::State& s) {
    Run(s, {"3", false, false});
}
void TwentyPoles(benchmark::State& s) {
    Run(s, {"20", false, false});
}
void TwentyPolesWithPulse(benchmark::State& s) {
    Run(s, {"20", true, false});
}
void TwentyPolesStandard(benchmark::State& s) {
    Run(s, {"20", false, false, false, ToleranceMode::Standard, false});
}
void TwentyPolesBestStandard(benchmark::State& s) {
    Run(s, {"20", false, false, false, ToleranceMode::Standard, true});
}
void WorstCaseThousandRuns(benchmark::State& s) {
    Run(s, {"8", false, true});
}

// The runs' envelope is kept in every worst-case analysis; a requirement adds its check of
// every run at the sweep and at the mask's points.
void WorstCaseThousandRunsWithRequirement(benchmark::State& s) {
    Run(s, {"8", false, true, false, ToleranceMode::Exact, false, "fp=4k,ap=1,fs=10k,as=40"});
}

void TwentyPolesSinglePole(benchmark::State& s) {
    Run(s, {"20", false, false, true});
}
void WorstCaseThousandRunsSinglePole(benchmark::State& s) {
    Run(s, {"8", false, true, true});
}

// Choose Capacitors on a 20-pole design: every candidate pair of every section.
void ChooseCapacitorsTwentyPoles(benchmark::State& benchState) {
    KeepCalculationMemory();
    DesignState state = DefaultDesignState();
    auto boxes = std::make_unique<TextBoxes>();
    (*boxes)[BoxId::NumPoles].SetText("20");
    ComponentSettings settings;
    auto results = std::make_unique<DesignResults>();
    ToleranceRandom random;
    Calculate(state, boxes->Parameters(), settings, *results, random, {true, nullptr});
    for (auto _ : benchState) {
        DesignState chosen = state;
        ChooseCapacitors(chosen, settings);
        benchmark::DoNotOptimize(chosen.SectionC1);
    }
}

BENCHMARK(StartUpDesign)->Unit(benchmark::kMicrosecond)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(TwentyPoles)->Unit(benchmark::kMicrosecond)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(TwentyPolesWithPulse)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);
BENCHMARK(TwentyPolesStandard)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);
BENCHMARK(TwentyPolesBestStandard)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);
BENCHMARK(WorstCaseThousandRuns)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);
BENCHMARK(WorstCaseThousandRunsWithRequirement)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);
BENCHMARK(TwentyPolesSinglePole)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);
BENCHMARK(WorstCaseThousandRunsSinglePole)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);
BENCHMARK(ChooseCapacitorsTwentyPoles)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

}  // namespace
}  // namespace nerivane
