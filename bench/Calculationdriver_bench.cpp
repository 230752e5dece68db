// Times the whole calculation from the boxes to traces and report, as every keystroke runs
// it. Targets (median): start-up design 200 us, a 20-pole design 1 ms, with the square-pulse
// trace 2 ms, a 1000-run worst-case analysis with the traces of every run 300 ms.
#include <benchmark/benchmark.h>

#include <memory>

#include "app/Calculationdriver.h"
#include "app/Initializevars.h"
#include "app/Parameterboxes.h"
#include "env/Allocator.h"

namespace nerivane {
namespace {

struct Case {
    const char* poles;
    bool pulse;
    bool worstCase;
};

void Run(benchmark::State& benchState, Case c) {
    KeepCalculationMemory();  // as the window and the command line do
    DesignState state = DefaultDesignState();
    state.PlotPulse = c.pulse;
    if (c.worstCase) state.Tolerance = ToleranceMode::WorstCase;
    auto boxes = std::make_unique<TextBoxes>();
    (*boxes)[BoxId::NumPoles].SetText(c.poles);
    (*boxes)[BoxId::WorstCaseRuns].SetText("1000");
    ParameterBoxes parameters = boxes->Parameters();
    ComponentSettings settings;
    auto results = std::make_unique<DesignResults>();
    CalculationOptions options;
    // The plot's hook: a worst-case analysis makes the traces of every run.
    options.perRun = [](int, const Traces& traces) { benchmark::DoNotOptimize(&traces); };
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
void WorstCaseThousandRuns(benchmark::State& s) {
    Run(s, {"8", false, true});
}

BENCHMARK(StartUpDesign)->Unit(benchmark::kMicrosecond)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(TwentyPoles)->Unit(benchmark::kMicrosecond)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(TwentyPolesWithPulse)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);
BENCHMARK(WorstCaseThousandRuns)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

}  // namespace
}  // namespace nerivane
