#include "circuit/Stagechecks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "circuit/Sectionchains.h"
#include "circuit/Sectioncircuits.h"
#include "circuit/Valuecalculations.h"
#include "numerics/Formatfunctions.h"
#include "numerics/Rootfinderfunctions.h"

namespace nerivane {
namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr const char* Ohm = "\u03A9";
constexpr double AllowedDepartureDb = 0.1;
constexpr double ShownRangeDb = 20.0;          // the GBW is checked within this of the peak
constexpr double ModelComparisonDb = 40.0;     // the models are compared within this of the peak
constexpr double LargestGainBandwidth = 1e13;  // Hz; beyond it no op amp is worth naming
constexpr double MinGainBandwidth = 1e3;       // the smallest the op-amp box takes
constexpr double GridStepsPerDecade = 240.0;   // the GBW found is a point 1 % apart from the next

// The ideal response, N/D with both the lines' slopes: A without limit and Ro = 0.
struct IdealSection {
    ChainPolynomials chain;
    Complex At(double w) const {
        return DivideScaled(PolynomialAt(chain.common.slope, w), PolynomialAt(chain.a.slope, w));
    }
};

IdealSection IdealOf(Topology topology, const WorkingComponents& parts) {
    return {ChainOf(topology, parts, 0.0)};
}

int DegreeOf(const std::array<double, 4>& c) {
    int degree = 3;
    while (degree > 0 && c[degree] == 0.0) --degree;
    return degree;
}

// f0 and Q of the denominator's quadratic factor; a cubic (the notch) first loses its real
// root, the one it shares with the numerator.
struct PoleFigures {
    double f0Hz;
    double q;
};

PoleFigures PoleFiguresOf(const std::array<double, 4>& d) {
    const int degree = DegreeOf(d);
    if (degree == 0) return {NaN, NaN};
    if (degree == 1) return {d[0] / d[1] / TwoPi, NaN};
    if (degree == 2) return {std::sqrt(d[0] / d[2]) / TwoPi, std::sqrt(d[0] * d[2]) / d[1]};
    const double highestFirst[4] = {d[3], d[2], d[1], d[0]};
    double re[3], im[3];
    if (FindPolynomialRoots(highestFirst, 3, re, im).count != 3) return {NaN, NaN};
    int real = 0;
    for (int i = 1; i < 3; ++i)
        if (std::fabs(im[i]) < std::fabs(im[real])) real = i;
    const int i = (real + 1) % 3, j = (real + 2) % 3;
    const double product = re[i] * re[j] - im[i] * im[j];
    const double w0 = std::sqrt(std::fabs(product));
    return {w0 / TwoPi, w0 / -(re[i] + re[j])};
}

double PassBandGain(Topology topology, const IdealSection& ideal, double f0Hz) {
    const std::array<double, 4>&n = ideal.chain.common.slope, &d = ideal.chain.a.slope;
    switch (topology) {
        case Topology::VcvsHighPass:
        case Topology::MfbHighPass: {
            const int degree = DegreeOf(d);
            return std::fabs(n[degree] / d[degree]);
        }
        case Topology::VcvsBandPass:
        case Topology::MfbBandPass: return ComplexAbs(ideal.At(TwoPi * f0Hz));
        default: return std::fabs(n[0] / d[0]);
    }
}

// The points a departure is measured at, with what the op amp's gain does not change there:
// the numerator's and denominator's two lines in A (N = n0 + A n1, D = d0 + A d1) and the
// ideal response's squared magnitude |n1 / d1|^2.
struct Comparison {
    std::vector<double> w;
    std::vector<Complex> n0, n1, d0, d1;
    std::vector<double> idealSquared;
};

__attribute__((target_clones("arch=x86-64-v3", "default"))) Comparison ComparisonFor(
    const IdealSection& ideal, std::span<const double> frequencies) {
    const std::size_t n = frequencies.size();
    Comparison all;
    for (auto* v : {&all.n0, &all.n1, &all.d0, &all.d1}) v->resize(n);
    all.w.resize(n);
    all.idealSquared.resize(n);
    double peak = 0.0;
    for (std::size_t k = 0; k < n; ++k) {
        const double w = TwoPi * frequencies[k];
        all.w[k] = w;
        all.n0[k] = PolynomialAt(ideal.chain.common.at0, w);
        all.n1[k] = PolynomialAt(ideal.chain.common.slope, w);
        all.d0[k] = PolynomialAt(ideal.chain.a.at0, w);
        all.d1[k] = PolynomialAt(ideal.chain.a.slope, w);
        const Complex nk = all.n1[k], dk = all.d1[k];
        all.idealSquared[k] = (nk.re * nk.re + nk.im * nk.im) / (dk.re * dk.re + dk.im * dk.im);
        peak = std::max(peak, all.idealSquared[k]);
    }
    // Only the points within range of the peak stay, in place.
    const double floor = peak * std::pow(10.0, -ShownRangeDb / 10.0);
    std::size_t kept = 0;
    for (std::size_t k = 0; k < n; ++k) {
        if (!(all.idealSquared[k] >= floor)) continue;
        all.w[kept] = all.w[k], all.n0[kept] = all.n0[k], all.n1[kept] = all.n1[k];
        all.d0[kept] = all.d0[k], all.d1[kept] = all.d1[k];
        all.idealSquared[kept] = all.idealSquared[k];
        ++kept;
    }
    for (auto* v : {&all.n0, &all.n1, &all.d0, &all.d1}) v->resize(kept);
    all.w.resize(kept);
    all.idealSquared.resize(kept);
    return all;
}

// Every step-th point of a comparison.
Comparison Thinned(const Comparison& all, std::size_t step) {
    Comparison some;
    for (std::size_t k = 0; k < all.w.size(); k += step) {
        some.w.push_back(all.w[k]);
        some.n0.push_back(all.n0[k]), some.n1.push_back(all.n1[k]);
        some.d0.push_back(all.d0[k]), some.d1.push_back(all.d1[k]);
        some.idealSquared.push_back(all.idealSquared[k]);
    }
    return some;
}

// The largest dB departure over the points; squared magnitudes throughout and the logarithm
// taken once, and no branch in the loop, which is built for AVX2 as well: the search calls
// this a few times per section on every calculation.
__attribute__((target_clones("arch=x86-64-v3", "default"))) double Departure(const Comparison& c,
                                                                             double gainBandwidth) {
    const PhaseGain gain = PhaseGainOf(gainBandwidth);
    double highest = 1.0, lowest = 1.0;
    const std::size_t points = c.w.size();
    for (std::size_t k = 0; k < points; ++k) {
        const Complex lag{1.0, c.w[k] * gain.inversePole};
        const Complex n = c.n0[k] * lag + c.n1[k] * gain.dcGain;
        const Complex d = c.d0[k] * lag + c.d1[k] * gain.dcGain;
        const double ratio =
            (n.re * n.re + n.im * n.im) / ((d.re * d.re + d.im * d.im) * c.idealSquared[k]);
        highest = std::max(highest, ratio);
        lowest = std::min(lowest, ratio);
    }
    const double db = 10.0 * std::max(std::log10(highest), -std::log10(lowest));
    // NaN (a section without a solution) counts as the worst departure.
    return std::isnan(db) ? INFINITY : db;
}

// To first order in 1 / A the section is the ideal one times 1 + (n0 / n1 - d0 / d1) / A(jw),
// and with A = A0 / (1 + jw / wp) and A0 wp = GBW the departure falls as 1 / GBW: the GBW
// where the first-order departure is 0.1 dB, the search's first guess.
double FirstOrderGuess(const Comparison& c) {
    const SinglePoleOpAmp opAmp = SinglePoleOf(1e6);  // any GBW up to 10 MHz: fp = 100 Hz
    double worst = 0.0;
    for (std::size_t k = 0; k < c.w.size(); ++k) {
        const Complex e = DivideScaled(c.n0[k], c.n1[k]) - DivideScaled(c.d0[k], c.d1[k]);
        const Complex lag{TwoPi * opAmp.poleHz, c.w[k]};  // (wp + jw) / wp ...
        const double share = (e * lag).re / TwoPi;        // ... times wp / (2 pi GBW)
        if (std::isfinite(share)) worst = std::max(worst, std::fabs(share));
    }
    return 20.0 / std::log(10.0) * worst / AllowedDepartureDb;
}

// The smallest index in [lowest, highest] the predicate passes, the predicate rising with the
// index: galloping from start, then halving.
template <typename Passes>
int SmallestPassing(int lowest, int highest, int start, const Passes& passes) {
    int fail = lowest - 1, pass = highest + 1;
    start = std::clamp(start, lowest, highest);
    if (passes(start)) {
        pass = start;
        for (int step = 1; pass - step >= lowest; step *= 2) {
            if (!passes(pass - step)) {
                fail = pass - step;
                break;
            }
            pass -= step;
        }
    } else {
        fail = start;
        for (int step = 1; fail + step <= highest; step *= 2) {
            if (passes(fail + step)) {
                pass = fail + step;
                break;
            }
            fail += step;
        }
    }
    while (pass - fail > 1) {
        const int middle = fail + (pass - fail) / 2;
        (passes(middle) ? pass : fail) = middle;
    }
    return pass;
}

// The smallest GBW of a fixed grid, 1 % a step, that keeps the section within 0.1 dB of its
// ideal response: searched on every fourth point from the first-order guess, then raised until
// every point passes (a GBW that fails on some points fails on all of them). A grid point
// rather than a number the search lands on, so a build's rounding does not show in it; NaN
// when none up to 10 THz does.
double GainBandwidthNeeded(const IdealSection& ideal, std::span<const double> frequencies,
                           double f0Hz) {
    const Comparison all = ComparisonFor(ideal, frequencies);
    const Comparison some = Thinned(all, 4);
    const auto gridPoint = [](int k) { return std::pow(10.0, k / GridStepsPerDecade); };
    const auto indexOf = [](double gbw) {
        return static_cast<int>(std::ceil(std::log10(gbw) * GridStepsPerDecade));
    };
    const int lowest = indexOf(MinGainBandwidth), highest = indexOf(LargestGainBandwidth) - 1;
    double guess = FirstOrderGuess(some);
    if (!(guess >= MinGainBandwidth && guess <= LargestGainBandwidth))
        guess = std::clamp(100.0 * f0Hz, MinGainBandwidth, LargestGainBandwidth);
    int k = SmallestPassing(lowest, highest, indexOf(guess), [&](int i) {
        return Departure(some, gridPoint(i)) <= AllowedDepartureDb;
    });
    while (k <= highest && !(Departure(all, gridPoint(k)) <= AllowedDepartureDb)) ++k;
    return k <= highest ? gridPoint(k) : NaN;
}

bool IsFitted(double value) {
    return value > 0.0 && value < NotUsedThreshold && std::isfinite(value);
}

// The sum over the parts of |dQ/Q / dx/x| times each part's tolerance.
double QSpread(Topology topology, const WorkingComponents& parts, double q,
               const ComponentSettings& settings) {
    WorkingComponents moved = parts;
    double spread = 0.0;
    const auto add = [&](double WorkingComponents::*field, double tolerance) {
        if (!IsFitted(parts.*field)) return;
        constexpr double Step = 1e-4;
        moved.*field = parts.*field * (1.0 + Step);
        const double movedQ = PoleFiguresOf(IdealOf(topology, moved).chain.a.slope).q;
        moved.*field = parts.*field;
        spread += std::fabs((movedQ / q - 1.0) / Step) * tolerance;
    };
    const double r = settings.resistorClass.fraction, c = settings.capacitorClass.fraction;
    add(&WorkingComponents::R1, r);
    add(&WorkingComponents::R2, r);
    add(&WorkingComponents::R3, r);
    add(&WorkingComponents::R4, r);
    add(&WorkingComponents::C1, c);
    add(&WorkingComponents::C2, c);
    return spread;
}

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
    std::vector<Complex> magnitudeOnly(n), withPhase(n);
    OpAmpSpec opAmp = OpAmpOf(*inputs.settings);
    opAmp.model = OpAmpModel::Magnitude;
    SimulateCascade(inputs.topology, *inputs.parts, inputs.numSections, opAmp, inputs.frequencies,
                    magnitudeOnly);
    opAmp.model = OpAmpModel::SinglePole;
    SimulateCascade(inputs.topology, *inputs.parts, inputs.numSections, opAmp, inputs.frequencies,
                    withPhase);
    double peak = 0.0;
    for (std::size_t k = 0; k < n; ++k)
        peak = std::max({peak, ComplexAbs(magnitudeOnly[k]), ComplexAbs(withPhase[k])});
    const double floor = peak * std::pow(10.0, -ModelComparisonDb / 20.0);
    Deepest largest{0.0, 0.0};
    for (std::size_t k = 0; k < n; ++k) {
        const double a = ComplexAbs(magnitudeOnly[k]), b = ComplexAbs(withPhase[k]);
        if (!(std::max(a, b) >= floor)) continue;
        const double db = std::fabs(20.0 * std::log10(b / a));
        if (db > largest.db) largest = {db, inputs.frequencies[k]};
    }
    return largest;
}

