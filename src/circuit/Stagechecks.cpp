#include "circuit/Stagechecks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "circuit/Gainbandwidthneeded.h"
#include "circuit/Sectionchains.h"
#include "circuit/Sectioncircuits.h"
#include "circuit/Valuecalculations.h"
#include "numerics/Formatfunctions.h"

namespace nerivane {
namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr const char* Ohm = "\u03A9";
constexpr double ModelComparisonDb = 40.0;  // the models are compared within this of the peak

std::string SectionName(int section) {
    return "Section " + std::to_string(section);
}

void WarnOfResistors(Topology topology, int section, const WorkingComponents& values,
                     const BuildOptions& build, std::vector<std::string>& warnings) {
    for (const CircuitPart& part : CircuitOf(topology).Parts()) {
        if (part.kind != PartKind::Resistor || IsSecondPart(part)) continue;
        if (ConditionOf(part, values).state != PartState::Placed) continue;
        const double value = ValueOf(values, part.value);
        if (value >= build.minPracticalOhms && value <= build.maxPracticalOhms) continue;
        warnings.push_back(SectionName(section) + ": " + RoleOf(part) + " = " +
                           FormatEngineering(value, 2, Ohm) + " is outside the practical range " +
                           FormatEngineering(build.minPracticalOhms, 2, Ohm) + " to " +
                           FormatEngineering(build.maxPracticalOhms, 2, Ohm) + ".");
    }
}

// The deepest point of the cascade: the sweep's lowest point, then a fine grid between its
// neighbours.
struct Deepest {
    double db;
    double hz;
};

Deepest DeepestPoint(const std::vector<WorkingComponents>& sections, const OpAmpSpec& opAmp,
                     std::span<const double> frequencies) {
    const auto cascade = [&](std::span<const double> f) {
        std::vector<Complex> h(f.size(), Complex{1.0, 0.0});
        for (const WorkingComponents& parts : sections)
            SimulateSection(Topology::VcvsNotch, parts, opAmp, f, h);
        return h;
    };
    const std::vector<Complex> coarse = cascade(frequencies);
    std::size_t lowest = 0;
    for (std::size_t k = 1; k < coarse.size(); ++k)
        if (ComplexAbs(coarse[k]) < ComplexAbs(coarse[lowest])) lowest = k;
    const double from = frequencies[lowest > 0 ? lowest - 1 : 0];
    const double to = frequencies[std::min(lowest + 1, frequencies.size() - 1)];
    std::vector<double> fine(257);
    for (std::size_t k = 0; k < fine.size(); ++k)
        fine[k] = from * std::pow(to / from, static_cast<double>(k) / (fine.size() - 1));
    const std::vector<Complex> h = cascade(fine);
    Deepest deepest{20.0 * std::log10(ComplexAbs(coarse[lowest])), frequencies[lowest]};
    for (std::size_t k = 0; k < h.size(); ++k) {
        const double db = 20.0 * std::log10(ComplexAbs(h[k]));
        if (db < deepest.db) deepest = {db, fine[k]};
    }
    deepest.db = std::max(deepest.db, NotchDepthFloorDb);
    return deepest;
}

NotchAsListed CheckNotch(const BuildCheckInputs& inputs) {
    std::vector<WorkingComponents> listed, exact;
    NotchAsListed notch;
    for (int s = 0; s < inputs.numSections; ++s) {
        WorkingComponents parts = inputs.parts->Section(s);
        // A second C1 of the same value makes the simulation take the stored shunt.
        parts.SecondC1 = parts.C1;
        listed.push_back(parts);
        if (parts.C2 != 2.0 * parts.C1) notch.roundedShuntSections.push_back(s);
        parts.C2 = 2.0 * parts.C1;
        exact.push_back(parts);
    }
    const OpAmpSpec opAmp = OpAmpOf(*inputs.settings);
    const Deepest asListed = DeepestPoint(listed, opAmp, inputs.frequencies);
    notch.depthDb = asListed.db;
    notch.depthHz = asListed.hz;
    notch.exactShuntDepthDb = DeepestPoint(exact, opAmp, inputs.frequencies).db;
    return notch;
}

// The largest dB difference between the two op-amp models, where either is within 40 dB of
// the filter's peak.
Deepest ModelDifference(const BuildCheckInputs& inputs) {
    const std::size_t n = inputs.frequencies.size();
    std::vector<Complex> other(n);
    OpAmpSpec opAmp = OpAmpOf(*inputs.settings);
    opAmp.model =
        opAmp.model == OpAmpModel::SinglePole ? OpAmpModel::Magnitude : OpAmpModel::SinglePole;
    SimulateCascade(inputs.topology, *inputs.parts, inputs.numSections, opAmp, inputs.frequencies,
                    other);
    double peak = 0.0;
    for (std::size_t k = 0; k < n; ++k)
        peak = std::max({peak, ComplexAbs(inputs.response[k]), ComplexAbs(other[k])});
    const double floor = peak * std::pow(10.0, -ModelComparisonDb / 20.0);
    Deepest largest{0.0, 0.0};
    for (std::size_t k = 0; k < n; ++k) {
        const double a = ComplexAbs(inputs.response[k]), b = ComplexAbs(other[k]);
        if (!(std::max(a, b) >= floor)) continue;
        const double db = std::fabs(20.0 * std::log10(b / a));
        if (db > largest.db) largest = {db, inputs.frequencies[k]};
    }
    return largest;
}

std::string Percent(double fraction) {
    return FormatGeneral(100.0 * fraction, 3) + " %";
}

// "+0.25 %", "-0.50 %": rounded first, so a change of a few thousandths does not read "-0.00".
std::string SignedPercent(double percent) {
    const double rounded = std::round(100.0 * percent) / 100.0 + 0.0;
    return (rounded >= 0.0 ? "+" : "") + FormatFixedPlain(rounded, 2) + " %";
}

std::string MostSensitiveLine(const StageNeeds& stage) {
    const PartSensitivity* most = MostSensitive(stage.sensitivity);
    if (most == nullptr) return {};
    return "  most sensitive: " + std::string(most->part) + " (1 % moves f0 by " +
           SignedPercent(most->f0Percent) +
           (std::isnan(most->qPercent) ? std::string()
                                       : ", Q by " + SignedPercent(most->qPercent)) +
           ")";
}

}  // namespace

