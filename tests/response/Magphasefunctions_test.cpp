#include "response/Magphasefunctions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <complex>
#include <cstdint>
#include <string>
#include <vector>

#include "numerics/Matherrmain.h"

namespace nerivane {
namespace {

constexpr int N = TracePoints;
constexpr double TwoPi = 6.283185307179586;
constexpr double RadToDeg = 180.0 / M_PI;

using Cx = std::complex<double>;
using Points = std::array<double, N>;
using Response = std::array<Complex, N>;

// The one-decade sweep around f0 that the program lays out, first point moved to a tenth of the
// second.
Points OneDecadeSweep(double f0) {
    Points f;
    for (int i = 0; i < N; ++i) f[i] = f0 / 10.0 * std::pow(100.0, i / 1024.0);
    f[0] = 0.1 * f[1];
    return f;
}

// gain * prod(s - z) / prod(s - p) at s = jw, with its unwrapped phase and its group delay
// -dphase/dw summed factor by factor, so nothing here shares code with the routines under test.
struct Rational {
    std::string name;
    Cx gain;
    std::vector<Cx> zeros;
    std::vector<Cx> poles;

    Cx At(double w) const {
        const Cx s(0.0, w);
        Cx h = gain;
        for (Cx z : zeros) h *= s - z;
        for (Cx p : poles) h /= s - p;
        return h;
    }
    // Each factor jw - p with p in the left half plane stays in the right half plane, so its
    // angle never wraps; zeros are on the imaginary axis, where only the notch crosses one.
    double Phase(double w) const {
        const Cx s(0.0, w);
        double phase = std::arg(gain);
        for (Cx z : zeros) phase += std::arg(s - z);
        for (Cx p : poles) phase -= std::arg(s - p);
        return phase;
    }
    // Poles only: a pole a + jb delays by -a / (a^2 + (w - b)^2).
    double Delay(double w) const {
        double delay = 0.0;
        for (Cx p : poles) delay += -p.real() / std::norm(Cx(p.real(), w - p.imag()));
        return delay;
    }
    double DelayCurvature(double w) const {
        double curvature = 0.0;
        for (Cx p : poles) {
            const double a = -p.real();
            const double x = w - p.imag();
            curvature += 2.0 * a * (3.0 * x * x - a * a) / std::pow(a * a + x * x, 3.0);
        }
        return curvature;
    }
};

Cx PoleProduct(const std::vector<Cx>& poles) {
    Cx product = 1.0;
    for (Cx p : poles) product *= -p;
    return product;
}

std::vector<Cx> WithConjugates(const std::vector<Cx>& upper) {
    std::vector<Cx> all;
    for (Cx p : upper) {
        all.push_back(p);
        if (p.imag() != 0.0) all.push_back(std::conj(p));
    }
    return all;
}

std::vector<Cx> ButterworthPoles(int order, double w0) {
    std::vector<Cx> poles;
    for (int k = 1; k <= order; ++k)
        poles.push_back(std::polar(w0, M_PI * (2 * k + order - 1) / (2.0 * order)));
    return poles;
}

Rational ButterworthLowPass(int order, double f0) {
    const std::vector<Cx> poles = ButterworthPoles(order, TwoPi * f0);
    return {"Butterworth LP " + std::to_string(order), PoleProduct(poles), {}, poles};
}

Rational ButterworthHighPass(int order, double f0) {
    return {"Butterworth HP " + std::to_string(order), 1.0, std::vector<Cx>(order, 0.0),
            ButterworthPoles(order, TwoPi * f0)};
}

// Equal-ripple poles: sinh and cosh of asinh(1 / eps) / n stretch a circle into an ellipse.
Rational ChebyshevLowPass(int order, double rippleDb, double f0) {
    const double eps = std::sqrt(std::pow(10.0, rippleDb / 10.0) - 1.0);
    const double v = std::asinh(1.0 / eps) / order;
    std::vector<Cx> poles;
    for (int k = 1; k <= order; ++k) {
        const double theta = M_PI * (2 * k - 1) / (2.0 * order);
        poles.push_back(TwoPi * f0 *
                        Cx(-std::sinh(v) * std::sin(theta), std::cosh(v) * std::cos(theta)));
    }
    return {"Chebyshev LP " + std::to_string(order), PoleProduct(poles), {}, poles};
}

// Poles of the Bessel polynomials normalised to 1 s of delay, with the frequency at which that
// filter is 3 dB down; scaling by w0 / w3 puts the 3 dB point on f0.
Rational BesselLowPass(int order, double f0) {
    struct Published {
        std::vector<Cx> upper;
        double w3;
    };
    const Published table[] = {
        {{-2.3221854, {-1.8389073, 1.7543810}}, 1.75567236868121065},
        {{{-2.8962106, 0.8672341}, {-2.1037894, 2.6574180}}, 2.11391767490421584},
        {{-3.6467386, {-3.3519564, 1.7426614}, {-2.3246743, 3.5710229}}, 2.42741070215262814},
    };
    const Published& row = table[order - 3];
    std::vector<Cx> poles = WithConjugates(row.upper);
    for (Cx& p : poles) p *= TwoPi * f0 / row.w3;
    return {"Bessel LP " + std::to_string(order), PoleProduct(poles), {}, poles};
}

// A second-order band pass of the given Q, inverted as a single multiple-feedback section is.
Rational InvertingBandPass(double q, double f0) {
    const double w0 = TwoPi * f0;
    const double a = w0 / (2.0 * q);
    const std::vector<Cx> poles = WithConjugates({{-a, std::sqrt(w0 * w0 - a * a)}});
    return {"inverting BP", -w0 / q, {0.0}, poles};
}

Rational Notch(double q, double f0) {
    const double w0 = TwoPi * f0;
    const double a = w0 / (2.0 * q);
    return {"notch", 1.0, WithConjugates({{0.0, w0}}),
            WithConjugates({{-a, std::sqrt(w0 * w0 - a * a)}})};
}

Response Evaluate(const Rational& r, const Points& f) {
    Response h;
    for (int i = 0; i < N; ++i) {
        const Cx v = r.At(TwoPi * f[i]);
        h[i] = {v.real(), v.imag()};
    }
    return h;
}

// The difference of two angles in degrees, folded to within half a turn of 0.
double AngleGapDeg(double a, double b) {
    return std::remainder(a - b, 360.0);
}

std::uint64_t Bits(double x) {
    return std::bit_cast<std::uint64_t>(x);
}

Complex Polar(double magnitude, double radians) {
    return {magnitude * std::cos(radians), magnitude * std::sin(radians)};
}

// ---------------------------------------------------------------------------------------------
// Magnitude and phase of single points

struct MagnitudeCase {
    Complex h;
    int kind;
    double expected;
};

TEST(Magphasefunctions, MagnitudeOfSinglePoints) {
    // clang-format off
    const MagnitudeCase cases[] = {
        {{1.0, 0.0},      1, 0.0},    // unity gain sits on the linear scale's zero
        {{0.5, 0.0},      1, -4.5},
        {{0.0, 0.0},      1, -9.0},
        {{-3.0, 4.0},     1, 36.0},
        {{0.0, 0.0},      0, -1000.0},
        {{1e12, 1e12},    0, 10.0 * std::log10(2e20)},  // both parts clamped to 1e10
        {{-1e300, 0.0},   0, 200.0},
        {{0.0, 0.1},      0, -20.0},
        {{10.0, 0.0},     2, 20.0},   // any kind but 1 is dB
        {{10.0, 0.0},    -1, 20.0},
    };
    // clang-format on
    for (const MagnitudeCase& c : cases) {
        double out = 0.0;
        MagResponse({&c.h, 1}, {&out, 1}, c.kind);
        EXPECT_NEAR(out, c.expected, 1e-12) << c.h.re << " " << c.h.im << " kind " << c.kind;
    }
}

TEST(Magphasefunctions, MagnitudeOfButterworthMatchesClosedForm) {
    const Points f = OneDecadeSweep(1000.0);
    for (int order : {2, 5, 8}) {
        const Response h = Evaluate(ButterworthLowPass(order, 1000.0), f);
        Points db;
        Points linear;
        MagResponse(h, db, 0);
        MagResponse(h, linear, 1);
        for (int i = 0; i < N; ++i) {
            const double power = 1.0 + std::pow(f[i] / 1000.0, 2.0 * order);
            ASSERT_NEAR(db[i], -10.0 * std::log10(power), 1e-9) << "order " << order << " i " << i;
            ASSERT_NEAR(linear[i], 9.0 / std::sqrt(power) - 9.0, 1e-12)
                << "order " << order << " i " << i;
        }
    }
}

TEST(Magphasefunctions, PhaseIsTheWrappedAnalyticPhase) {
    const Points f = OneDecadeSweep(1000.0);
    for (const Rational& r : {ButterworthLowPass(8, 1000.0), BesselLowPass(5, 1000.0),
                              ButterworthHighPass(5, 1000.0), InvertingBandPass(3.0, 1000.0)}) {
        const Response h = Evaluate(r, f);
        Points phase;
        PhaseResponse(h, phase, -2000.0);
        for (int i = 0; i < N; ++i) {
            ASSERT_GT(phase[i], -180.0) << r.name << " i " << i;
            ASSERT_LE(phase[i], 180.0) << r.name << " i " << i;
            ASSERT_NEAR(AngleGapDeg(phase[i], r.Phase(TwoPi * f[i]) * RadToDeg), 0.0, 1e-9)
                << r.name << " i " << i;
        }
    }
}

TEST(Magphasefunctions, PhaseOfSinglePoints) {
    const Complex h[] = {{0.0, 0.0}, {-1.0, 0.0}, {0.0, -2.0}};
    const double expected[] = {0.0, 180.0, -90.0};
    double out[3];
    PhaseResponse(h, out, -2000.0);
    for (int i = 0; i < 3; ++i) EXPECT_DOUBLE_EQ(out[i], expected[i]) << i;
}

TEST(Magphasefunctions, NoPlotValueKeepsItsBits) {
    EXPECT_EQ(Bits(NoPlotValue), Bits(-1.123456e-9));
}

// ---------------------------------------------------------------------------------------------
// Threshold masking

// Eight points of unit gain and falling phase with one zero at index 4: enough for the delay
// estimate, which needs six.
std::array<Complex, 8> UnitRampWithZero() {
    std::array<Complex, 8> h;
    for (int i = 0; i < 8; ++i) h[i] = Polar(1.0, -0.1 * i);
    h[4] = {0.0, 0.0};
    return h;
}

TEST(Magphasefunctions, ZeroResponseIsMaskedByAnyThresholdAboveMinus1000dB) {
    const std::array<Complex, 8> h = UnitRampWithZero();
    const std::array<double, 8> f = {100, 200, 300, 400, 500, 600, 700, 800};
    for (double threshold : {-999.999, -500.0, -3.0, 0.0}) {
        std::array<double, 8> phase;
        std::array<double, 8> hilbert;
        std::array<double, 8> delay;
        PhaseResponse(h, phase, threshold);
        HilbertPhaseResponse(h, hilbert, f, threshold, 0, 0);
        GroupDelayResponse(h, delay, f, threshold);
        EXPECT_EQ(Bits(phase[4]), Bits(NoPlotValue)) << threshold;
        EXPECT_EQ(Bits(hilbert[4]), Bits(NoPlotValue)) << threshold;
        EXPECT_EQ(Bits(delay[4]), Bits(NoPlotValue)) << threshold;
    }
}

TEST(Magphasefunctions, ZeroResponseAtMinus1000dBThresholdHasPhaseZero) {
    const std::array<Complex, 8> h = UnitRampWithZero();
    std::array<double, 8> db;
    std::array<double, 8> phase;
    MagResponse(h, db, 0);
    PhaseResponse(h, phase, -1000.0);
    EXPECT_EQ(db[4], -1000.0);
    EXPECT_EQ(phase[4], 0.0);
}

// A zero has no angle and no logarithm; the guards must keep it out of the math-error log.
TEST(Magphasefunctions, ExactZerosLogNoMathError) {
    const Points f = OneDecadeSweep(1000.0);
    Response h = Evaluate(Notch(1.0, 1000.0), f);
    ASSERT_EQ(h[N / 2].re, 0.0);
    ASSERT_EQ(h[N / 2].im, 0.0);
    h[0] = {0.0, 0.0};
    h[N - 1] = {0.0, 0.0};
    RecordingMathErrorLog log;
    InstallMathErrorLog(&log);
    for (int topology = 0; topology <= 6; ++topology) {
        Traces traces;
        ComputeTraces(h, f, -60.0, topology, 3, traces);
    }
    InstallMathErrorLog(nullptr);
    EXPECT_TRUE(log.lines.empty()) << log.lines.front();
}

TEST(Magphasefunctions, ThresholdMasksPhaseHilbertAndDelayBelowIt) {
    const Points f = OneDecadeSweep(1000.0);
    const Rational r = ButterworthLowPass(4, 1000.0);
    const Response h = Evaluate(r, f);
    for (double threshold : {-3.0, -20.0, -60.0}) {
        Traces traces;
        ComputeTraces(h, f, threshold, 0, 2, traces);
        int masked = 0;
        for (int i = 1; i < N; ++i) {
            const double db = 20.0 * std::log10(std::abs(r.At(TwoPi * f[i])));
            const bool below = db < threshold;
            ASSERT_GT(std::abs(db - threshold), 1e-6) << "too close to call at " << i;
            masked += below;
            for (double v : {traces.phase[i], traces.hilbertPhase[i], traces.groupDelay[i]})
                EXPECT_EQ(v == NoPlotValue, below) << threshold << " i " << i;
        }
        EXPECT_GT(masked, 0) << threshold;
    }
}

// ---------------------------------------------------------------------------------------------
// Group delay

struct DelayStepCase {
    const char* what;
    Complex from;
    Complex to;
    double threshold;
    double expected;  // NoPlotValue where the step is not drawn
};

TEST(Magphasefunctions, GroupDelayOfOneStep) {
    constexpr double Df = 50.0;
    constexpr double PerRadian = 1.0 / (TwoPi * Df);
    const double pi = M_PI;
    // clang-format off
    const DelayStepCase cases[] = {
        {"fall of 0.1 rad", Polar(1, 0.3), Polar(1, 0.2), -100, 0.1 * PerRadian},
        {"exactly pi/4 up is one eighth", {1, 0}, {1, 1}, -100, 0.0},
        {"0.5 rad up", Polar(1, 0.0), Polar(1, 0.5), -100, NoPlotValue},
        {"1 rad up loses two eighths", Polar(1, 0.0), Polar(1, 1.0), -100,
         (pi / 2 - 1) * PerRadian},
        {"fall of 0.1 rad through -pi", Polar(1, -pi + 0.05), Polar(1, pi - 0.05), -100,
         0.1 * PerRadian},
        {"fall of more than pi", Polar(1, 2.0), Polar(1, -1.5), -100, NoPlotValue},
        {"this point below threshold", Polar(1, 0.3), Polar(1e-3, 0.2), -40, NoPlotValue},
        {"previous point below threshold", Polar(1e-3, 0.3), Polar(1, 0.2), -40,
         0.1 * PerRadian},
    };
    // clang-format on
    const std::array<double, 2> f = {1000.0, 1000.0 + Df};
    for (const DelayStepCase& c : cases) {
        const std::array<Complex, 2> h = {c.from, c.to};
        std::array<double, 2> gd;
        GroupDelayResponse(h, gd, f, c.threshold);
        if (c.expected == NoPlotValue)
            EXPECT_EQ(Bits(gd[1]), Bits(NoPlotValue)) << c.what;
        else
            EXPECT_NEAR(gd[1], c.expected, 1e-12 * PerRadian) << c.what;
        EXPECT_EQ(Bits(gd[0]), Bits(gd[1])) << c.what;
    }
}

// A first difference is the mean delay over its step, which differs from the delay at the step's
// midpoint by tau''(xi) h^2 / 24 for some xi in the step (h in rad/s). The bound takes the
// largest |tau''| at the ends and the middle, doubled, since the steps (0.45 % of the frequency)
// are far narrower than any feature of tau; the relative term covers the rounding of the phases.
TEST(Magphasefunctions, GroupDelayMatchesAnalyticDelayWithinTheMidpointBound) {
    const Points f = OneDecadeSweep(1000.0);
    for (const Rational& r :
         {ButterworthLowPass(2, 1000.0), ButterworthLowPass(4, 1000.0),
          ButterworthLowPass(8, 1000.0), BesselLowPass(3, 1000.0), BesselLowPass(5, 1000.0)}) {
        const Response h = Evaluate(r, f);
        Points gd;
        GroupDelayResponse(h, gd, f, -2000.0);
        double worst = 0.0;
        double worstRelative = 0.0;
        for (int i = 2; i < N; ++i) {
            const double w0 = TwoPi * f[i - 1];
            const double w1 = TwoPi * f[i];
            const double mid = 0.5 * (w0 + w1);
            const double step = w1 - w0;
            const double curvature =
                std::max({std::abs(r.DelayCurvature(w0)), std::abs(r.DelayCurvature(mid)),
                          std::abs(r.DelayCurvature(w1))});
            const double tau = r.Delay(mid);
            const double bound = 2.0 * curvature * step * step / 24.0 + 1e-9 * tau;
            ASSERT_NEAR(gd[i], tau, bound) << r.name << " i " << i;
            worst = std::max(worst, std::abs(gd[i] - tau) / bound);
            worstRelative = std::max(worstRelative, std::abs(gd[i] - tau) / tau);
        }
        EXPECT_EQ(gd[0], gd[1]) << r.name;
        RecordProperty(r.name + " worst error / bound", std::to_string(worst));
        RecordProperty(r.name + " worst relative error", std::to_string(worstRelative));
    }
}

TEST(Magphasefunctions, GroupDelayOfTooShortAResponseIsNotDrawn) {
    const Complex h{1.0, 0.0};
    const double f = 1000.0;
    double gd = 0.0;
    GroupDelayResponse({&h, 1}, {&gd, 1}, {&f, 1}, -100.0);
    EXPECT_EQ(Bits(gd), Bits(NoPlotValue));
}

struct ScaleCase {
    const char* what;
    std::array<double, 8> db;
    std::array<double, 8> gd;
    double expected;
};

// Five times the least delay within 3 dB of the peak, unless the largest delay within 20 dB
// needs more room, then 1.25 times that; to two significant figures. Index 0 never counts.
TEST(Magphasefunctions, GroupDelayScaleFromAKnownResponse) {
    // clang-format off
    const ScaleCase cases[] = {
        {"five times the least pass-band delay",
         {0, 0, -1, -2.5, -10, -19, -25, -2},
         {1e-9, 3e-4, 2e-4, 2.5e-4, 1e-5, 5e-4, 9.0, 4e-4}, 1.0e-3},
        {"room for a delay peak",
         {0, 0, -1, -2.5, -10, -19, -25, -2},
         {1.0, 3e-4, 2e-4, 2.5e-4, 1e-5, 1.7e-3, 9.0, 4e-4}, 2.1e-3},
        {"levels count from the peak, not from 0 dB",
         {12, 12, 11, 9.5, 2, -7, -13, 10},
         {1.0, 3e-4, 2.4e-4, 2.5e-4, 1e-5, 5e-4, 9.0, 4e-4}, 1.2e-3},
        {"a resonance alone sets both",
         {0, 0, -1, -2.5, -10, 20, -25, -2},
         {1.0, 3e-4, 2e-4, 2.5e-4, 1e-5, 7e-4, 9.0, 4e-4}, 3.5e-3},
        {"a peak at index 0 sets the levels but leaves nothing within 3 dB",
         {30, 0, -1, -2.5, -10, 20, -25, -2},
         {1.0, 3e-4, 2e-4, 2.5e-4, 1e-5, 7e-4, 9.0, 4e-4}, 5e30},
    };
    // clang-format on
    for (const ScaleCase& c : cases) {
        std::array<Complex, 8> h;
        for (int i = 0; i < 8; ++i) h[i] = {std::pow(10.0, c.db[i] / 20.0), 0.0};
        EXPECT_DOUBLE_EQ(GroupDelayScale(h, c.gd), c.expected) << c.what;
    }
}

// Filters of fairly flat delay get five times their least pass-band delay: the DC delay of
// 2.613 / w0 for a 4-pole Butterworth, and for the Bessel its delay at the 3 dB point, 0.996
// of the DC delay w3 / w0. The delay peak of an 8-pole 3 dB Chebyshev at its band edge is nine
// times its least pass-band delay and takes 1.25 times itself.
TEST(Magphasefunctions, GroupDelayScaleOfFilters) {
    struct Case {
        double f0;
        Rational r;
        double expected;
    };
    const Case cases[] = {
        {1000.0, ButterworthLowPass(4, 1000.0), 2.1e-3},     // 5 x 4.159e-4
        {1000.0, BesselLowPass(5, 1000.0), 1.9e-3},          // 5 x 3.848e-4
        {100.0, BesselLowPass(5, 100.0), 1.9e-2},            // 5 x 3.848e-3
        {1000.0, ChebyshevLowPass(8, 3.0, 1000.0), 9.7e-3},  // 1.25 x 7.772e-3
    };
    for (const Case& c : cases) {
        const Points f = OneDecadeSweep(c.f0);
        const Response h = Evaluate(c.r, f);
        Points gd;
        GroupDelayResponse(h, gd, f, -2000.0);
        EXPECT_DOUBLE_EQ(GroupDelayScale(h, gd), c.expected) << c.r.name;
    }
}

// ---------------------------------------------------------------------------------------------
// Delay estimate

// Unit gain, 1 Hz steps from 1 kHz, and a phase that falls by step(i) between points i-1 and i,
// so the delay at point i is step(i) / 2 pi seconds.
template <class Step>
Response PhaseRamp(Step step, Points& f) {
    Response h;
    double phase = 0.0;
    for (int i = 0; i < N; ++i) {
        if (i > 0) phase -= step(i);
        f[i] = 1000.0 + i;
        h[i] = Polar(1.0, phase);
    }
    return h;
}

double RisingStep(int i) {
    return 5e-4 * (1 + i);
}
double FallingStep(int i) {
    return 5e-4 * (1 + N - i);
}

struct RangeCase {
    int centre;
    int first;  // the least delay of a rising delay is found here
    int last;   // and of a falling delay here
};

TEST(Magphasefunctions, EstimateDelaySearchesAroundTheCentre) {
    // clang-format off
    const RangeCase cases[] = {
        {0,    1,    4},
        {9,    1,    4},
        {10,   1,    39},
        {512,  482,  541},
        {1014, 984,  1022},
        {1015, 1019, 1022},
        {1023, 1019, 1022},
    };
    // clang-format on
    Points f;
    const Response rising = PhaseRamp(RisingStep, f);
    const Response falling = PhaseRamp(FallingStep, f);
    for (const RangeCase& c : cases) {
        int index = c.centre;
        const double rise = EstimateDelay(rising, f, index);
        EXPECT_EQ(index, c.first) << c.centre;
        EXPECT_NEAR(rise, RisingStep(c.first) / TwoPi, 1e-12) << c.centre;
        index = c.centre;
        const double fall = EstimateDelay(falling, f, index);
        EXPECT_EQ(index, c.last) << c.centre;
        EXPECT_NEAR(fall, FallingStep(c.last) / TwoPi, 1e-12) << c.centre;
    }
}

// Only points within 1 dB of the range's loudest may give the delay.
TEST(Magphasefunctions, EstimateDelaySkipsPointsMoreThan1dBDown) {
    struct Case {
        double gain;
        int expected;
    };
    const Case cases[] = {{0.5, 540}, {0.9, 541}};
    for (const Case& c : cases) {
        Points f;
        Response h = PhaseRamp(FallingStep, f);
        h[541] = {c.gain * h[541].re, c.gain * h[541].im};
        int index = 512;
        EstimateDelay(h, f, index);
        EXPECT_EQ(index, c.expected) << c.gain;
    }
}

TEST(Magphasefunctions, EstimateDelayFloorsAtOnePicosecond) {
    Points f;
    const Response flat = PhaseRamp([](int) { return 0.0; }, f);
    int index = 512;
    EXPECT_EQ(EstimateDelay(flat, f, index), 1e-12);
    EXPECT_EQ(index, 482);
}

// Coinciding frequencies make every delay infinite, so none beats the starting value.
TEST(Magphasefunctions, EstimateDelayWithoutAQualifyingPointGivesItsStartValue) {
    Points f;
    const Response h = PhaseRamp(RisingStep, f);
    f.fill(1000.0);
    int index = 512;
    EXPECT_EQ(EstimateDelay(h, f, index), 1e30);
    EXPECT_EQ(index, 0);
}

// The estimate is the least mean delay over the steps of its range among points within 1 dB of
// the range's peak; the oracle takes the mean delays from the unwrapped analytic phase.
TEST(Magphasefunctions, EstimateDelayOfFiltersIsTheLeastAnalyticMeanDelay) {
    struct Case {
        Rational r;
        int centre;
        int lo, hi;
    };
    const Case cases[] = {
        {ButterworthLowPass(4, 1000.0), 0, 1, 5},
        {ButterworthLowPass(4, 1000.0), 512, 482, 542},
        {BesselLowPass(5, 1000.0), 512, 482, 542},
        {ButterworthHighPass(4, 1000.0), 1023, 1019, 1023},
        {InvertingBandPass(2.0, 1000.0), 512, 482, 542},
    };
    const Points f = OneDecadeSweep(1000.0);
    for (const Case& c : cases) {
        const Response h = Evaluate(c.r, f);
        double peak = -1e300;
        for (int i = c.lo; i < c.hi; ++i) peak = std::max(peak, std::norm(c.r.At(TwoPi * f[i])));
        double best = 1e300;
        int expected = -1;
        for (int i = c.lo; i < c.hi; ++i) {
            const double w0 = TwoPi * f[i - 1];
            const double w1 = TwoPi * f[i];
            const double mean = (c.r.Phase(w0) - c.r.Phase(w1)) / (w1 - w0);
            if (mean < best && 10.0 * std::log10(std::norm(c.r.At(w1)) / peak) > -1.0) {
                best = mean;
                expected = i;
            }
        }
        int index = c.centre;
        const double tau = EstimateDelay(h, f, index);
        EXPECT_EQ(index, expected) << c.r.name << " " << c.centre;
        EXPECT_NEAR(tau, best, 1e-9 * best) << c.r.name << " " << c.centre;
    }
}

// ---------------------------------------------------------------------------------------------
// Delay-free phase

TEST(Magphasefunctions, HilbertSetupForEachTopology) {
    struct Case {
        int topology;
        int mode;
        int refIndex;
    };
    // clang-format off
    const Case cases[] = {
        {0, 0, 0},    {1, 0, 0},        // low passes
        {2, 1, 1023}, {3, 1, 1023},     // high passes
        {4, 2, 512},  {5, 2, 512},      // band passes
        {6, 3, 512},                    // notch
        {7, 0, 0},    {-1, 0, 0},       // no such circuit
    };
    // clang-format on
    for (const Case& c : cases) {
        const HilbertSetup setup = HilbertSetupFor(c.topology);
        EXPECT_EQ(setup.mode, c.mode) << c.topology;
        EXPECT_EQ(setup.refIndex, c.refIndex) << c.topology;
    }
}

// The phase at point i once a delay tau counted from point ref is taken out, unwrapped.
double DelayFreePhaseDeg(const Rational& r, const Points& f, int i, int ref, double tau) {
    const double w = TwoPi * f[i];
    return (r.Phase(w) + (w - TwoPi * f[ref]) * tau) * RadToDeg;
}

// The same, less the phase at ref, so that it is 0 there.
double ExcessPhaseDeg(const Rational& r, const Points& f, int i, int ref, double tau) {
    return DelayFreePhaseDeg(r, f, i, ref, tau) - r.Phase(TwoPi * f[ref]) * RadToDeg;
}

TEST(Magphasefunctions, LowAndHighPassHilbertPhaseIsTheExcessPhaseFromTheirReference) {
    struct Case {
        Rational r;
        int topology;
        int numSections;
    };
    const Case cases[] = {
        {ButterworthLowPass(4, 1000.0), 0, 2},  {ButterworthLowPass(8, 1000.0), 0, 4},
        {BesselLowPass(5, 1000.0), 0, 3},       {ButterworthHighPass(4, 1000.0), 2, 2},
        {ButterworthHighPass(5, 1000.0), 2, 3},
    };
    const Points f = OneDecadeSweep(1000.0);
    for (const Case& c : cases) {
        const Response h = Evaluate(c.r, f);
        const HilbertSetup setup = HilbertSetupFor(c.topology);
        const int ref = setup.refIndex;
        int index = ref;
        const double tau = EstimateDelay(h, f, index);
        // Before the driver's re-referencing the delay is counted from the nominal point, not
        // from the one the estimate used.
        Points raw;
        HilbertPhaseResponse(h, raw, f, -2000.0, ref, setup.mode);
        for (int i = 0; i < N; ++i)
            ASSERT_NEAR(AngleGapDeg(raw[i], DelayFreePhaseDeg(c.r, f, i, ref, tau)), 0.0, 1e-8)
                << c.r.name << " i " << i;

        Traces traces;
        ComputeTraces(h, f, -2000.0, c.topology, c.numSections, traces);
        EXPECT_EQ(traces.hilbertPhase[ref], 0.0) << c.r.name;
        for (int i = 0; i < N; ++i) {
            ASSERT_GE(traces.hilbertPhase[i], -180.0) << c.r.name << " i " << i;
            ASSERT_LE(traces.hilbertPhase[i], 180.0) << c.r.name << " i " << i;
            ASSERT_NEAR(AngleGapDeg(traces.hilbertPhase[i], ExcessPhaseDeg(c.r, f, i, ref, tau)),
                        0.0, 1e-8)
                << c.r.name << " i " << i;
        }
    }
}

// A Bessel filter's phase is close to a pure delay through its pass band; a Butterworth's of
// the same order is not, which shows the delay removal does more than flatten everything.
TEST(Magphasefunctions, BesselHilbertPhaseStaysNearZeroInThePassBand) {
    struct Case {
        Rational r;
        double limitDeg;  // least or greatest excursion up to f0
        bool nearZero;
    };
    const Case cases[] = {
        {BesselLowPass(3, 1000.0), 2.0, true},
        {BesselLowPass(4, 1000.0), 0.5, true},
        {BesselLowPass(5, 1000.0), 0.1, true},
        {ButterworthLowPass(5, 1000.0), 10.0, false},
    };
    const Points f = OneDecadeSweep(1000.0);
    for (const Case& c : cases) {
        Traces traces;
        ComputeTraces(Evaluate(c.r, f), f, -60.0, 0, 3, traces);
        double largest = 0.0;
        for (int i = 0; i <= N / 2; ++i)
            largest = std::max(largest, std::abs(traces.hilbertPhase[i]));
        if (c.nearZero)
            EXPECT_LT(largest, c.limitDeg) << c.r.name;
        else
            EXPECT_GT(largest, c.limitDeg) << c.r.name;
        RecordProperty(c.r.name + " largest pass-band excess phase", std::to_string(largest));
    }
}

// Both sides are referenced to the point next to the one the delay came from; the last point
// keeps its own phase. The inverting band pass has 180 degrees at its centre, so a missed or
// an extra re-reference shows as half a turn.
TEST(Magphasefunctions, BandPassHilbertPhaseLeavesItsLastPointUnreferenced) {
    const Points f = OneDecadeSweep(1000.0);
    const Rational r = InvertingBandPass(2.0, 1000.0);
    const Response h = Evaluate(r, f);
    int m = 512;
    const double tau = EstimateDelay(h, f, m);
    ASSERT_GT(m, 0);
    Points out;
    HilbertPhaseResponse(h, out, f, -2000.0, 512, 2);
    for (int i = 0; i < N - 1; ++i) {
        const int ref = i < m ? m - 1 : m;
        ASSERT_NEAR(AngleGapDeg(out[i], ExcessPhaseDeg(r, f, i, ref, tau)), 0.0, 1e-8) << i;
    }
    EXPECT_EQ(out[m], 0.0);
    EXPECT_EQ(out[m - 1], 0.0);
    EXPECT_NEAR(AngleGapDeg(out[N - 1], DelayFreePhaseDeg(r, f, N - 1, m, tau)), 0.0, 1e-8);
    EXPECT_GT(std::abs(AngleGapDeg(out[N - 1], ExcessPhaseDeg(r, f, N - 1, m, tau))), 90.0);

    // The plot driver leaves band passes as they are.
    Traces traces;
    ComputeTraces(h, f, -2000.0, 5, 1, traces);
    for (int i = 0; i < N; ++i) ASSERT_EQ(Bits(traces.hilbertPhase[i]), Bits(out[i])) << i;
}

// Each side of the notch loses the delay measured at its own end and is referenced there.
TEST(Magphasefunctions, NotchHilbertPhaseIsReferencedAtBothEnds) {
    const Points f = OneDecadeSweep(1000.0);
    const Rational r = Notch(1.0, 1000.0);
    const Response h = Evaluate(r, f);
    int low = 0;
    const double lowTau = EstimateDelay(h, f, low);
    int high = N - 1;
    const double highTau = EstimateDelay(h, f, high);
    Traces traces;
    ComputeTraces(h, f, -60.0, 6, 1, traces);
    EXPECT_EQ(traces.hilbertPhase[0], 0.0);
    EXPECT_EQ(traces.hilbertPhase[N - 1], 0.0);
    int masked = 0;
    for (int i = 0; i < N; ++i) {
        if (traces.magnitudeDb[i] < -60.0) {
            ++masked;
            EXPECT_EQ(Bits(traces.hilbertPhase[i]), Bits(NoPlotValue)) << i;
            continue;
        }
        const double expected = i < N / 2 ? ExcessPhaseDeg(r, f, i, 0, lowTau)
                                          : ExcessPhaseDeg(r, f, i, N - 1, highTau);
        ASSERT_NEAR(AngleGapDeg(traces.hilbertPhase[i], expected), 0.0, 1e-8) << i;
    }
    EXPECT_GT(masked, 0);
}

// ---------------------------------------------------------------------------------------------
// The plot driver's re-referencing

struct ReReferenceCase {
    const char* what;
    int topology;
    int numSections;
    std::vector<std::pair<int, double>> input;  // over a background of 20 degrees
    std::vector<std::pair<int, double>> expected;
    double lowHalf;   // what the background becomes below index 512
    double highHalf;  // and from there on
};

TEST(Magphasefunctions, ReReferenceHilbertPhase) {
    constexpr double X = NoPlotValue;
    // clang-format off
    const ReReferenceCase cases[] = {
        {"low pass: zero at the first point, wrapped", 0, 3,
         {{0, 30}, {5, -160}, {6, 100}, {7, X}},
         {{0, 0}, {5, 170}, {6, 70}, {7, X}}, -10, -10},
        {"low pass: a masked first point still becomes 0", 0, 2,
         {{0, X}, {7, X}},
         {{0, 0}, {7, X}}, 20 - X, 20 - X},
        // Half a turn on every point cancels in the differences, except where one lands
        // exactly on the edge of the range: then it picks the other edge.
        {"odd MFB low pass is turned over", 1, 3,
         {{0, 10}, {5, -170}, {6, 100}, {7, X}},
         {{0, 0}, {5, 180}, {6, 90}, {7, X}}, 10, 10},
        {"even MFB low pass is not", 1, 2,
         {{0, 10}, {5, -170}, {6, 100}, {7, X}},
         {{0, 0}, {5, -180}, {6, 90}, {7, X}}, 10, 10},
        {"high pass: zero at the last point", 2, 3,
         {{0, 160}, {5, 170}, {6, 150}, {7, X}, {1023, -30}},
         {{0, -170}, {5, -160}, {6, 180}, {7, X}, {1023, 0}}, 50, 50},
        {"odd MFB high pass is turned over", 3, 1,
         {{0, 160}, {5, 170}, {6, 150}, {7, X}, {1023, -30}},
         {{0, -170}, {5, -160}, {6, -180}, {7, X}, {1023, 0}}, 50, 50},
        {"high pass with a masked last point", 2, 2,
         {{0, -150}, {1023, X}},
         {{0, -150 - X}, {1023, X}}, 20 - X, 20 - X},
        {"notch: each half to its own end", 6, 1,
         {{0, 30}, {511, -160}, {512, 170}, {1023, -30}},
         {{0, 0}, {511, 170}, {512, -160}, {1023, 0}}, -10, 50},
        {"band passes are left alone", 4, 1,
         {{0, 30}, {1023, -30}},
         {{0, 30}, {1023, -30}}, 20, 20},
        {"MFB band passes too, odd or even", 5, 3,
         {{0, 30}, {1023, -30}},
         {{0, 30}, {1023, -30}}, 20, 20},
    };
    // clang-format on
    for (const ReReferenceCase& c : cases) {
        Points phase;
        phase.fill(20.0);
        for (auto [i, v] : c.input) phase[i] = v;
        ReReferenceHilbertPhase(phase, c.topology, c.numSections);
        for (auto [i, v] : c.expected) {
            if (v == NoPlotValue)
                EXPECT_EQ(Bits(phase[i]), Bits(NoPlotValue)) << c.what << " i " << i;
            else
                EXPECT_DOUBLE_EQ(phase[i], v) << c.what << " i " << i;
        }
        for (int i : {1, 2, 100, 510})
            EXPECT_DOUBLE_EQ(phase[i], c.lowHalf) << c.what << " i " << i;
        for (int i : {513, 900, 1022})
            EXPECT_DOUBLE_EQ(phase[i], c.highHalf) << c.what << " i " << i;
    }
}

// ---------------------------------------------------------------------------------------------
// All traces at once

// The driver shares the dB trace among the routines; that must not change a bit of any trace.
TEST(Magphasefunctions, ComputeTracesMatchesTheRoutinesInTheDriversOrder) {
    struct Case {
        Rational r;
        int topology;
        int numSections;
    };
    const Case cases[] = {
        {ButterworthLowPass(4, 1000.0), 0, 2},
        {ButterworthLowPass(5, 1000.0), 1, 3},
        {ButterworthHighPass(4, 1000.0), 2, 2},
        {ButterworthHighPass(3, 1000.0), 3, 2},
        {InvertingBandPass(2.0, 1000.0), 4, 1},
        {InvertingBandPass(5.0, 1000.0), 5, 1},
        {Notch(1.0, 1000.0), 6, 1},
    };
    const Points f = OneDecadeSweep(1000.0);
    for (const Case& c : cases) {
        const Response h = Evaluate(c.r, f);
        constexpr double Threshold = -40.0;
        Traces expected;
        MagResponse(h, expected.magnitudeLinear, 1);
        MagResponse(h, expected.magnitudeDb, 0);
        const HilbertSetup setup = HilbertSetupFor(c.topology);
        HilbertPhaseResponse(h, expected.hilbertPhase, f, Threshold, setup.refIndex, setup.mode);
        ReReferenceHilbertPhase(expected.hilbertPhase, c.topology, c.numSections);
        PhaseResponse(h, expected.phase, Threshold);
        GroupDelayResponse(h, expected.groupDelay, f, Threshold);
        expected.groupDelayScale = GroupDelayScale(h, expected.groupDelay);

        Traces traces;
        traces.pulse.fill(0.25);
        traces.pulseTimeStep = 3e-5;
        traces.hasPulse = true;
        ComputeTraces(h, f, Threshold, c.topology, c.numSections, traces);

        const auto same = [&](const Points& a, const Points& b, const char* trace) {
            for (int i = 0; i < N; ++i)
                ASSERT_EQ(Bits(a[i]), Bits(b[i])) << c.r.name << " " << trace << " i " << i;
        };
        same(traces.magnitudeLinear, expected.magnitudeLinear, "linear");
        same(traces.magnitudeDb, expected.magnitudeDb, "dB");
        same(traces.hilbertPhase, expected.hilbertPhase, "Hilbert");
        same(traces.phase, expected.phase, "phase");
        same(traces.groupDelay, expected.groupDelay, "delay");
        EXPECT_EQ(Bits(traces.groupDelayScale), Bits(expected.groupDelayScale)) << c.r.name;
        EXPECT_TRUE(std::all_of(traces.pulse.begin(), traces.pulse.end(),
                                [](double v) { return v == 0.25; }));
        EXPECT_EQ(traces.pulseTimeStep, 3e-5);
        EXPECT_TRUE(traces.hasPulse);
    }
}

}  // namespace
}  // namespace nerivane
