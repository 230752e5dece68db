// The window's model of its controls: what a spinner click (coarse with Ctrl) does to each box,
// the section stepper, the gamma label, the magnitude modes' boxes and the plot's view of the
// modes. Which controls a selection enables is the window test's table; what typing leaves in
// a box is the command line's golden table's.
#include "app/Updownfunctions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "app/Controlstates.h"
#include "app/Initializevars.h"
#include "app/Plotview.h"
#include "numerics/Formatfunctions.h"
#include "numerics/Protofunctions.h"

namespace nerivane {
namespace {

constexpr StepDirection Up = StepDirection::Up;
constexpr StepDirection Down = StepDirection::Down;

struct AdjustCase {
    const char* what;
    void (*adjust)(DesignState&, EditBox&, Messages&, Step);
    Topology topology;
    int family, poles;
    const char* before;
    StepDirection direction;
    bool coarse;
    const char* after;
};

// A click moves the value by its step (ten times with Ctrl) and never past a limit, so a click
// never turns a box silver. What typing leaves is the command line's golden table's.
TEST(Adjusters, ClicksStepWithinTheLimits) {
    // clang-format off
    const AdjustCase cases[] = {
        {"F0 up",            AdjustF0,        Topology::VcvsLowPass,  5, 3, "5",     Up,    false, "5.100"},
        {"F0 Ctrl up",       AdjustF0,        Topology::VcvsLowPass,  5, 3, "5",     Up,    true,  "6.000"},
        {"F0 at min",        AdjustF0,        Topology::VcvsLowPass,  5, 3, "0.001", Down,  false, "0.001"},
        {"BW down",          AdjustBandWidth, Topology::VcvsBandPass, 5, 3, "2",     Down,  false, "1.900"},
        {"ripple up",        AdjustRipple,    Topology::VcvsLowPass,  1, 3, "0.2",   Up,    false, "0.210"},
        {"ripple Ctrl",      AdjustRipple,    Topology::VcvsLowPass,  1, 3, "0.2",   Down,  true,  "0.100"},
        {"gamma up",         AdjustGamma,     Topology::VcvsLowPass,  5, 3, "0.0",   Up,    false, "0.05"},
        {"gamma Ctrl max",   AdjustGamma,     Topology::VcvsLowPass,  5, 3, "0.8",   Up,    true,  "1.00"},
        {"gain MFB down",    AdjustGain,      Topology::MfbLowPass,   5, 3, "0",     Down,  false, "-0.100"},
        {"gain VCVS down",   AdjustGain,      Topology::VcvsLowPass,  5, 3, "0",     Down,  false, "0.000"},
        {"gain Ctrl up",     AdjustGain,      Topology::VcvsHighPass, 5, 3, "3",     Up,    true,  "4.000"},
        {"poles up",         AdjustNumPoles,  Topology::VcvsLowPass,  5, 3, "3",     Up,    true,  "4"},
        {"poles at max",     AdjustNumPoles,  Topology::VcvsLowPass,  5, 3, "20",    Up,    false, "20"},
        {"BPF poles max",    AdjustNumPoles,  Topology::MfbBandPass,  5, 3, "10",    Up,    false, "10"},
        {"poles at min",     AdjustNumPoles,  Topology::VcvsLowPass,  5, 3, "1",     Down,  false, "1"},
        {"test value",       AdjustTestValue, Topology::VcvsLowPass,  5, 3, "0.0",   Up,    false, "0.010"},
        {"test Ctrl",        AdjustTestValue, Topology::VcvsLowPass,  5, 3, "0.0",   Down,  true,  "-1.000"},
    };
    // clang-format on
    for (const AdjustCase& c : cases) {
        DesignState state = DefaultDesignState();
        state.TopologyIndex = c.topology;
        state.ResponseIndex = static_cast<Response>(c.family);
        state.NumPoles = c.poles;
        state.NumSections = SectionsForPoles(c.topology, c.poles);
        TextBox box(c.before);
        Messages messages;
        c.adjust(state, box, messages, {c.direction, c.coarse});
        EXPECT_EQ(box.Text(), c.after) << c.what;
        EXPECT_FALSE(box.Repaired()) << c.what;
        EXPECT_TRUE(messages.empty()) << c.what;  // the box table's limits all read
    }
    EXPECT_EQ(RippleMaximum(Response::Chebyshev, 16), 0.5);
    EXPECT_EQ(RippleMaximum(Response::Papoulis, 20), 2.0);
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

TEST(AdjustSection, ShowsTheCapacitorsOfTheSelectedSection) {
    DesignState state = DefaultDesignState();
    state.NumSections = 4;
    state.SectionC1[2] = 4.7e-9;
    state.SectionC2[2] = 22e-9;
    TextBox section("1"), c1, c2;
    Messages messages;
    AdjustSection(state, section, {c1, c2}, messages, {StepDirection::Up, false});
    EXPECT_EQ(state.SelectedSection, 2);
    EXPECT_EQ(c1.Text(), "4.70 nF");
    EXPECT_EQ(c2.Text(), "22.0 nF");
    AdjustSection(state, section, {c1, c2}, messages, {StepDirection::Up, false});
    AdjustSection(state, section, {c1, c2}, messages, {StepDirection::Up, false});
    EXPECT_EQ(section.Text(), "3");  // the last section
}

TEST(SelectMagnitudeMode, LinearThenDbRestoresTheBoxes) {
    DesignState state = DefaultDesignState();
    SelectMagnitudeMode(state, MagnitudeMode::Linear);
    ControlStates c = UpdateControlStates(state);
    EXPECT_EQ(c.plotMag1dBCaption, "Linear Mag");
    EXPECT_FALSE(c.plotMagEnabled);
    EXPECT_EQ(state.PlotMag, 0);
    EXPECT_EQ(state.PlotMag1dB, 1);
    SelectMagnitudeMode(state, MagnitudeMode::Db);
    c = UpdateControlStates(state);
    EXPECT_EQ(c.plotMag1dBCaption, "Mag   1 dB");
    EXPECT_TRUE(c.plotMagEnabled);
    EXPECT_EQ(state.PlotMag, 1);
    EXPECT_EQ(state.PlotMag1dB, 0);
}

// The plot follows the record's modes as far as the menus allow them: the delay-free phase only
// when chosen and offered, the pulse only when there is one.
TEST(PlotViewFor, ShowsWhatTheModesAndMenusAllow) {
    const auto results = std::make_unique<DesignResults>();
    DesignState state = DefaultDesignState();
    state.PlotPulse = 1;
    ControlStates controls = UpdateControlStates(state);
    EXPECT_FALSE(PlotViewFor(state, controls, *results, 800, 500).hilbertPhase);
    EXPECT_FALSE(PlotViewFor(state, controls, *results, 800, 500).showPulse);
    SelectPhaseMode(state, PhaseMode::Hilbert);
    EXPECT_TRUE(PlotViewFor(state, UpdateControlStates(state), *results, 800, 500).hilbertPhase);
    controls.hilbertPhaseMenuEnabled = false;
    EXPECT_FALSE(PlotViewFor(state, controls, *results, 800, 500).hilbertPhase);
}

}  // namespace
}  // namespace nerivane