BuildChecks CheckBuild(const BuildCheckInputs& inputs) {
    BuildChecks checks;
    const ComponentSettings& settings = *inputs.settings;
    const BuildOptions& build = settings.build;
    const std::size_t n = inputs.frequencies.size();
    std::vector<Complex> cumulative(n);
    const int count = std::clamp(inputs.numSections, 0, MaxSections);
    checks.stages.resize(static_cast<std::size_t>(count));
    SimulateStages(inputs.topology, *inputs.parts, count, OpAmpOf(settings), inputs.frequencies,
                   cumulative, [&](int s) {
                       StageNeeds& stage = checks.stages[static_cast<std::size_t>(s)];
                       double peak = -1.0, fastest = 0.0;  // squared magnitudes
                       for (std::size_t k = 0; k < n; ++k) {
                           const Complex h = cumulative[k];
                           const double squared = h.re * h.re + h.im * h.im;
                           const double f = inputs.frequencies[k];
                           if (squared > peak) peak = squared, stage.peakGainHz = f;
                           fastest = std::max(fastest, f * f * squared);
                       }
                       stage.peakGain = std::sqrt(peak);
                       stage.slewRateVPerUs =
                           TwoPi * std::sqrt(fastest) * build.inputAmplitudeVolts * 1e-6;
                   });
    for (int s = 0; s < count; ++s) {
        const WorkingComponents parts = inputs.parts->Section(s);
        const IdealSection ideal = IdealOf(inputs.topology, parts);
        StageNeeds& stage = checks.stages[static_cast<std::size_t>(s)];
        const SectionFigures figures = FiguresOf(inputs.topology, ideal);
        stage.f0Hz = figures.f0Hz;
        stage.q = figures.q;
        stage.gain = figures.gain;
        stage.gainBandwidthHz = GainBandwidthNeeded(ideal, inputs.frequencies, figures.f0Hz);
        stage.qSpread =
            std::isnan(stage.q) ? NaN : QSpread(inputs.topology, parts, stage.q, settings);
        stage.sensitivity = SensitivitiesOf(inputs.topology, parts, figures);

        const std::string name = SectionName(s);
        if (!inputs.idealOpAmp && !(stage.gainBandwidthHz <= settings.gainBandwidth)) {
            checks.warnings.push_back(
                name + " needs an op amp of " +
                (std::isnan(stage.gainBandwidthHz)
                     ? std::string("more than 10 THz")
                     : "at least " + FormatEngineering(stage.gainBandwidthHz, 2, "Hz")) +
                " gain-bandwidth to stay within 0.1 dB of its design; this one has " +
                FormatEngineering(settings.gainBandwidth, 2, "Hz") + ".");
        }
        WarnOfResistors(inputs.topology, s, parts, build, checks.warnings);
        if (stage.qSpread > MaxQSpread) {
            checks.warnings.push_back(name + ": Q = " + FormatGeneral(stage.q, 3) +
                                      " is too high for this circuit with " +
                                      Percent(settings.resistorClass.fraction) + " resistors and " +
                                      Percent(settings.capacitorClass.fraction) +
                                      " capacitors: their tolerances can move it by up to " +
                                      Percent(stage.qSpread) + ".");
        }
    }
    checks.standardValues.assign(inputs.standardValues.begin(), inputs.standardValues.end());
    if (inputs.topology == Topology::VcvsNotch) checks.notch = CheckNotch(inputs);
    if (!inputs.idealOpAmp) {
        const Deepest difference = ModelDifference(inputs);
        if (difference.db > ModelDifferenceLimitDb) {
            checks.warnings.push_back(
                "The op amp's phase changes the response: with it (the single-pole model) the "
                "response differs from the magnitude-only model by " +
                FormatFixedPlain(difference.db, 2) + " dB at " +
                FormatEngineering(difference.hz, 2, "Hz") + ".");
        }
    }
    return checks;
}

