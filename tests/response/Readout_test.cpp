#include "response/Readout.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>

namespace nerivane {
namespace {

struct ReadoutScene {
    std::array<double, TracePoints> frequencies{};
    std::unique_ptr<Traces> traces = std::make_unique<Traces>();
    PlotView view;
    PlotGeometry geometry{60, 20, 1024, 400};

    ReadoutScene() {
        for (int i = 0; i < TracePoints; ++i) {
            frequencies[i] = 100.0 + i;
            traces->magnitudeDb[i] = -3.0;
            traces->magnitudeLinear[i] = 9.0 * 0.5 - 9.0;
            traces->phase[i] = 45.0;
            traces->groupDelay[i] = 2e-4;
        }
        view.frequencies = frequencies;
        view.topDb = 10.0;
        view.groupDelayScale = 1e-3;
        view.showMag10 = view.showMag1 = view.showPhase = view.showGroupDelay = true;
    }
    std::string At(int x, int y, ReadoutMode mode) {
        return ReadoutText(view, geometry, *traces, x, y, mode).value_or("<none>");
    }
};

TEST(ReadoutText, EdgesReadTheEndsOfEachScale) {
    ReadoutScene s;
    const std::string top = s.At(60, 20, ReadoutMode::GraphPosition);
    EXPECT_EQ(top,
              "f = 100 Hz   Mag = 10.00 dB     Mag = 1.00 dB     Phase = 180.0 deg    "
              "GD = 1.00 ms    ");
    const std::string bottom = s.At(60, 420, ReadoutMode::GraphPosition);
    EXPECT_EQ(bottom,
              "f = 100 Hz   Mag = -90.00 dB     Mag = -9.00 dB     Phase = -180.0 deg    "
              "GD = 0.00 s    ");
}

TEST(ReadoutText, ValueModeReportsTheTracesAndSkipsUndrawnPoints) {
    ReadoutScene s;
    s.traces->phase[512] = NoPlotValue;
    const std::string text = s.At(60 + 512, 200, ReadoutMode::ValueAtFrequency);
    EXPECT_EQ(text, "f = 612 Hz   Mag = -3.00 dB     Mag = -3.00 dB     Delay = 200 us    ");
}

TEST(ReadoutText, LinearMagnitudeReadsTheGainItself) {
    ReadoutScene s;
    s.view.linearMagnitude = true;
    s.view.showMag10 = false;
    s.view.showPhase = s.view.showGroupDelay = false;
    EXPECT_EQ(s.At(60, 20, ReadoutMode::GraphPosition), "f = 100 Hz   Mag = 1.111     ");
    EXPECT_EQ(s.At(60, 420, ReadoutMode::GraphPosition), "f = 100 Hz   Mag = 0.000     ");
    EXPECT_EQ(s.At(60, 100, ReadoutMode::ValueAtFrequency), "f = 100 Hz   Mag = 0.500     ");
}

TEST(ReadoutText, NothingOutsideThePlotAndTheRightEdgeStaysInRange) {
    ReadoutScene s;
    for (const auto& [x, y] :
         std::array<std::pair<int, int>, 4>{{{59, 100}, {1085, 100}, {100, 19}, {100, 421}}})
        EXPECT_FALSE(ReadoutText(s.view, s.geometry, *s.traces, x, y, ReadoutMode::GraphPosition));
    EXPECT_EQ(ReadoutIndex(s.geometry, 60 + 1024), TracePoints - 1);
    EXPECT_EQ(ReadoutIndex(s.geometry, 60), 0);
    EXPECT_NE(s.At(60 + 1024, 100, ReadoutMode::ValueAtFrequency), "<none>");
}

}  // namespace
}  // namespace nerivane
