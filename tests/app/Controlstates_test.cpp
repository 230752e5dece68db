#include "app/Controlstates.h"

#include <gtest/gtest.h>

#include <memory>

#include "app/Initializevars.h"
#include "app/Plotview.h"

namespace nerivane {
namespace {

TEST(UpdateControlStates, BandPassSwitchesHilbertPhaseBackToPhase) {
    DesignState state = DefaultDesignState();
    SelectPhaseMode(state, PhaseMode::Hilbert);
    EXPECT_EQ(UpdateControlStates(state).plotPhaseCaption, "Hilbert Phase");
    state.TopologyIndex = MfbBandPass;
    ControlStates c = UpdateControlStates(state);
    EXPECT_FALSE(c.hilbertPhaseMenuEnabled);
    EXPECT_FALSE(c.hilbertPhaseChecked);
    EXPECT_EQ(c.plotPhaseCaption, "Phase");
    state.TopologyIndex = VcvsLowPass;  // enabled again, but "Phase" stays checked
    c = UpdateControlStates(state);
    EXPECT_TRUE(c.hilbertPhaseMenuEnabled);
    EXPECT_FALSE(c.hilbertPhaseChecked);
}

TEST(UpdateControlStates, WorstCaseDisablesTheSquarePulse) {
    DesignState state = DefaultDesignState();
    EXPECT_TRUE(UpdateControlStates(state).pulseBoxEnabled);
    state.Tolerance = ToleranceMode::WorstCase;
    EXPECT_FALSE(UpdateControlStates(state).pulseBoxEnabled);
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