std::vector<std::string> BuildCheckLines(const BuildChecks& checks) {
    std::vector<std::string> lines;
    lines.emplace_back("What each stage needs");
    for (std::size_t s = 0; s < checks.stages.size(); ++s) {
        const StageNeeds& stage = checks.stages[s];
        lines.push_back(SectionName(static_cast<int>(s)) + ": f0 " +
                        FormatEngineering(stage.f0Hz, 2, "Hz") +
                        (std::isnan(stage.q) ? std::string(", first order")
                                             : ", Q " + FormatGeneral(stage.q, 4)) +
                        ", gain " + FormatGeneral(stage.gain, 4));
        // Rounded first, so a loss of a few thousandths of a dB does not read "-0.00".
        const double peakDb = std::round(2000.0 * std::log10(stage.peakGain)) / 100.0 + 0.0;
        lines.push_back("  peak " + FormatFixedPlain(peakDb, 2) + " dB at " +
                        FormatEngineering(stage.peakGainHz, 2, "Hz"));
        lines.push_back("  slew rate " + FormatGeneral(stage.slewRateVPerUs, 3) + " V/us");
        lines.push_back("  GBW for 0.1 dB " +
                        (std::isnan(stage.gainBandwidthHz)
                             ? std::string("over 10 THz")
                             : FormatEngineering(stage.gainBandwidthHz, 2, "Hz")));
        if (std::string line = MostSensitiveLine(stage); !line.empty()) lines.push_back(line);
    }
    const auto error = [](double before, double after) {
        return FormatFixedPlain(100.0 * before, 2) + " % -> " + FormatFixedPlain(100.0 * after, 2) +
               " %";
    };
    for (const StandardValueErrors& e : checks.standardValues) {
        lines.push_back(
            SectionName(e.section) + ": standard values searched: f0 error " +
            error(e.f0Before, e.f0After) +
            (std::isnan(e.qBefore) ? std::string() : ", Q error " + error(e.qBefore, e.qAfter)));
    }
    if (checks.notch) {
        const NotchAsListed& notch = *checks.notch;
        const auto depth = [](double db) {
            return db <= NotchDepthFloorDb ? "below " + FormatFixedPlain(db, 0) + " dB"
                                           : FormatFixedPlain(db, 1) + " dB";
        };
        lines.push_back("Notch depth with the parts as listed: " + depth(notch.depthDb) + " at " +
                        FormatEngineering(notch.depthHz, 2, "Hz") +
                        " (with C2 exactly 2 C1: " + depth(notch.exactShuntDepthDb) + ")");
        for (int s : notch.roundedShuntSections) {
            lines.push_back(SectionName(s) +
                            ": C2 is the standard value nearest 2 C1; two C1 in parallel "
                            "make it exactly 2 C1.");
        }
    }
    if (!checks.warnings.empty()) lines.emplace_back("Warnings");
    for (const std::string& warning : checks.warnings) lines.push_back(warning);
    return lines;
}

}  // namespace nerivane
