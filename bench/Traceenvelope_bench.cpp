// Times keeping the envelope of a worst-case analysis: each trace's lowest and highest value
// at every point over a thousand runs. Target: a few milliseconds, within one recalculation's
// budget, on top of the runs themselves.
#include <benchmark/benchmark.h>

#include <memory>

#include "response/Traceenvelope.h"

namespace nerivane {
namespace {

void EnvelopeOfAThousandRuns(benchmark::State& benchState) {
    // Two sets of traces taken in turn, so every point moves the envelope both ways.
    auto traces = std::make_unique<std::array<Traces, 2>>();
    for (int k = 0; k < TracePoints; ++k) {
        for (const EnvelopeTrace& trace : EnvelopeTraces) {
            ((*traces)[0].*trace.values)[k] = k % 7 == 0 ? NoPlotValue : 0.001 * k;
            ((*traces)[1].*trace.values)[k] = -0.002 * k;
        }
    }
    auto envelope = std::make_unique<TraceEnvelope>();
    for (auto _ : benchState) {
        for (int run = 0; run < 1000; ++run) AddToEnvelope(run, (*traces)[run % 2], *envelope);
        benchmark::DoNotOptimize(envelope->high.magnitudeDb.data());
    }
}

BENCHMARK(EnvelopeOfAThousandRuns)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

}  // namespace
}  // namespace nerivane
