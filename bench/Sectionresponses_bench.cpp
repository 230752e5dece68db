// Times each section routine over a 1024-point sweep, multiplying into a response array as the
// simulation does. A worst-case analysis makes up to 1000 runs x 20 sections of these sweeps,
// so the time per point decides whether it feels instant; per_point is the figure to watch.
#include <benchmark/benchmark.h>

#include <array>
#include <cmath>

#include "circuit/Sectionresponses.h"

namespace nerivane {
namespace {

constexpr int Points = 1024;
constexpr double Open = OpenMarker;
constexpr double Absent = AbsentMarker;

struct BenchSection {
    Topology topology;
    WorkingComponents parts;
};

// Sections of 1 kHz designs; the last two take the first-order forms.
// clang-format off
constexpr BenchSection Sections[] = {
    {Topology::VcvsLowPass, {11250, 22510, 67520, 67520, 10e-9, 10e-9}},
    {Topology::MfbLowPass, {3046, 30460, 17690, Absent, 1e-9, 47e-9}},
    {Topology::VcvsHighPass, {8277, 6323, 12650, 12650, 22e-9, 22e-9}},
    {Topology::MfbHighPass, {4168, 27620, Absent, Absent, 22e-9, 10e-9}},
    {Topology::VcvsBandPass, {106100, 11290, 22570, 45130, 10e-9, Absent}},
    {Topology::MfbBandPass, {53050, 687, 154300, Absent, 10e-9, 22e-9}},
    {Topology::VcvsNotch, {3386, 338600, 3352.7, Absent, 4.7e-9, 10e-9}},
    {Topology::VcvsHighPass, {Open, 15920, Open, 0, 10e-9, 10e-9}},
    {Topology::MfbHighPass, {Open, 33860, Absent, Absent, 10e-9, 4.7e-9}},
};
// clang-format on

// A sweep from 10 Hz to 10 MHz with a 1 MHz gain-bandwidth op amp, gain capped at 1e5.
struct Sweep {
    std::array<double, Points> w;
    std::array<double, Points> gain;
};

Sweep MakeSweep() {
    Sweep sweep;
    for (int k = 0; k < Points; ++k) {
        const double f = 10.0 * std::exp(k * std::log(1e6) / Points);
        sweep.w[k] = 6.283185307179586 * f;
        sweep.gain[k] = std::fmin(1e5, 1e6 / std::fmax(f, 100.0));
    }
    return sweep;
}

void SectionResponseBench(benchmark::State& state) {
    const BenchSection& section = Sections[state.range(0)];
    const Sweep sweep = MakeSweep();
    std::array<Complex, Points> response;
    for (auto _ : state) {
        response.fill({1.0, 0.0});
        for (int k = 0; k < Points; ++k)
            response[k] = response[k] * SectionResponse(section.topology, section.parts, sweep.w[k],
                                                        sweep.gain[k], 75.0);
        benchmark::DoNotOptimize(response.data());
        benchmark::ClobberMemory();
    }
    state.counters["per_point"] = benchmark::Counter(
        Points, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

BENCHMARK(SectionResponseBench)->ArgName("section")->DenseRange(0, 8);

}  // namespace
}  // namespace nerivane