std::string Percent(double fraction) {
    return FormatGeneral(100.0 * fraction, 3) + " %";
}

}  // namespace

double DepartureFromIdealDb(Topology topology, const WorkingComponents& parts, double gainBandwidth,
                            std::span<const double> frequencies) {
    return Departure(ComparisonFor(IdealOf(topology, parts), frequencies), gainBandwidth);
}

BuildChecks CheckBuild(const BuildCheckInputs& inputs) {
    BuildChecks checks;
    const ComponentSettings& settings = *inputs.settings;
    const BuildOptions& build = settings.build;
    const std::size_t n = inputs.frequencies.size();
    std::vector<Complex> cumulative(n, Complex{1.0, 0.0});
    const OpAmpSpec opAmp = OpAmpOf(settings);
    for (int s = 0; s < inputs.numSections && s < MaxSections; ++s) {
        const WorkingComponents parts = inputs.parts->Section(s);
        const IdealSection ideal = IdealOf(inputs.topology, parts);
        StageNeeds stage;
        const PoleFigures figures = PoleFiguresOf(ideal.chain.a.slope);
        stage.f0Hz = figures.f0Hz;
        stage.q = figures.q;
        stage.gain = PassBandGain(inputs.topology, ideal, figures.f0Hz);
        stage.gainBandwidthHz = GainBandwidthNeeded(ideal, inputs.frequencies, figures.f0Hz);
        SimulateSection(inputs.topology, parts, opAmp, inputs.frequencies, cumulative);
        double peak = -1.0, fastest = 0.0;  // squared magnitudes
        for (std::size_t k = 0; k < n; ++k) {
            const double squared =
                cumulative[k].re * cumulative[k].re + cumulative[k].im * cumulative[k].im;
            if (squared > peak) peak = squared, stage.peakGainHz = inputs.frequencies[k];
            fastest = std::max(fastest, inputs.frequencies[k] * inputs.frequencies[k] * squared);
        }
        stage.peakGain = std::sqrt(peak);
        stage.slewRateVPerUs = TwoPi * std::sqrt(fastest) * build.inputAmplitudeVolts * 1e-6;
        stage.qSpread =
            std::isnan(stage.q) ? NaN : QSpread(inputs.topology, parts, stage.q, settings);
        checks.stages.push_back(stage);

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
