// The plot rendered for the screen and for files: dense screens, trace colours over the grid,
// runs painted over each other, and labels of the real font inside their margins.
#include "render/PlotImage.h"

#include <gtest/gtest.h>

#include <QImage>
#include <string>
#include <vector>

#include "render/OffscreenGui.h"
#include "render/QtCanvas.h"

namespace nerivane {
namespace {

class PlotImageTest : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { EnsureGuiApplication(); }
};

PlotView MagnitudeView(int sweep, double start, double stop) {
    PlotView view;
    view.width = 700;
    view.height = 450;
    view.sweepIndex = sweep;
    view.freqMin = start;
    view.freqMax = stop;
    view.groupDelayScale = 1.2e-3;
    view.pulseTimeStep = 25e-6;
    return view;
}

Traces FlatTraces(double magnitudeDb) {
    Traces traces;
    traces.magnitudeDb.fill(magnitudeDb);
    traces.pulse.fill(0.5);
    traces.hasPulse = true;
    return traces;
}

QRgb ToQRgb(Rgb colour) {
    return qRgb(colour.r, colour.g, colour.b);
}

// On a dense screen a gentle slope steps one device row at a time: the traces are drawn at
// the screen's resolution. Drawn in logical pixels they would climb in two-row stairs.
TEST_F(PlotImageTest, OnADenseScreenTracesStepAtDeviceResolution) {
    const PlotView view = MagnitudeView(4, 100.0, 10000.0);
    Traces ramp = FlatTraces(0.0);
    for (int i = 0; i < TracePoints; ++i) ramp.magnitudeDb[i] = -10.0 - 60.0 * i / TracePoints;
    QImage image = RenderPlot(view, ramp, nullptr, 2.0);
    EXPECT_EQ(image.width(), 2 * view.width);
    EXPECT_EQ(image.devicePixelRatio(), 2.0);
    EXPECT_EQ(image.pixel(0, 0), ToQRgb(PlotBackground));
    image.setDevicePixelRatio(1.0);
    const PlotGeometry g = GeometryFor(view);
    const QRgb red = ToQRgb({255, 0, 0});
    std::vector<int> topRows;
    for (int x = 2 * g.left + 20; x < 2 * (g.left + g.width) - 20; ++x) {
        for (int y = 2 * g.top; y < 2 * g.Bottom(); ++y) {
            if (image.pixel(x, y) == red) {
                topRows.push_back(y);
                break;
            }
        }
    }
    ASSERT_GT(topRows.size(), 100u);
    int singleSteps = 0;
    int doubleSteps = 0;
    for (std::size_t i = 1; i < topRows.size(); ++i) {
        singleSteps += topRows[i] - topRows[i - 1] == 1;
        doubleSteps += topRows[i] - topRows[i - 1] == 2;
    }
    EXPECT_GT(singleSteps, 100);
    EXPECT_EQ(doubleSteps, 0);
}

TEST_F(PlotImageTest, DrawsTheTracesOverTheGridInTheirColours) {
    PlotView view = MagnitudeView(4, 100.0, 10000.0);
    view.showReference = true;
    const PlotGeometry g = GeometryFor(view);
    const Traces current = FlatTraces(-40.0);  // half way down the 10 dB scale
    const Traces reference = FlatTraces(-20.0);
    const QImage image = RenderPlot(view, current, &reference);
    const int middle = g.left + g.width / 2;  // on the 1 kHz grid line
    EXPECT_EQ(image.pixel(middle, g.top + g.height / 2), qRgb(255, 0, 0));
    // The reference is dashed: drawn and skipped in turns along its row, four points of
    // about 0.6 pixels each at a time.
    const int row = g.top + 3 * g.height / 10;
    int dashes = 0;
    bool inDash = false;
    for (int x = g.left + 1; x < g.left + g.width; ++x) {
        const bool drawn = image.pixel(x, row) == qRgb(205, 38, 38);
        dashes += drawn && !inDash;
        inDash = drawn;
    }
    EXPECT_GT(dashes, g.width / 8);
}

TEST_F(PlotImageTest, PaintsLaterRunsOverTheFirstWithoutClearingIt) {
    const PlotView view = MagnitudeView(4, 100.0, 10000.0);
    const PlotGeometry g = GeometryFor(view);
    QImage image = NewPlotImage(view);
    PaintPlot(image, view, FlatTraces(-40.0), nullptr, true);
    PaintPlot(image, view, FlatTraces(-60.0), nullptr, false);
    const int x = g.left + g.width / 3;
    EXPECT_EQ(image.pixel(x, g.top + g.height / 2), qRgb(255, 0, 0));
    EXPECT_EQ(image.pixel(x, g.top + 7 * g.height / 10), qRgb(255, 0, 0));
}

// Passes everything on to a QtCanvas and keeps the boxes of the texts.
class TextBoxes : public Canvas {
  public:
    explicit TextBoxes(QImage& image) : canvas_(image) {}
    void SetPen(Rgb colour, int width, PenStyle style) override {
        canvas_.SetPen(colour, width, style);
    }
    void MoveTo(int x, int y) override { canvas_.MoveTo(x, y); }
    void LineTo(int x, int y) override { canvas_.LineTo(x, y); }
    void SetTextColour(Rgb colour) override { canvas_.SetTextColour(colour); }
    void TextOut(int x, int y, const std::string& text) override {
        boxes.push_back({x, y, canvas_.TextExtent(text), text});
        canvas_.TextOut(x, y, text);
    }
    TextSize TextExtent(const std::string& text) override { return canvas_.TextExtent(text); }
    void Circle(int x, int y, int radius, bool filled) override {
        canvas_.Circle(x, y, radius, filled);
    }
    void FillRect(int left, int top, int right, int bottom, Rgb colour) override {
        canvas_.FillRect(left, top, right, bottom, colour);
    }
    struct Box {
        int x, y;
        TextSize size;
        std::string text;
    };
    std::vector<Box> boxes;

