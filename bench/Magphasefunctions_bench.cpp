// Times the trace computation that follows every simulation: all traces but the pulse over the
// 1024-point sweep, for the delay-free phase modes of the low pass, band pass and notch. It runs
// on every keystroke, and once per tolerance run in a worst-case analysis.
#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <complex>

#include "response/Magphasefunctions.h"

namespace nerivane {
namespace {

constexpr int Points = TracePoints;
constexpr double TwoPi = 6.283185307179586;

struct Sweep {
    std::array<double, Points> f;
    std::array<Complex, Points> h;
};

// A one-decade sweep around 1 kHz through two resonant sections, with a pair of zeros on the
// axis at the centre for the notch: enough shape that every branch of the delay code is taken.
Sweep MakeSweep(bool notch) {
    Sweep sweep;
    const double w0 = TwoPi * 1000.0;
    for (int i = 0; i < Points; ++i) {
        sweep.f[i] = 100.0 * std::pow(100.0, i / 1024.0);
        if (i == 1) sweep.f[0] = 0.1 * sweep.f[1];
    }
    for (int i = 0; i < Points; ++i) {
        const std::complex<double> s(0.0, TwoPi * sweep.f[i]);
        std::complex<double> h = w0 * w0 / (s * s + 0.5 * w0 * s + w0 * w0);
        h *= w0 * w0 / (s * s + 1.3 * w0 * s + w0 * w0);
        if (notch) h *= (s * s + w0 * w0) / (w0 * w0);
        sweep.h[i] = {h.real(), h.imag()};
    }
    return sweep;
}

void ComputeTracesBench(benchmark::State& state) {
    const auto topology = static_cast<Topology>(state.range(0));
    const Sweep sweep = MakeSweep(topology == Topology::VcvsNotch);
    Traces traces;
    for (auto _ : state) {
        ComputeTraces(sweep.h, sweep.f, -60.0, topology, 3, traces);
        benchmark::DoNotOptimize(&traces);
        benchmark::ClobberMemory();
    }
    state.counters["per_point"] = benchmark::Counter(
        Points, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

BENCHMARK(ComputeTracesBench)->ArgName("topology")->Arg(1)->Arg(4)->Arg(6);

}  // namespace
}  // namespace nerivane
