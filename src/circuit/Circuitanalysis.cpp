#include "circuit/Circuitanalysis.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>

#include "circuit/Sectionchains.h"
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

// One section alone, driven by an ideal source and driving nothing: common / a.
__attribute__((target_clones("arch=x86-64-v3", "default"))) void MultiplySectionSinglePole(
    const ChainPolynomials& chain, PhaseGain gain, const PreparedSweep& sweep,
    std::span<Complex> response) {
    for (std::size_t k = 0; k < sweep.points; ++k) {
        const double w = sweep.w[k];
        const Complex lag{1.0, w * gain.inversePole};
        response[k] = response[k] * DivideScaled(GainLinearAt(chain.common, w, lag, gain.dcGain),
                                                 GainLinearAt(chain.a, w, lag, gain.dcGain));
    }
}

// The cascade as two-ports: the chain matrices [a b; c d] multiplied from the input on, and
// their common denominators beside them; the filter's response is the product of the
// denominators over the product's a. Each section's five values are scaled by one real
// factor, which leaves that ratio as it is and keeps twenty sections far from overflow.
struct ChainProducts {
    std::array<Complex, MaxResponsePoints> a, b, c, d, common;
};

void StartChain(ChainProducts& product, std::size_t points) {
    for (std::size_t k = 0; k < points; ++k) {
        product.a[k] = product.d[k] = product.common[k] = {1.0, 0.0};
        product.b[k] = product.c[k] = {0.0, 0.0};
    }
}

__attribute__((target_clones("arch=x86-64-v3", "default"))) void ChainSection(
    const ChainPolynomials& chain, PhaseGain gain, const PreparedSweep& sweep,
    ChainProducts& product) {
    for (std::size_t k = 0; k < sweep.points; ++k) {
        const double w = sweep.w[k];
        const Complex lag{1.0, w * gain.inversePole};
        const Complex a = GainLinearAt(chain.a, w, lag, gain.dcGain),
                      b = GainLinearAt(chain.b, w, lag, gain.dcGain);
        const Complex c = GainLinearAt(chain.c, w, lag, gain.dcGain),
                      d = GainLinearAt(chain.d, w, lag, gain.dcGain);
        const Complex common = GainLinearAt(chain.common, w, lag, gain.dcGain);
        const double scale =
            1.0 / (std::fabs(a.re) + std::fabs(a.im) + std::fabs(common.re) + std::fabs(common.im));
        const Complex pa = product.a[k], pb = product.b[k], pc = product.c[k], pd = product.d[k];
        product.a[k] = (pa * a + pb * c) * scale;
        product.b[k] = (pa * b + pb * d) * scale;
        product.c[k] = (pc * a + pd * c) * scale;
        product.d[k] = (pc * b + pd * d) * scale;
        product.common[k] = product.common[k] * common * scale;
    }
}

void EndChain(const ChainProducts& product, std::size_t points, std::span<Complex> response) {
    for (std::size_t k = 0; k < points; ++k)
        response[k] = DivideScaled(product.common[k], product.a[k]);
}

// One section into the response with the magnitude model: its gains from the sweep and the
// program's own section forms. A notch whose parts were drawn apart is solved as built.
void MultiplyMagnitudeModel(Topology topology, const WorkingComponents& parts, double Ro,
                            const PreparedSweep& sweep, std::span<Complex> response) {
    const bool builtNotch = topology == Topology::VcvsNotch && parts.SecondC1 > 0.0;
    MultiplySection(builtNotch ? BuiltNotchPolynomials : SectionPolynomialsFor(topology), parts, Ro,
                    sweep, response);
}

