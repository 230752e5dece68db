#include "circuit/Componentsettings.h"

#include <gtest/gtest.h>

#include "circuit/Valuecalculations.h"

namespace nerivane {
namespace {

// The golden designs hold the lower limits; here the upper one, and an ideal op amp that
// leaves the typed boxes alone.
TEST(ReadOpAmp, RepairsTheBoxesAndAnIdealOpAmpIsOneHundredMegahertzAndZeroOhms) {
    ComponentSettings settings;
    TextBox gbw("0"), ro("20000");
    OpAmpBoxes boxes{gbw, ro};
    OpAmpLabels labels = ReadOpAmp(settings, boxes, false);
    EXPECT_EQ(ro.Text(), "1.0E4");
    EXPECT_EQ(settings.outputResistance, 1e4);
    EXPECT_EQ(labels.outputResistance, "Ro  10.0 k\u03A9");
    ro.SetText("75");
    labels = ReadOpAmp(settings, boxes, true);
    EXPECT_EQ(settings.gainBandwidth, 1e8);
    EXPECT_EQ(settings.outputResistance, 0.0);
    EXPECT_EQ(ro.Text(), "75");
    EXPECT_EQ(labels.outputResistance, "Ro  0.00 \u03A9");
}

TEST(ReadWorstCaseRuns, OneToOneThousandDefaultTen) {
    ComponentSettings settings;
    for (const auto& [typed, runs] :
         {std::pair{"100", 100}, {"0", 1}, {"5000", 1000}, {"lots", 10}}) {
        TextBox box(typed);
        ReadWorstCaseRuns(settings, box);
        EXPECT_EQ(settings.worstCaseRuns, runs) << typed;
    }
}

// Each spinner click moves a capacitor by at least one value of its series, onto the series.
TEST(StepCapacitor, MovesAtLeastOneSeriesValue) {
    for (const ToleranceClass& tolerance : ToleranceClasses) {
        ComponentSettings settings;
        settings.capacitorClass = tolerance;
        double value = 1e-9;
        for (int click = 0; click < 90; ++click) {
            const bool up = click < 30;
            const double next = StepCapacitor(settings, value, up);
            EXPECT_TRUE(up ? next > value : next < value) << tolerance.percent << " " << value;
            EXPECT_EQ(settings.CapacitorStd(next), next) << tolerance.percent;
            value = next;
        }
    }
    ComponentSettings e6;
    e6.capacitorClass = *ToleranceClassOf(20);
    EXPECT_NEAR(StepCapacitor(e6, 1e-9, true), 1.5e-9, 1e-24);
    EXPECT_NEAR(StepCapacitor(e6, 1e-9, false), 0.68e-9, 1e-24);
}

}  // namespace
}  // namespace nerivane
