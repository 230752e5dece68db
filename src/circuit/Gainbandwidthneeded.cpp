#include "circuit/Gainbandwidthneeded.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "circuit/Valuecalculations.h"

namespace nerivane {
namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double AllowedDepartureDb = 0.1;
constexpr double ShownRangeDb = 20.0;          // the GBW is checked within this of the peak
constexpr double LargestGainBandwidth = 1e13;  // Hz; beyond it no op amp is worth naming
constexpr double MinGainBandwidth = 1e3;       // the smallest the op-amp box takes
constexpr double GridStepsPerDecade = 240.0;   // the GBW found is a point 1 % apart from the next

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

// To first order in 1 / A the section is the ideal one times 1 + x, x = (n0 / n1 - d0 / d1) /
// A(jw), and with A = A0 / (1 + jw / wp) and A0 wp = GBW, x = X / GBW. The squared magnitude
// changes by exactly 2 Re x + |x|^2: the first term falls as 1 / GBW, the second (all there is
// when x is a pure phase, as in a follower) as 1 / GBW^2. The GBW at which that change reaches
// 0.1 dB at the worst point is the search's first guess.
double SecondOrderGuess(const Comparison& c) {
    const SinglePoleOpAmp opAmp = SinglePoleOf(1e6);  // any GBW up to 10 MHz: fp = 100 Hz
    // The smaller of the two squared-magnitude changes that make 0.1 dB, down and up.
    const double allowed = 1.0 - std::pow(10.0, -AllowedDepartureDb / 10.0);
    double worst = 0.0;
    for (std::size_t k = 0; k < c.w.size(); ++k) {
        const Complex e = DivideScaled(c.n0[k], c.n1[k]) - DivideScaled(c.d0[k], c.d1[k]);
        // (wp + jw) / wp times wp / (2 pi): X, with x = X / GBW.
        const Complex x = e * Complex{TwoPi * opAmp.poleHz, c.w[k]} * (1.0 / TwoPi);
        const double a = std::fabs(2.0 * x.re), b = x.re * x.re + x.im * x.im;
        // The larger root of allowed g^2 - a g - b = 0.
        const double g = (a + std::sqrt(a * a + 4.0 * b * allowed)) / (2.0 * allowed);
        if (std::isfinite(g)) worst = std::max(worst, g);
    }
    return worst;
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

}  // namespace

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
    double guess = SecondOrderGuess(some);
    if (!(guess >= MinGainBandwidth && guess <= LargestGainBandwidth))
        guess = std::clamp(100.0 * f0Hz, MinGainBandwidth, LargestGainBandwidth);
    int k = SmallestPassing(lowest, highest, indexOf(guess), [&](int i) {
        return Departure(some, gridPoint(i)) <= AllowedDepartureDb;
    });
    while (k <= highest && !(Departure(all, gridPoint(k)) <= AllowedDepartureDb)) ++k;
    return k <= highest ? gridPoint(k) : NaN;
}

double DepartureFromIdealDb(Topology topology, const WorkingComponents& parts, double gainBandwidth,
                            std::span<const double> frequencies) {
    return Departure(ComparisonFor(IdealOf(topology, parts), frequencies), gainBandwidth);
}

}  // namespace nerivane
