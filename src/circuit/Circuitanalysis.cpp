#include "circuit/Circuitanalysis.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>

#include "circuit/Nodesolutions.h"
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

GainLine LineThrough(SectionPolynomialsFunction polynomials, const WorkingComponents& parts,
                     double outputResistance, double largestGain) {
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
    SectionPolynomialsFunction polynomials, const WorkingComponents& parts, double outputResistance,
    const PreparedSweep& sweep, std::span<Complex> response) {
    double largestGain = 0.0;
    for (std::size_t k = 0; k < sweep.points; ++k)
        largestGain = std::max(largestGain, sweep.gain[k]);
    const GainLine line = LineThrough(polynomials, parts, outputResistance, largestGain);
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

// The op amp with phase: with N = N0 + A N1, D = D0 + A D1 and A = A0 / (1 + s / wp), the
// section is (N0 (1 + s / wp) + A0 N1) / (D0 (1 + s / wp) + A0 D1) on the circuit's own nodes.
__attribute__((target_clones("arch=x86-64-v3", "default"))) void MultiplySectionSinglePole(
    SectionPolynomialsFunction polynomials, const WorkingComponents& parts, double outputResistance,
    SinglePoleOpAmp opAmp, const PreparedSweep& sweep, std::span<Complex> response) {
    const GainLine line = LineThrough(polynomials, parts, outputResistance, opAmp.dcGain);
    const SectionPolynomials at0 = line.at0;
    const SectionPolynomials slope = line.slope;
    const double a0 = opAmp.dcGain;
    const double inversePole = 1.0 / (TwoPi * opAmp.poleHz);
    const std::size_t n = sweep.points;
    for (std::size_t k = 0; k < n; ++k) {
        const double w = sweep.w[k];
        const Complex lag{1.0, w * inversePole};
        const Complex numerator = PolynomialAt(at0.n, w) * lag + PolynomialAt(slope.n, w) * a0;
        const Complex denominator = PolynomialAt(at0.d, w) * lag + PolynomialAt(slope.d, w) * a0;
        response[k] = response[k] * DivideScaled(numerator, denominator);
    }
}

// One section into the response with the chosen op-amp model: the magnitude model takes its
// gains from the sweep and the program's own section forms, the single pole the circuit's
// node solution. A notch whose parts were drawn apart is always solved as built.
void MultiplyModelled(Topology topology, const WorkingComponents& parts, const OpAmpSpec& opAmp,
                      const PreparedSweep& sweep, std::span<Complex> response) {
    const bool builtNotch = topology == Topology::VcvsNotch && parts.SecondC1 > 0.0;
    if (opAmp.model == OpAmpModel::SinglePole) {
        MultiplySectionSinglePole(NodeSolutionFor(topology), parts, opAmp.outputResistance,
                                  SinglePoleOf(opAmp.gainBandwidth), sweep, response);
    } else {
        MultiplySection(builtNotch ? BuiltNotchPolynomials : SectionPolynomialsFor(topology), parts,
                        opAmp.outputResistance, sweep, response);
    }
}

}  // namespace

void SimulateSection(Topology topology, const WorkingComponents& parts, const OpAmpSpec& opAmp,
                     std::span<const double> frequencies, std::span<Complex> response) {
    auto sweep = std::make_unique_for_overwrite<PreparedSweep>();
    PrepareSweep(frequencies, opAmp.gainBandwidth, std::nullopt, *sweep);
    MultiplyModelled(topology, parts, opAmp, *sweep, response);
}

void SimulateSectionAtGain(Topology topology, const WorkingComponents& parts, double gain,
                           double outputResistance, std::span<const double> frequencies,
                           std::span<Complex> response) {
    auto sweep = std::make_unique_for_overwrite<PreparedSweep>();
    PrepareSweep(frequencies, 0.0, gain, *sweep);
    MultiplySection(SectionPolynomialsFor(topology), parts, outputResistance, *sweep, response);
}

void SimulateCascade(Topology topology, const SectionComponents& parts, int numSections,
                     const OpAmpSpec& opAmp, std::span<const double> frequencies,
                     std::span<Complex> response) {
    auto sweep = std::make_unique_for_overwrite<PreparedSweep>();
    PrepareSweep(frequencies, opAmp.gainBandwidth, std::nullopt, *sweep);
    for (std::size_t k = 0; k < sweep->points; ++k) response[k] = {1.0, 0.0};
    for (int s = 0; s < numSections && s < MaxSections; ++s)
        MultiplyModelled(topology, parts.Section(s), opAmp, *sweep, response);
}

OpAmpSpec OpAmpOf(const ComponentSettings& settings) {
    return {settings.gainBandwidth, settings.outputResistance, settings.build.opAmpModel};
}

int ToleranceRandom::Next() {
    // A 64-bit linear congruential step; the high bits are the well-mixed ones.
    state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<int>((state_ >> 33) % 201);
}

WorkingComponents Perturb(const WorkingComponents& parts, double resistorTolerance,
                          double capacitorTolerance, ToleranceRandom& random,
                          bool secondC1OfItsOwn) {
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
    // Drawn last, so the draws of the other parts stay those of the plain runs.
    if (secondC1OfItsOwn) moved.SecondC1 = move(parts.C1, capacitorTolerance);
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
    const OpAmpSpec opAmp = OpAmpOf(settings);
    const bool notchDrawnApart =
        inputs.topology == Topology::VcvsNotch && settings.build.notchPartsIndependent;
    for (int run = 0; run < runs; ++run) {
        for (std::size_t k = 0; k < points; ++k) response[k] = {1.0, 0.0};
        for (int s = 0; s < inputs.numSections && s < MaxSections; ++s) {
            WorkingComponents parts = inputs.parts->Section(s);
            if (run > 0) {
                parts = Perturb(parts, settings.resistorClass.fraction,
                                settings.capacitorClass.fraction, random, notchDrawnApart);
            }
            MultiplyModelled(inputs.topology, parts, opAmp, *sweep, response);
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
