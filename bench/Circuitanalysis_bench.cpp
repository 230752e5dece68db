// Times the simulation, which runs on every keystroke: one pass of 20 sections over 1024
// points (target 100 us), and a worst-case analysis of 1000 runs over 10 sections (150 ms).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <vector>

#include "circuit/Circuitanalysis.h"
#include "circuit/Valuecalculations.h"
#include "numerics/Polymain.h"

namespace nerivane {
namespace {

struct Design {
    SectionComponents parts{};
    ComponentSettings settings;
    std::array<double, PlotPoints> frequencies{};
    std::array<Complex, PlotPoints> response{};
    int sections = 0;

    Design(Topology topology, int poles) {
        ProtoSections prototype;
        BuildPrototype(Response::Bessel, poles, 0.2, 0.0, prototype);
        sections = topology >= Topology::VcvsBandPass ? poles : (poles + 1) / 2;
        std::array<double, MaxSections> c1, c2;
        c1.fill(1e-9);
        c2.fill(1e-8);
        ComponentInputs inputs;
        inputs.topology = topology;
        inputs.numSections = sections;
        inputs.f0 = 5000.0;
        inputs.gain = 2.0;
        inputs.sectionC1 = c1.data();
        inputs.sectionC2 = c2.data();
        SectionPanelHints hints;
        Messages messages;
        CalculateComponents(inputs, prototype, settings, parts, hints, messages);
        for (int k = 0; k < PlotPoints; ++k) frequencies[k] = 500.0 * std::pow(100.0, k / 1024.0);
    }
    SimulationInputs Inputs(Topology topology) const {
        SimulationInputs inputs;
        inputs.topology = topology;
        inputs.numSections = sections;
        inputs.parts = &parts;
        inputs.settings = &settings;
        inputs.frequencies = frequencies;
        return inputs;
    }
};

void SimulateTwentySections(benchmark::State& state) {
    const auto topology = static_cast<Topology>(state.range(0));
    auto design = std::make_unique<Design>(topology, 20);
    // 20 sections: 20 band-pass or notch sections from 20 poles; 20 low- or high-pass
    // sections would need 40 poles, so those repeat the 10 sections of 20 poles twice.
    if (topology < Topology::VcvsBandPass) {
        for (int s = 0; s < 10; ++s) design->parts.Store(s + 10, design->parts.Section(s));
        design->sections = 20;
    }
    ToleranceRandom random;
    for (auto _ : state) {
        Simulate(design->Inputs(topology), design->response, random, nullptr);
        benchmark::DoNotOptimize(design->response.data());
    }
}
BENCHMARK(SimulateTwentySections)
    ->ArgName("topology")
    ->DenseRange(0, 6)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

void WorstCaseThousandRunsTenSections(benchmark::State& state) {
    auto design = std::make_unique<Design>(Topology::VcvsLowPass, 20);
    design->settings.mode = ToleranceMode::WorstCase;
    design->settings.worstCaseRuns = 1000;
    ToleranceRandom random;
    for (auto _ : state) {
        Simulate(design->Inputs(Topology::VcvsLowPass), design->response, random, [](int) {});
        benchmark::DoNotOptimize(design->response.data());
    }
}
BENCHMARK(WorstCaseThousandRunsTenSections)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

}  // namespace
}  // namespace nerivane