// The sections of one run into response: a plain product with the magnitude model, a chain of
// two-ports with the single pole.
void SimulateSections(Topology topology, std::span<const WorkingComponents> sections,
                      const OpAmpSpec& opAmp, const PreparedSweep& sweep, ChainProducts* chain,
                      std::span<Complex> response) {
    const std::size_t points = sweep.points;
    if (opAmp.model != OpAmpModel::SinglePole) {
        for (std::size_t k = 0; k < points; ++k) response[k] = {1.0, 0.0};
        for (const WorkingComponents& parts : sections)
            MultiplyMagnitudeModel(topology, parts, opAmp.outputResistance, sweep, response);
        return;
    }
    StartChain(*chain, points);
    const PhaseGain gain = PhaseGainOf(opAmp.gainBandwidth);
    for (const WorkingComponents& parts : sections)
        ChainSection(ChainOf(topology, parts, opAmp.outputResistance), gain, sweep, *chain);
    EndChain(*chain, points, response);
}

// One section alone, with either model, into the response.
void MultiplyUnloaded(Topology topology, const WorkingComponents& parts, const OpAmpSpec& opAmp,
                      const PreparedSweep& sweep, std::span<Complex> response) {
    if (opAmp.model == OpAmpModel::SinglePole) {
        MultiplySectionSinglePole(ChainOf(topology, parts, opAmp.outputResistance),
                                  PhaseGainOf(opAmp.gainBandwidth), sweep, response);
    } else {
        MultiplyMagnitudeModel(topology, parts, opAmp.outputResistance, sweep, response);
    }
}

// Working space of the chain, only when the single pole asks for it.
std::unique_ptr<ChainProducts> ChainSpaceFor(const OpAmpSpec& opAmp) {
    if (opAmp.model != OpAmpModel::SinglePole) return nullptr;
    return std::make_unique_for_overwrite<ChainProducts>();
}

}  // namespace

void SimulateSection(Topology topology, const WorkingComponents& parts, const OpAmpSpec& opAmp,
                     std::span<const double> frequencies, std::span<Complex> response) {
    auto sweep = std::make_unique_for_overwrite<PreparedSweep>();
    PrepareSweep(frequencies, opAmp.gainBandwidth, std::nullopt, *sweep);
    MultiplyUnloaded(topology, parts, opAmp, *sweep, response);
}

void SimulateStages(Topology topology, const SectionComponents& parts, int numSections,
                    const OpAmpSpec& opAmp, std::span<const double> frequencies,
                    std::span<Complex> response, const std::function<void(int section)>& after) {
    auto sweep = std::make_unique_for_overwrite<PreparedSweep>();
    PrepareSweep(frequencies, opAmp.gainBandwidth, std::nullopt, *sweep);
    for (std::size_t k = 0; k < sweep->points; ++k) response[k] = {1.0, 0.0};
    for (int s = 0; s < numSections && s < MaxSections; ++s) {
        MultiplyUnloaded(topology, parts.Section(s), opAmp, *sweep, response);
        after(s);
    }
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
    std::array<WorkingComponents, MaxSections> sections;
    const int count = std::clamp(numSections, 0, MaxSections);
    for (int s = 0; s < count; ++s) sections[s] = parts.Section(s);
    const auto chain = ChainSpaceFor(opAmp);
    SimulateSections(topology, std::span(sections.data(), count), opAmp, *sweep, chain.get(),
                     response);
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
    const OpAmpSpec opAmp = OpAmpOf(settings);
    const auto chain = ChainSpaceFor(opAmp);
    const bool notchDrawnApart =
        inputs.topology == Topology::VcvsNotch && settings.build.notchPartsIndependent;
    std::array<WorkingComponents, MaxSections> sections;
    const int count = std::clamp(inputs.numSections, 0, MaxSections);
    for (int run = 0; run < runs; ++run) {
        for (int s = 0; s < count; ++s) {
            sections[s] = inputs.parts->Section(s);
            if (run > 0) {
                sections[s] = Perturb(sections[s], settings.resistorClass.fraction,
                                      settings.capacitorClass.fraction, random, notchDrawnApart);
            }
        }
        SimulateSections(inputs.topology, std::span(sections.data(), count), opAmp, *sweep,
                         chain.get(), response);
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
