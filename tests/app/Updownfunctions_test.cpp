#include "app/Updownfunctions.h"

#include <cmath>

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

TEST(AdjustNumPoles, RepairsAndLimitsByTopology) {
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
        AdjustNumPoles(state, box);
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

TEST(AdjustRipple, EighteenPoleChebyshevAcceptsAtMostAQuarterDecibel) {
    DesignState state = DefaultDesignState();
    state.ResponseIndex = Chebyshev;
    state.NumPoles = 18;
    TextBox box("1.0");
    AdjustRipple(state, box);
    EXPECT_EQ(box.Text(), "0.250");
    EXPECT_TRUE(box.Repaired());
    EXPECT_EQ(state.Ripple, 0.25);

    state.ResponseIndex = Butterworth;
    box.SetText("2.0");
    AdjustRipple(state, box);
    EXPECT_FALSE(box.Repaired());
    EXPECT_EQ(state.Ripple, 2.0);
}

TEST(AdjustRipple, ZeroInTheBoxDesignsWithAThousandthOfADecibel) {
    DesignState state = DefaultDesignState();
    TextBox box("0.000");
    AdjustRipple(state, box);
    EXPECT_EQ(box.Text(), "0.000");
    EXPECT_FALSE(box.Repaired());
    EXPECT_EQ(state.Ripple, 0.001);
}

TEST(AdjustRipple, CommaLocaleReadsBothSeparators) {
    SetNumberFormat({',', '.'});
    DesignState state = DefaultDesignState();
    TextBox box("0.5");
    AdjustRipple(state, box);
    EXPECT_EQ(state.Ripple, 0.5);
    EXPECT_EQ(box.Text(), "0,500");
    box.SetText("0,75");
    AdjustRipple(state, box);
    EXPECT_EQ(state.Ripple, 0.75);
    EXPECT_FALSE(box.Repaired());
    SetNumberFormat({'.', ','});
}

TEST(AdjustGamma, ClampsAndRewritesWithTwoDecimals) {
    DesignState state = DefaultDesignState();
    TextBox box("-3");
    AdjustGamma(state, box);
    EXPECT_EQ(state.Gamma, -1.0);
    EXPECT_EQ(box.Text(), "-1.00");
    EXPECT_TRUE(box.Repaired());
    box.SetText("0.35");
    AdjustGamma(state, box);
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

namespace nerivane {
namespace {

struct StepCase {
    const char* what;
    void (*adjust)(DesignState&, EditBox&, Step);
    std::int32_t topology;
    const char* before;
    StepDirection direction;
    bool coarse;
    const char* after;
};

constexpr StepDirection Up = StepDirection::Up;
constexpr StepDirection Down = StepDirection::Down;

// One spinner click moves the value by its step (ten times with Ctrl) and never past a limit,
// so a click never turns a box silver.
TEST(Adjusters, StepWithinTheirLimits) {
    // clang-format off
    const StepCase cases[] = {
        {"F0 up",          AdjustF0,        VcvsLowPass,  "5",      Up,   false, "5.100"},
        {"F0 Ctrl up",     AdjustF0,        VcvsLowPass,  "5",      Up,   true,  "6.000"},
        {"F0 at min",      AdjustF0,        VcvsLowPass,  "0.001",  Down, false, "0.001"},
        {"BW down",        AdjustBandWidth, VcvsBandPass, "2",      Down, false, "1.900"},
        {"ripple up",      AdjustRipple,    VcvsLowPass,  "0.2",    Up,   false, "0.210"},
        {"ripple Ctrl",    AdjustRipple,    VcvsLowPass,  "0.2",    Down, true,  "0.100"},
        {"gamma up",       AdjustGamma,     VcvsLowPass,  "0.0",    Up,   false, "0.05"},
        {"gamma Ctrl max", AdjustGamma,     VcvsLowPass,  "0.8",    Up,   true,  "1.00"},
        {"gain MFB down",  AdjustGain,      MfbLowPass,   "0",      Down, false, "-0.100"},
        {"gain VCVS down", AdjustGain,      VcvsLowPass,  "0",      Down, false, "0.000"},
        {"gain Ctrl up",   AdjustGain,      VcvsHighPass, "3",      Up,   true,  "4.000"},
        {"poles up",       AdjustNumPoles,  VcvsLowPass,  "3",      Up,   true,  "4"},
        {"poles at max",   AdjustNumPoles,  VcvsLowPass,  "20",     Up,   false, "20"},
        {"BPF poles max",  AdjustNumPoles,  MfbBandPass,  "10",     Up,   false, "10"},
        {"poles at min",   AdjustNumPoles,  VcvsLowPass,  "1",      Down, false, "1"},
        {"test value",     AdjustTestValue, VcvsLowPass,  "0.0",    Up,   false, "0.010"},
        {"test Ctrl",      AdjustTestValue, VcvsLowPass,  "0.0",    Down, true,  "-1.000"},
    };
    // clang-format on
    for (const StepCase& c : cases) {
        DesignState state = DefaultDesignState();
        state.TopologyIndex = c.topology;
        TextBox box(c.before);
        c.adjust(state, box, {c.direction, c.coarse});
        EXPECT_EQ(box.Text(), c.after) << c.what;
        EXPECT_FALSE(box.Repaired()) << c.what;
    }
}

TEST(AdjustGain, SetsTheRatioAndTheTopOfTheScale) {
    DesignState state = DefaultDesignState();
    state.NumSections = 3;
    TextBox box("6");
    AdjustGain(state, box);
    EXPECT_EQ(state.PlotTopDb, 30.0);
    EXPECT_NEAR(state.SectionGain, std::pow(10.0, 0.3), 1e-15);
    box.SetText("0");
    AdjustGain(state, box);
    EXPECT_EQ(state.PlotTopDb, 10.0);
    EXPECT_EQ(state.SectionGain, 1.0);
}

TEST(AdjustGain, OnlyInvertingStagesAttenuate) {
    for (std::int32_t topology = 0; topology <= 6; ++topology) {
        DesignState state = DefaultDesignState();
        state.TopologyIndex = topology;
        TextBox box("-5");
        AdjustGain(state, box);
        const bool inverting = topology == MfbLowPass || topology == MfbHighPass;
        EXPECT_EQ(box.Text(), inverting ? "-5.000" : "0.000") << topology;
        EXPECT_EQ(box.Repaired(), !inverting) << topology;
    }
}

TEST(AdjustSection, ShowsTheCapacitorsOfTheSelectedSection) {
    DesignState state = DefaultDesignState();
    state.NumSections = 4;
    state.SectionC1[2] = 4.7e-9;
    state.SectionC2[2] = 22e-9;
    TextBox section("1"), c1, c2;
    AdjustSection(state, section, {c1, c2}, {StepDirection::Up, false});
    EXPECT_EQ(state.SelectedSection, 2);
    EXPECT_EQ(c1.Text(), "4.70 nF");
    EXPECT_EQ(c2.Text(), "22.0 nF");
    AdjustSection(state, section, {c1, c2}, {StepDirection::Up, false});
    AdjustSection(state, section, {c1, c2}, {StepDirection::Up, false});
    EXPECT_EQ(section.Text(), "3");  // the last section
}

TEST(StepSectionCapacitor, MovesTheSelectedSectionsCapacitorAlongItsSeries) {
    DesignState state = DefaultDesignState();
    state.SelectedSection = 1;
    ComponentSettings settings;  // 10 % capacitors: E12
    TextBox box;
    StepSectionCapacitor(state, box, Capacitor::C1, true, settings);
    EXPECT_NEAR(state.SectionC1[1], 120e-12, 1e-24);
    EXPECT_EQ(box.Text(), "120 pF");
    EXPECT_EQ(state.SectionC1[0], 1e-10);
    StepSectionCapacitor(state, box, Capacitor::C2, false, settings);
    EXPECT_NEAR(state.SectionC2[1], 820e-12, 1e-24);
}

}  // namespace
}  // namespace nerivane
