#include "app/Updownfunctions.h"

#include <gtest/gtest.h>

#include "app/Initializevars.h"
#include "numerics/Formatfunctions.h"
#include "numerics/Protofunctions.h"

namespace nerivane {
namespace {

struct PolesCase {
    std::int32_t topology;
    const char* typed;
    const char* shown;
    bool repaired;
    std::int32_t sections;
};

TEST(ReadNumPoles, RepairsAndLimitsByTopology) {
    // clang-format off
    const PolesCase cases[] = {
        {VcvsLowPass,  "4",   "4",  false, 2},
        {VcvsLowPass,  "25",  "20", true,  10},
        {VcvsBandPass, "25",  "10", true,  10},
        {VcvsNotch,    "7",   "7",  false, 7},
        {MfbLowPass,   "0",   "1",  true,  1},
        {MfbLowPass,   "abc", "3",  true,  2},
        {MfbLowPass,   "",    "3",  true,  2},
        {MfbLowPass,   "0x10","16", false, 8},
    };
    // clang-format on
    for (const PolesCase& c : cases) {
        DesignState state = DefaultDesignState();
        state.TopologyIndex = c.topology;
        TextBox box(c.typed);
        ReadNumPoles(state, box);
        EXPECT_EQ(box.Text(), c.shown) << c.typed;
        EXPECT_EQ(box.Repaired(), c.repaired) << c.typed;
        EXPECT_EQ(state.NumSections, c.sections) << c.typed;
    }
}

TEST(RippleMaximum, TightensForHighOrderChebyshevOnly) {
    // clang-format off
    const struct { int family, poles; double maximum; } cases[] = {
        {Chebyshev, 15, 1.0},  {Chebyshev, 16, 0.5},   {Chebyshev, 17, 0.4},
        {Chebyshev, 18, 0.25}, {Chebyshev, 19, 0.125}, {Chebyshev, 20, 0.1},
        {Papoulis,  20, 2.0},  {Butterworth, 18, 2.0},
    };
    // clang-format on
    for (const auto& c : cases) EXPECT_EQ(RippleMaximum(c.family, c.poles), c.maximum);
}

TEST(ReadRipple, EighteenPoleChebyshevAcceptsAtMostAQuarterDecibel) {
    DesignState state = DefaultDesignState();
    state.ResponseIndex = Chebyshev;
    state.NumPoles = 18;
    TextBox box("1.0");
    ReadRipple(state, box);
    EXPECT_EQ(box.Text(), "0.250");
    EXPECT_TRUE(box.Repaired());
    EXPECT_EQ(state.Ripple, 0.25);

    state.ResponseIndex = Butterworth;
    box.SetText("2.0");
    ReadRipple(state, box);
    EXPECT_FALSE(box.Repaired());
    EXPECT_EQ(state.Ripple, 2.0);
}

TEST(ReadRipple, ZeroInTheBoxDesignsWithAThousandthOfADecibel) {
    DesignState state = DefaultDesignState();
    TextBox box("0.000");
    ReadRipple(state, box);
    EXPECT_EQ(box.Text(), "0.000");
    EXPECT_FALSE(box.Repaired());
    EXPECT_EQ(state.Ripple, 0.001);
}

TEST(ReadRipple, CommaLocaleReadsBothSeparators) {
    SetNumberFormat({',', '.'});
    DesignState state = DefaultDesignState();
    TextBox box("0.5");
    ReadRipple(state, box);
    EXPECT_EQ(state.Ripple, 0.5);
    EXPECT_EQ(box.Text(), "0,500");
    box.SetText("0,75");
    ReadRipple(state, box);
    EXPECT_EQ(state.Ripple, 0.75);
    EXPECT_FALSE(box.Repaired());
    SetNumberFormat({'.', ','});
}

TEST(ReadGamma, ClampsAndRewritesWithTwoDecimals) {
    DesignState state = DefaultDesignState();
    TextBox box("-3");
    ReadGamma(state, box);
    EXPECT_EQ(state.Gamma, -1.0);
    EXPECT_EQ(box.Text(), "-1.00");
    EXPECT_TRUE(box.Repaired());
    box.SetText("0.35");
    ReadGamma(state, box);
    EXPECT_EQ(state.Gamma, 0.35);
    EXPECT_FALSE(box.Repaired());
}

TEST(GammaLabelText, NamesTheFamilyTheArgumentResembles) {
    // clang-format off
    const struct { double gamma; bool enabled; const char* label; } cases[] = {
        {-0.7,  true,  "~ Bessel"},  {-0.75, true, "~ Bessel"},     {-0.65, true, "~ Bessel"},
        {-0.8,  true,  "Adj Gauss"}, {-0.95, true, "~ Gauss"},      {1.0,   true, "~Butterworth"},
        {0.9,   true,  "Adj Gauss"}, {-0.9,  true, "Adj Gauss"},    {-0.95, false, "Adj Gauss"},
    };
    // clang-format on
    for (const auto& c : cases)
        EXPECT_EQ(GammaLabelText(c.gamma, c.enabled), c.label) << c.gamma << " " << c.enabled;
}

TEST(ReadPhaseThreshold, StoresANegativeLevel) {
    DesignState state = DefaultDesignState();
    TextBox box("20");
    ReadPhaseThreshold(state, box);
    EXPECT_EQ(state.PhaseThreshold, -20.0);
    box.SetText("-45");
    ReadPhaseThreshold(state, box);
    EXPECT_EQ(state.PhaseThreshold, -45.0);
    box.SetText("500");
    ReadPhaseThreshold(state, box);
    EXPECT_EQ(state.PhaseThreshold, -200.0);
    EXPECT_TRUE(box.Repaired());
}

}  // namespace
}  // namespace nerivane
