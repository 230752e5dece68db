// The trace routines' edge rules as tables: single points, masking, one delay step. Whole
// designs (the delay estimate, the delay scale and the delay-free phase of every topology among
// them) are covered by the golden table.
#include "response/Magphasefunctions.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

#include "numerics/Matherrmain.h"

namespace nerivane {
namespace {

constexpr int N = TracePoints;
constexpr double TwoPi = 6.283185307179586;

using Points = std::array<double, N>;
using Response = std::array<Complex, N>;

std::uint64_t Bits(double x) {
    return std::bit_cast<std::uint64_t>(x);
}

Complex Polar(double magnitude, double radians) {
    return {magnitude * std::cos(radians), magnitude * std::sin(radians)};
}

// A zero has no angle and no logarithm: masked under any threshold above -1000 dB, phase 0 at
// -1000 dB, and nothing in the math-error log.
TEST(Magphasefunctions, AZeroIsMaskedAndLogsNoMathError) {
    std::array<Complex, 8> h;
    for (int i = 0; i < 8; ++i) h[i] = Polar(1.0, -0.1 * i);
    h[4] = {0.0, 0.0};
    const std::array<double, 8> f = {100, 200, 300, 400, 500, 600, 700, 800};
    RecordingMathErrorLog log;
    InstallMathErrorLog(&log);
    for (double threshold : {-999.999, -3.0, 0.0}) {
        std::array<double, 8> phase, hilbert, delay;
        PhaseResponse(h, phase, threshold);
        HilbertPhaseResponse(h, hilbert, f, threshold, 0, 0);
        GroupDelayResponse(h, delay, f, threshold);
        for (double v : {phase[4], hilbert[4], delay[4]})
            EXPECT_EQ(Bits(v), Bits(NoPlotValue)) << threshold;
    }
    std::array<double, 8> db, phase;
    MagResponse(h, db, 0);
    PhaseResponse(h, phase, -1000.0);
    EXPECT_EQ(db[4], -1000.0);
    EXPECT_EQ(phase[4], 0.0);
    InstallMathErrorLog(nullptr);
    EXPECT_TRUE(log.lines.empty());
}

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

}  // namespace
}  // namespace nerivane