  private:
    QtCanvas canvas_;
};

TEST_F(PlotImageTest, FitsTheLabelsOfTheRealFontIntoTheMargins) {
    // The margins are laid out for the label font: with every scale shown, the widest
    // labels and the two columns on each side must still keep clear of each other.
    const struct {
        int sweep;
        double start, stop, topDb, delayScale;
        bool linear;
    } rows[] = {
        {4, 100.0, 10000.0, 10.0, 1.2e-3, false}, {5, 10.0, 100000.0, -380.0, 0.15, false},
        {0, 1.0, 200000.0, 410.0, 4.5e-6, false}, {2, 25000.0, 400000.0, 20.0, 88e-9, true},
        {1, 0.5, 2.0, 0.0, 120.0, false},         {3, 1250.0, 80000.0, 30.0, 3.3e-5, false},
    };
    for (const auto& row : rows) {
        PlotView view = MagnitudeView(row.sweep, row.start, row.stop);
        view.topDb = row.topDb;
        view.groupDelayScale = row.delayScale;
        view.linearMagnitude = row.linear;
        view.showMag1 = view.showPhase = view.showGroupDelay = view.showPulse = true;
        view.showReference = true;
        QImage image = NewPlotImage(view);
        const Traces traces = FlatTraces(-3.0);
        TextBoxes canvas(image);
        DrawPlot(canvas, view, traces, &traces, true);
        for (std::size_t i = 0; i < canvas.boxes.size(); ++i) {
            const TextBoxes::Box& a = canvas.boxes[i];
            EXPECT_TRUE(a.x >= 0 && a.y >= 0 && a.x + a.size.width <= view.width &&
                        a.y + a.size.height <= view.height)
                << a.text;
            for (std::size_t j = i + 1; j < canvas.boxes.size(); ++j) {
                const TextBoxes::Box& b = canvas.boxes[j];
                const bool apart = a.x + a.size.width <= b.x || b.x + b.size.width <= a.x ||
                                   a.y + a.size.height <= b.y || b.y + b.size.height <= a.y;
                EXPECT_TRUE(apart) << a.text << " and " << b.text << ", sweep " << row.sweep;
            }
        }
    }
}

}  // namespace
}  // namespace nerivane
