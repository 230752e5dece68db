// Times the square-pulse trace, computed on every recalculation while it is shown: the whole
// calculation for 10 sections (target 2 ms), and the 4096-point transform inside it, timed as
// a forward and inverse pair.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "circuit/Valuecalculations.h"
#include "numerics/Polymain.h"
#include "response/Fftfunctions.h"

namespace nerivane {
namespace {

void PulseResponseTenSections(benchmark::State& state) {
    ProtoSections prototype;
    BuildPrototype(Response::Butterworth, 20, 0.5, 0.0, prototype);
    const std::vector<double> c1(MaxSections, 1e-9), c2(MaxSections, 1e-8);
    ComponentInputs design;
    design.topology = Topology::VcvsLowPass;
    design.numSections = 10;
    design.f0 = 5000.0;
    design.sectionC1 = c1.data();
    design.sectionC2 = c2.data();
    const ComponentSettings settings;
    SectionComponents parts{};
    SectionPanelHints hints;
    Messages messages;
    CalculateComponents(design, prototype, settings, parts, hints, messages);

    PulseInputs inputs;
    inputs.topology = design.topology;
    inputs.numSections = design.numSections;
    inputs.f0 = design.f0;
    inputs.parts = &parts;
    inputs.settings = &settings;
    Traces traces;
    for (auto _ : state) {
        CalcPulseResponse(inputs, traces, messages);
        benchmark::DoNotOptimize(traces.pulse.data());
    }
}
BENCHMARK(PulseResponseTenSections)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

// A forward and an inverse transform per iteration: the pair brings the data back, so they
// neither grow nor decay into subnormals over the iterations.
void FftRoundTrip(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    std::mt19937_64 engine(1);
    std::uniform_real_distribution<double> value(-1.0, 1.0);
    std::vector<double> data(2 * static_cast<std::size_t>(n));
    for (double& x : data) x = value(engine);
    Messages messages;
    for (auto _ : state) {
        Fft(data, n, FftForward, messages);
        Fft(data, n, FftInverse, messages);
        benchmark::DoNotOptimize(data.data());
    }
}
BENCHMARK(FftRoundTrip)
    ->Arg(4096)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

}  // namespace
}  // namespace nerivane
