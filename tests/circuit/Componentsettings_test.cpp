#include "circuit/Componentsettings.h"

#include <gtest/gtest.h>

#include "circuit/Valuecalculations.h"

namespace nerivane {
namespace {

TEST(ReadOpAmp, RepairsTheBoxesAndAnIdealOpAmpIsOneHundredMegahertzAndZeroOhms) {
    ComponentSettings settings;
    TextBox gbw("0"), ro("20000");
    OpAmpBoxes boxes{gbw, ro};
    OpAmpLabels labels = ReadOpAmp(settings, boxes, false);
    EXPECT_EQ(gbw.Text(), "0.001");
    EXPECT_EQ(ro.Text(), "1.0E4");
    EXPECT_TRUE(gbw.Repaired() && ro.Repaired());
    EXPECT_EQ(settings.gainBandwidth, 1e3);
    EXPECT_EQ(settings.outputResistance, 1e4);
    EXPECT_EQ(labels.bandwidth, "BW 1.00 kHz");
    EXPECT_EQ(labels.outputResistance, "Ro  10.0 k\u03A9");

    gbw.SetText("10");
    ro.SetText("75");
    labels = ReadOpAmp(settings, boxes, true);
    EXPECT_EQ(settings.gainBandwidth, 1e8);
    EXPECT_EQ(settings.outputResistance, 0.0);
    EXPECT_EQ(gbw.Text(), "10");  // the boxes keep what was typed
    EXPECT_EQ(labels.bandwidth, "BW 100 MHz");
    EXPECT_EQ(labels.outputResistance, "Ro  0.00 \u03A9");
}

TEST(ReadWorstCaseRuns, OneToOneThousandDefaultTen) {
    ComponentSettings settings;
    // clang-format off
    const struct { const char* typed; int runs; } cases[] = {
        {"100", 100}, {"0", 1}, {"5000", 1000}, {"lots", 10},
    };
    // clang-format on
    for (const auto& c : cases) {
        TextBox box(c.typed);
        ReadWorstCaseRuns(settings, box);
        EXPECT_EQ(settings.worstCaseRuns, c.runs) << c.typed;
    }
}

TEST(ToleranceLabelText, NamesCapacitorsThenResistors) {
    ComponentSettings settings;
    EXPECT_EQ(ToleranceLabelText(settings), "C 10%   R 1%");
    settings.capacitorClass = *ToleranceClassOf(20);
    settings.resistorClass = *ToleranceClassOf(5);
    EXPECT_EQ(ToleranceLabelText(settings), "C 20%   R 5%");
    EXPECT_EQ(ToleranceCaption(settings.capacitorClass), "20 %");
}

// Each spinner click moves a capacitor by at least one value of its series.
TEST(StepCapacitor, MovesAtLeastOneSeriesValue) {
    for (const ToleranceClass& tolerance : ToleranceClasses) {
        ComponentSettings settings;
        settings.capacitorClass = tolerance;
        double value = 1e-9;
        for (int click = 0; click < 30; ++click) {
            const double up = StepCapacitor(settings, value, true);
            EXPECT_GT(up, value) << tolerance.percent;
            EXPECT_EQ(settings.CapacitorStd(up), up);
            value = up;
        }
        for (int click = 0; click < 60; ++click) {
            const double down = StepCapacitor(settings, value, false);
            EXPECT_LT(down, value) << tolerance.percent;
            value = down;
        }
    }
    ComponentSettings e6;
    e6.capacitorClass = *ToleranceClassOf(20);
    EXPECT_NEAR(StepCapacitor(e6, 1e-9, true), 1.5e-9, 1e-24);
    EXPECT_NEAR(StepCapacitor(e6, 1e-9, false), 0.68e-9, 1e-24);
}

}  // namespace
}  // namespace nerivane
