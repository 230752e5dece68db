#include "circuit/Circuitanalysis.h"

#include <cmath>

#include "circuit/Sectionresponses.h"
#include "circuit/Valuecalculations.h"
#include "numerics/CheckedMath.h"

namespace nerivane {

double OpenLoopGain(double gainBandwidth, double f) {
    // A single pole with a flat top: the gain at 100 Hz holds below it, and never above 1e5.
    const double gain = f <= 100.0 ? gainBandwidth * 0.01 : gainBandwidth / f;
    return gain > 100000.0 ? 100000.0 : gain;
}

void SimulateSection(int topology, const WorkingComponents& parts, double gainBandwidth,
                     double outputResistance, std::span<const double> frequencies,
                     std::span<Complex> response) {
    const SectionResponseFunction section = SectionResponseFor(topology);
    const std::size_t n = frequencies.size();
    for (std::size_t k = 0; k < n; ++k) {
        const double f = frequencies[k];
        response[k] = response[k] *
                      section(parts, TwoPi * f, OpenLoopGain(gainBandwidth, f), outputResistance);
    }
}

void SimulateSectionAtGain(int topology, const WorkingComponents& parts, double gain,
                           double outputResistance, std::span<const double> frequencies,
                           std::span<Complex> response) {
    const SectionResponseFunction section = SectionResponseFor(topology);
    const std::size_t n = frequencies.size();
    for (std::size_t k = 0; k < n; ++k) {
        response[k] = response[k] * section(parts, TwoPi * frequencies[k], gain, outputResistance);
    }
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
    const std::size_t points = inputs.frequencies.size();
    for (int run = 0; run < runs; ++run) {
        for (std::size_t k = 0; k < points; ++k) response[k] = {1.0, 0.0};
        for (int s = 0; s < inputs.numSections && s < MaxSections; ++s) {
            WorkingComponents parts = inputs.parts->Section(s);
            if (run > 0) {
                parts = Perturb(parts, settings.resistorClass.fraction,
                                settings.capacitorClass.fraction, random);
            }
            SimulateSection(inputs.topology, parts, settings.gainBandwidth,
                            settings.outputResistance, inputs.frequencies, response);
        }
        if (inputs.singlePass) return;
        if (perRun) perRun(run);
    }
}

void ReferenceFrequencyGrid(int sweepIndex, double f0, std::span<double> frequencies) {
    // clang-format off
    static constexpr struct { double start, end; } Sweeps[] = {
        {0.0, 2.0}, {0.5, 2.0}, {0.25, 4.0}, {0.125, 8.0}, {0.1, 10.0}, {0.01, 100.0},
    };
    // clang-format on
    const int index = sweepIndex >= 0 && sweepIndex <= 5 ? sweepIndex : 4;
    const double start = index == 0 ? 1.0 : Sweeps[index].start * f0;
    const double end = Sweeps[index].end * f0;
    const std::size_t n = frequencies.size();
    if (index == 0) {
        for (std::size_t k = 0; k < n; ++k) frequencies[k] = k * (end - start) / n + start;
    } else {
        const double logSpan = CheckedLog(end / start);
        for (std::size_t k = 0; k < n; ++k) frequencies[k] = start * CheckedExp(k * logSpan / n);
    }
}

}  // namespace nerivane
