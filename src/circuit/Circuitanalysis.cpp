#include "circuit/Circuitanalysis.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>

#include "circuit/Sectionresponses.h"
#include "circuit/Valuecalculations.h"
#include "numerics/CheckedMath.h"

namespace nerivane {

double OpenLoopGain(double gainBandwidth, double f) {
    // A single pole with a flat top: the gain at 100 Hz holds below it, and never above 1e5.
    const double gain = f <= 100.0 ? gainBandwidth * 0.01 : gainBandwidth / f;
    return gain > 100000.0 ? 100000.0 : gain;
}

namespace {

// A section set up for a sweep: its polynomial coefficients as lines in the op amp's gain,
// c(A) = at0 + A * slope, taken from two evaluations. The top gain is a power of two at least
// as large as any gain of the sweep, so the slope's rounding stays below that of a direct
// evaluation at every gain used.
struct GainLine {
    SectionPolynomials at0;
    SectionPolynomials slope;
};

GainLine LineThrough(Topology topology, const WorkingComponents& parts, double outputResistance,
                     double largestGain) {
    const SectionPolynomialsFunction polynomials = SectionPolynomialsFor(topology);
    const double top = std::exp2(std::ceil(std::log2(std::max(largestGain, 1.0))));
    GainLine line{polynomials(parts, 0.0, outputResistance), {}};
    const SectionPolynomials atTop = polynomials(parts, top, outputResistance);
    for (int i = 0; i < 4; ++i) {
        line.slope.n[i] = (atTop.n[i] - line.at0.n[i]) / top;
        line.slope.d[i] = (atTop.d[i] - line.at0.d[i]) / top;
    }
    return line;
}

// The sweep as the section loop wants it: angular frequencies and the op amp's gain at each.
struct PreparedSweep {
    std::array<double, MaxResponsePoints> w;
    std::array<double, MaxResponsePoints> gain;
    std::size_t points = 0;
};

void PrepareSweep(std::span<const double> frequencies, double gainBandwidth,
                  std::optional<double> fixedGain, PreparedSweep& sweep) {
    sweep.points = std::min<std::size_t>(frequencies.size(), MaxResponsePoints);
    for (std::size_t k = 0; k < sweep.points; ++k) {
        sweep.w[k] = TwoPi * frequencies[k];
        sweep.gain[k] = fixedGain ? *fixedGain : OpenLoopGain(gainBandwidth, frequencies[k]);
    }
}

// The per-point loop is the program's hottest: built once for AVX2 with FMA (four points per
// instruction) and once for the baseline, chosen by the processor at load time.
__attribute__((target_clones("arch=x86-64-v3", "default"))) void MultiplySection(
    Topology topology, const WorkingComponents& parts, double outputResistance,
    const PreparedSweep& sweep, std::span<Complex> response) {
    double largestGain = 0.0;
    for (std::size_t k = 0; k < sweep.points; ++k)
        largestGain = std::max(largestGain, sweep.gain[k]);
    const GainLine line = LineThrough(topology, parts, outputResistance, largestGain);
    // Plain arithmetic on local copies, no calls and no branches: the loop vectorises.
    const SectionPolynomials at0 = line.at0;
    const SectionPolynomials slope = line.slope;
    const std::size_t n = sweep.points;
    for (std::size_t k = 0; k < n; ++k) {
        const double gain = sweep.gain[k];
        SectionPolynomials p;
        for (int i = 0; i < 4; ++i) {
            p.n[i] = at0.n[i] + gain * slope.n[i];
            p.d[i] = at0.d[i] + gain * slope.d[i];
        }
        response[k] = response[k] * EvaluateSection(p, sweep.w[k]);
    }
}

}  // namespace

void SimulateSection(Topology topology, const WorkingComponents& parts, double gainBandwidth,
                     double outputResistance, std::span<const double> frequencies,
                     std::span<Complex> response) {
    auto sweep = std::make_unique_for_overwrite<PreparedSweep>();
    PrepareSweep(frequencies, gainBandwidth, std::nullopt, *sweep);
    MultiplySection(topology, parts, outputResistance, *sweep, response);
}

void SimulateSectionAtGain(Topology topology, const WorkingComponents& parts, double gain,
                           double outputResistance, std::span<const double> frequencies,
                           std::span<Complex> response) {
    auto sweep = std::make_unique_for_overwrite<PreparedSweep>();
    PrepareSweep(frequencies, 0.0, gain, *sweep);
    MultiplySection(topology, parts, outputResistance, *sweep, response);
}

void SimulateCascade(Topology topology, const SectionComponents& parts, int numSections,
                     double gainBandwidth, double outputResistance,
                     std::span<const double> frequencies, std::span<Complex> response) {
    auto sweep = std::make_unique_for_overwrite<PreparedSweep>();
    PrepareSweep(frequencies, gainBandwidth, std::nullopt, *sweep);
    for (std::size_t k = 0; k < sweep->points; ++k) response[k] = {1.0, 0.0};
    for (int s = 0; s < numSections && s < MaxSections; ++s)
        MultiplySection(topology, parts.Section(s), outputResistance, *sweep, response);
}

int ToleranceRandom::Next() {
    // A 64-bit linear congruential step; the high bits are the well-mixed ones.
    state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<int>((state_ >> 33) % 201);
}

WorkingComponents Perturb(const WorkingComponents& parts, double resistorTolerance,
                          double capacitorTolerance, ToleranceRandom& random) {
    const auto move = [&](double value, double tolerance) {
        const int n = random.Next();
        return value * (1.0 + (100 - n) * 0.01 * tolerance);
    };
    WorkingComponents moved;
    moved.R1 = move(parts.R1, resistorTolerance);
    moved.R2 = move(parts.R2, resistorTolerance);
    moved.R3 = move(parts.R3, resistorTolerance);
    moved.R4 = move(parts.R4, resistorTolerance);
    moved.C1 = move(parts.C1, capacitorTolerance);
    moved.C2 = move(parts.C2, capacitorTolerance);
    return moved;
}

void Simulate(const SimulationInputs& inputs, std::span<Complex> response, ToleranceRandom& random,
              const std::function<void(int run)>& perRun) {
    const ComponentSettings& settings = *inputs.settings;
    const int runs = settings.mode == ToleranceMode::WorstCase && !inputs.singlePass
                         ? settings.worstCaseRuns
                         : 1;
    auto sweep = std::make_unique_for_overwrite<PreparedSweep>();
    PrepareSweep(inputs.frequencies, settings.gainBandwidth, std::nullopt, *sweep);
    const std::size_t points = sweep->points;
    for (int run = 0; run < runs; ++run) {
        for (std::size_t k = 0; k < points; ++k) response[k] = {1.0, 0.0};
        for (int s = 0; s < inputs.numSections && s < MaxSections; ++s) {
            WorkingComponents parts = inputs.parts->Section(s);
            if (run > 0) {
                parts = Perturb(parts, settings.resistorClass.fraction,
                                settings.capacitorClass.fraction, random);
            }
            MultiplySection(inputs.topology, parts, settings.outputResistance, *sweep, response);
        }
        if (inputs.singlePass) return;
        if (perRun) perRun(run);
    }
}

SweepLimits SweepLimitsFor(Sweep sweepIndex, double f0) {
    // Multiples of F0; the linear sweep's start is a fixed 1 Hz instead.
    // clang-format off
    static constexpr SweepLimits Sweeps[] = {
        {0.0, 2.0}, {0.5, 2.0}, {0.25, 4.0}, {0.125, 8.0}, {0.1, 10.0}, {0.01, 100.0},
    };
    // clang-format on
    const int index = Index(sweepIndex) >= 0 && Index(sweepIndex) <= 5 ? Index(sweepIndex) : 4;
    return {index == 0 ? 1.0 : Sweeps[index].start * f0, Sweeps[index].end * f0};
}

void ReferenceFrequencyGrid(Sweep sweepIndex, double f0, std::span<double> frequencies) {
    const auto [start, end] = SweepLimitsFor(sweepIndex, f0);
    const std::size_t n = frequencies.size();
    if (sweepIndex == Sweep::Linear) {
        for (std::size_t k = 0; k < n; ++k) frequencies[k] = k * (end - start) / n + start;
    } else {
        const double logSpan = CheckedLog(end / start);
        for (std::size_t k = 0; k < n; ++k) frequencies[k] = start * CheckedExp(k * logSpan / n);
    }
}

}  // namespace nerivane
