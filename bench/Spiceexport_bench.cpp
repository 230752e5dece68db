// The internal simulation against ngspice on the same circuit: a 20-pole VCVS low pass (ten
// sections) with a single-pole op amp, 1024 points over one decade each side of F0. The
// ngspice figure is the whole batch process (start-up, parsing, the sweep, the printout), as
// a user running the exported netlist meets it; the counter ngspice_over_internal is the ratio.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "app/DesignState.h"
#include "circuit/Circuitanalysis.h"
#include "circuit/Spiceexport.h"
#include "circuit/Valuecalculations.h"
#include "numerics/Polymain.h"

namespace nerivane {
namespace {

constexpr int Poles = 20;
constexpr double F0 = 5000.0;
constexpr double GainBandwidth = 10e6;
constexpr double OutputResistance = 10.0;

struct BenchDesign {
    SpiceDesign spice;
    SectionComponents parts{};
    std::vector<double> frequencies = std::vector<double>(PlotPoints);
};

BenchDesign MakeDesign() {
    BenchDesign design;
    ProtoSections prototype{};
    BuildPrototype(Response::Butterworth, Poles, 0.0, 0.0, prototype);
    double c1[MaxSections], c2[MaxSections];
    for (int i = 0; i < MaxSections; ++i) {
        c1[i] = 10e-9;
        c2[i] = 22e-9;
    }
    ComponentInputs inputs;
    inputs.topology = Topology::VcvsLowPass;
    inputs.numSections = SectionsForPoles(Topology::VcvsLowPass, Poles);
    inputs.f0 = F0;
    inputs.sectionC1 = c1;
    inputs.sectionC2 = c2;
    ComponentSettings settings;
    SectionPanelHints hints;
    Messages messages;
    CalculateComponents(inputs, prototype, settings, design.parts, hints, messages);

    design.spice.topology = Topology::VcvsLowPass;
    design.spice.numSections = inputs.numSections;
    design.spice.freqMin = F0 / 10.0;
    design.spice.freqMax = F0 * 10.0;
    design.spice.points = PlotPoints;
    design.spice.gainBandwidth = GainBandwidth;
    design.spice.outputResistance = OutputResistance;
    design.spice.idealOpAmp = false;
    ReferenceFrequencyGrid(Sweep::OneDecade, F0, design.frequencies);  // one decade each side of F0
    return design;
}

const BenchDesign& Design() {
    static const BenchDesign design = MakeDesign();
    return design;
}

void SimulateAll(const BenchDesign& design, std::vector<Complex>& response) {
    std::fill(response.begin(), response.end(), Complex{1.0, 0.0});
    for (int s = 0; s < design.spice.numSections; ++s) {
        SimulateSection(design.spice.topology, design.parts.Section(s),
                        {GainBandwidth, OutputResistance}, design.frequencies, response);
    }
}

// Mean seconds of one internal simulation, timed apart from the benchmark loops so the ngspice
// benchmark can state the ratio.
double InternalSeconds() {
    constexpr int Runs = 200;
    const BenchDesign& design = Design();
    std::vector<Complex> response(design.frequencies.size());
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < Runs; ++i) {
        SimulateAll(design, response);
        benchmark::DoNotOptimize(response.data());
    }
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    return elapsed.count() / Runs;
}

void BM_InternalSimulation(benchmark::State& state) {
    const BenchDesign& design = Design();
    std::vector<Complex> response(design.frequencies.size());
    for (auto _ : state) {
        SimulateAll(design, response);
        benchmark::DoNotOptimize(response.data());
    }
}
BENCHMARK(BM_InternalSimulation)->Unit(benchmark::kMicrosecond);

void BM_NgspiceProcess(benchmark::State& state) {
    if (std::system("command -v ngspice > /dev/null 2>&1") != 0) {
        state.SkipWithError("ngspice is not on PATH");
        return;
    }
    namespace fs = std::filesystem;
    std::string pattern = (fs::temp_directory_path() / "nerivane-bench-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        state.SkipWithError("no temporary directory");
        return;
    }
    const fs::path dir = pattern, netlist = dir / "filter.cir";
    std::ofstream(netlist) << SpiceNetlist(Design().spice, Design().parts);
    const std::string command = "ngspice -b '" + netlist.string() + "' > /dev/null 2>&1";

    double seconds = 0.0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        if (std::system(command.c_str()) != 0) {
            state.SkipWithError("ngspice failed");
            break;
        }
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        seconds += elapsed.count();
    }
    fs::remove_all(dir);
    if (state.iterations() > 0) {
        state.counters["ngspice_over_internal"] =
            seconds / static_cast<double>(state.iterations()) / InternalSeconds();
    }
}
// The child process's CPU time is not the benchmark's own: measure wall time.
BENCHMARK(BM_NgspiceProcess)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace nerivane
