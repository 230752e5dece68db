// Times BuildPrototype, which runs on every keystroke: every family at 4, 8 and 20 poles.
// Targets: at most 100 microseconds up to 8 poles, 1 millisecond at 20 (median).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

#include "numerics/Polymain.h"

namespace nerivane {
namespace {

void BuildPrototypeBench(benchmark::State& state) {
    const auto family = static_cast<Response>(state.range(0));
    const int poles = static_cast<int>(state.range(1));
    // Chebyshev's ripple limit at 20 poles is 0.1 dB; the others use the start-up 0.2 dB.
    const double ripple = family == Response::Chebyshev && poles > 15 ? 0.1 : 0.2;
    ProtoSections sections;
    for (auto _ : state) {
        benchmark::DoNotOptimize(BuildPrototype(family, poles, ripple, 0.0, sections));
        benchmark::ClobberMemory();
    }
}

BENCHMARK(BuildPrototypeBench)
    ->ArgNames({"family", "poles"})
    ->ArgsProduct({{Index(Response::Butterworth), Index(Response::Chebyshev),
                    Index(Response::Papoulis), Index(Response::Bessel), Index(Response::Gaussian),
                    Index(Response::AdjustableGauss)},
                   {4, 8, 20}})
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true)
    ->ComputeStatistics("max", [](const std::vector<double>& v) {
        return *std::max_element(v.begin(), v.end());
    });

}  // namespace
}  // namespace nerivane
