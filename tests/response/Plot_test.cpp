#include "response/Plot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

namespace nerivane {
namespace {

// Records what the plot draws: every LineTo with the pen in force (invisible ones included,
// so that the dash pattern can be read back), texts, fills and the order of it all.
class RecordingCanvas : public Canvas {
  public:
    struct Segment {
        int x0, y0, x1, y1;
        Rgb colour;
        PenStyle style;
    };
    struct Text {
        int x, y;
        std::string text;
        Rgb colour;
        TextSize size;
    };
    struct Fill {
        int left, top, right, bottom;
        Rgb colour;
    };
    enum class Call { Segment, Text, Fill };

    void SetPen(Rgb colour, int width, PenStyle style) override {
        colour_ = colour;
        width_ = width;
        style_ = style;
    }
    void MoveTo(int x, int y) override {
        x_ = x;
        y_ = y;
        moves.push_back({x, y});
    }
    void LineTo(int x, int y) override {
        EXPECT_EQ(width_, 1);
        segments.push_back({x_, y_, x, y, colour_, style_});
        calls.push_back(Call::Segment);
        x_ = x;
        y_ = y;
    }
    void Circle(int, int, int, bool) override { ADD_FAILURE() << "the plot draws no circles"; }
    void SetTextColour(Rgb colour) override { textColour_ = colour; }
    void TextOut(int x, int y, const std::string& text) override {
        texts.push_back({x, y, text, textColour_, TextExtent(text)});
        calls.push_back(Call::Text);
    }
    // A fixed-pitch font: 7 pixels per character (UTF-8 continuation bytes take none).
    TextSize TextExtent(const std::string& text) override {
        const auto characters = std::count_if(text.begin(), text.end(), [](char c) {
            return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
        });
        return {7 * static_cast<int>(characters), 14};
    }
    void FillRect(int left, int top, int right, int bottom, Rgb colour) override {
        fills.push_back({left, top, right, bottom, colour});
        calls.push_back(Call::Fill);
    }

    const Text* FindText(const std::string& text) const {
        for (const Text& t : texts)
            if (t.text == text) return &t;
        return nullptr;
    }

    std::vector<Segment> segments;
    std::vector<std::array<int, 2>> moves;
    std::vector<Text> texts;
    std::vector<Fill> fills;
    std::vector<Call> calls;

  private:
    Rgb colour_{}, textColour_{};
    int width_ = 0;
    PenStyle style_ = PenStyle::Solid;
    int x_ = 0, y_ = 0;
};

constexpr PlotGeometry Frame{50, 20, 1000, 400};  // bottom at 420

PlotView ScaleView() {
    PlotView view;
    view.topDb = 10.0;
    view.groupDelayScale = 2e-3;
    return view;
}

std::array<double, TracePoints> Constant(double v) {
    std::array<double, TracePoints> values;
    values.fill(v);
    return values;
}

TEST(DrawTrace, PutsEachKindOnItsScaleAndClampsToTheFrame) {
    struct Row {
        int kind;
        double value;
        int y;       // points after the first
        int firstY;  // the first point, always clamped to the frame
    };
    // Top 10 dB, 400 pixels high from y = 20, group-delay scale 2 ms.
    // clang-format off
    const Row rows[] = {
        {Mag10dB,         -40.0,    220, 220},  // 50 dB below the top: half the height
        {Mag10dB,         -3.01,    72,  72},   // 13.01 dB * 4 px/dB = 52.04
        {Mag10dB,         9.375,    23,  23},   // -2.5 px rounds away from zero
        {Mag10dB,         30.0,     20,  20},   // above the top: on the top edge
        {Mag10dB,         -200.0,   420, 420},  // below the bottom: on the bottom edge
        {Mag1dB,          0.5,      40,  40},   // 0.1 * Top = 1 dB at the top, 40 px/dB
        {Mag1dB,          0.9375,   23,  23},
        {Mag1dB,          1.0625,   17,  20},   // +2.5 px: 3 px above the frame
        {Mag1dB,          1.5,      10,  20},   // at most 10 px above the frame
        {Mag1dB,          -20.0,    420, 420},
        {PhaseTrace,      180.0,    20,  20},
        {PhaseTrace,      90.0,     120, 120},
        {PhaseTrace,      -45.0,    270, 270},
        {PhaseTrace,      -180.0,   420, 420},
        {GroupDelayTrace, 1e-3,     220, 220},
        {GroupDelayTrace, 3e-3,     20,  20},
        {GroupDelayTrace, -1e-4,    420, 420},
        {PulseTrace,      0.25,     320, 320},
        {PulseTrace,      1.5,      20,  20},
        {5,               0.25,     320, 320},  // drawn like the pulse
    };
    // clang-format on
    for (const Row& row : rows) {
        RecordingCanvas canvas;
        const auto values = Constant(row.value);
        DrawTrace(canvas, Frame, ScaleView(), values, false, {1, 2, 3}, row.kind);
        ASSERT_EQ(canvas.moves.size(), 1u) << row.kind << " " << row.value;
        ASSERT_EQ(canvas.segments.size(), TracePoints - 1u);
        EXPECT_EQ(canvas.moves[0][1], row.firstY) << row.kind << " " << row.value;
        for (const RecordingCanvas::Segment& s : canvas.segments) {
            EXPECT_EQ(s.y1, row.y) << row.kind << " " << row.value;
            EXPECT_EQ(s.style, PenStyle::Solid);
            EXPECT_EQ(s.colour, (Rgb{1, 2, 3}));
        }
    }
}

TEST(DrawTrace, SpreadsThePointsOverTheWidthRoundingToNearest) {
    struct Row {
        PlotGeometry geometry;
        int index;
        int x;
    };
    // clang-format off
    const Row rows[] = {
        {Frame,               0,    50},
        {Frame,               1,    51},    // 0.977
        {Frame,               3,    53},    // 2.93
        {Frame,               64,   113},   // 62.5 rounds up
        {Frame,               512,  550},
        {Frame,               1023, 1049},  // one step short of the right edge
        {{10, 20, 600, 400},  512,  310},
        {{10, 20, 600, 400},  1023, 609},   // 599.4
    };
    // clang-format on
    for (const Row& row : rows) {
        RecordingCanvas canvas;
        const auto values = Constant(0.0);
        DrawTrace(canvas, row.geometry, ScaleView(), values, false, {}, Mag10dB);
        const int x = row.index == 0 ? canvas.moves[0][0] : canvas.segments[row.index - 1].x1;
        EXPECT_EQ(x, row.x) << row.index;
    }
}

TEST(DrawTrace, LeavesGapsAtNoPlotValuesInPhaseAndDelayOnly) {
    for (int kind : {PhaseTrace, GroupDelayTrace, Mag10dB, Mag1dB, PulseTrace}) {
        auto values = Constant(0.0);
        std::fill(values.begin() + 10, values.begin() + 21, NoPlotValue);
        RecordingCanvas canvas;
        DrawTrace(canvas, Frame, ScaleView(), values, false, {}, kind);
        const bool gaps = kind == PhaseTrace || kind == GroupDelayTrace;
        for (std::size_t i = 1; i < TracePoints; ++i) {
            const RecordingCanvas::Segment& s = canvas.segments[i - 1];
            const bool hidden = gaps && i >= 10 && i <= 20;
            EXPECT_EQ(s.style, hidden ? PenStyle::Clear : PenStyle::Solid) << kind << " " << i;
        }
        // After the gap the line starts afresh at the next point instead of joining the gap.
        const RecordingCanvas::Segment& after = canvas.segments[21 - 1];
        EXPECT_EQ(after.x0 == after.x1 && after.y0 == after.y1, gaps) << kind;
        EXPECT_EQ(canvas.moves.size(), gaps ? 12u : 1u) << kind;  // one after each gap point
    }
}

TEST(DrawTrace, DrawsNothingVisibleForAPhaseOfNoPlotValuesOnly) {
    const auto values = Constant(NoPlotValue);
    RecordingCanvas canvas;
    DrawTrace(canvas, Frame, ScaleView(), values, false, {}, PhaseTrace);
    for (const RecordingCanvas::Segment& s : canvas.segments) EXPECT_EQ(s.style, PenStyle::Clear);
}

TEST(DrawTrace, DashesReferenceTracesByPointCountOrByPen) {
    // A flat line moves about a pixel per point: four points drawn, four skipped. A steep
    // saw moves 100 pixels per point: the dashed pen.
    auto saw = Constant(0.0);
    for (std::size_t i = 0; i < TracePoints; i += 2) saw[i] = 0.25;
    struct Row {
        const char* name;
        std::array<double, TracePoints> values;
    };
    const Row rows[] = {{"flat", Constant(0.5)}, {"saw", saw}};
    for (const Row& row : rows) {
        RecordingCanvas canvas;
        DrawTrace(canvas, Frame, ScaleView(), row.values, true, {}, PulseTrace);
        for (std::size_t i = 1; i < TracePoints; ++i) {
            const RecordingCanvas::Segment& s = canvas.segments[i - 1];
            const double step = std::hypot(s.x1 - s.x0, s.y1 - s.y0);
            const PenStyle expected = step >= 6.0        ? PenStyle::Dash
                                      : (i / 4) % 2 == 1 ? PenStyle::Solid
                                                         : PenStyle::Clear;
            EXPECT_EQ(s.style, expected) << row.name << " " << i;
            EXPECT_EQ(step >= 6.0, row.name == std::string("saw")) << i;
        }
    }
}

TEST(DrawTrace, KeepsTheGapRuleOnReferenceTraces) {
    auto values = Constant(0.0);
    values[100] = NoPlotValue;
    RecordingCanvas canvas;
    DrawTrace(canvas, Frame, ScaleView(), values, true, {}, GroupDelayTrace);
    EXPECT_EQ(canvas.segments[100 - 1].style, PenStyle::Clear);  // (100 div 4) is odd
}

// ---- the whole plot ----

Traces Flat(double magnitudeDb, double linear, double phase, double hilbert, double delay,
            double pulse) {
    Traces t;
    t.magnitudeDb.fill(magnitudeDb);
    t.magnitudeLinear.fill(linear);
    t.phase.fill(phase);
    t.hilbertPhase.fill(hilbert);
    t.groupDelay.fill(delay);
    t.pulse.fill(pulse);
    t.hasPulse = true;
    return t;
}

PlotView EverythingShown() {
    PlotView view;
    view.width = 1000;
    view.height = 600;
    view.sweepIndex = 4;
    view.freqMin = 100.0;
    view.freqMax = 10000.0;
    view.groupDelayScale = 2e-3;
    view.pulseTimeStep = 25e-6;
    view.showMag1 = view.showPhase = view.showGroupDelay = view.showPulse = true;
    view.showReference = true;
    return view;
}

// The colours of the traces in the order drawn: a trace is a run of 1023 segments.
std::vector<Rgb> TraceColours(const RecordingCanvas& canvas) {
    std::vector<Rgb> colours;
    for (std::size_t i = 0; i < canvas.segments.size(); i += TracePoints - 1)
        colours.push_back(canvas.segments[i].colour);
    return colours;
}

TEST(DrawPlot, DrawsTheShownTracesInOrderAndColourThenTheReference) {
    const Rgb mag10{255, 0, 0}, mag1{128, 0, 0}, phase{0, 0, 255}, delay{0, 96, 0},
        pulse{255, 128, 0};
    const Rgb refMag10{205, 38, 38}, refMag1{192, 0, 0}, refPhase{0, 0, 128}, refDelay{0, 173, 0},
        refPulse{255, 193, 37};
    struct Row {
        const char* name;
        void (*change)(PlotView&, Traces& reference);
        std::vector<Rgb> colours;
    };
    // clang-format off
    const Row rows[] = {
        {"everything", [](PlotView&, Traces&) {},
         {mag10, mag1, phase, delay, pulse, refMag10, refMag1, refPhase, refDelay, refPulse}},
        {"no reference", [](PlotView& v, Traces&) { v.showReference = false; },
         {mag10, mag1, phase, delay, pulse}},
        {"phase disabled", [](PlotView& v, Traces&) { v.phaseEnabled = false; },
         {mag10, mag1, delay, pulse, refMag10, refMag1, refDelay, refPulse}},
        {"delay and pulse disabled",
         [](PlotView& v, Traces&) { v.groupDelayEnabled = v.pulseEnabled = false; },
         {mag10, mag1, phase, refMag10, refMag1, refPhase}},
        {"reference without a pulse", [](PlotView&, Traces& r) { r.hasPulse = false; },
         {mag10, mag1, phase, delay, pulse, refMag10, refMag1, refPhase, refDelay}},
        {"only 1 dB", [](PlotView& v, Traces&) {
             v.showMag10 = v.showPhase = v.showGroupDelay = v.showPulse = false; },
         {mag1, refMag1}},
    };
    // clang-format on
    for (const Row& row : rows) {
        PlotView view = EverythingShown();
        const Traces current = Flat(-3.0, -4.5, 10.0, 20.0, 1e-3, 0.5);
        Traces reference = current;
        row.change(view, reference);
        RecordingCanvas canvas;
        DrawPlot(canvas, view, current, &reference, false);
        EXPECT_EQ(TraceColours(canvas), row.colours) << row.name;
        EXPECT_EQ(canvas.segments.size(), row.colours.size() * (TracePoints - 1)) << row.name;
    }
}

// The y at which DrawTrace puts a constant value.
int RowOf(const PlotView& view, double value, int kind) {
    RecordingCanvas canvas;
    const auto values = Constant(value);
    DrawTrace(canvas, GeometryFor(view), view, values, false, {}, kind);
    return canvas.segments.back().y1;
}

TEST(DrawPlot, PicksTheMagnitudeAndPhaseArraysTheViewAsksFor) {
    struct Row {
        bool linear;
        bool hilbert;
        double magnitude;
        double phase;
    };
    // clang-format off
    const Row rows[] = {
        {false, false, -40.0, 90.0},
        {true,  false, -4.5,  90.0},
        {false, true,  -40.0, -90.0},
        {true,  true,  -4.5,  -90.0},
    };
    // clang-format on
    const Traces traces = Flat(-40.0, -4.5, 90.0, -90.0, 1e-3, 0.5);
    for (const Row& row : rows) {
        PlotView view = EverythingShown();
        view.showGroupDelay = view.showPulse = view.showReference = false;
        view.linearMagnitude = row.linear;
        view.hilbertPhase = row.hilbert;
        RecordingCanvas canvas;
        DrawPlot(canvas, view, traces, nullptr, false);
        ASSERT_EQ(canvas.segments.size(), 3u * (TracePoints - 1));
        EXPECT_EQ(canvas.segments[0].y1, RowOf(view, row.magnitude, Mag10dB));
        EXPECT_EQ(canvas.segments[TracePoints - 1].y1, RowOf(view, row.magnitude, Mag1dB));
        EXPECT_EQ(canvas.segments[2 * (TracePoints - 1)].y1, RowOf(view, row.phase, PhaseTrace));
    }
}

TEST(DrawPlot, WithoutTheGridDrawsOnlyTheTraces) {
    RecordingCanvas canvas;
    const Traces traces = Flat(-3.0, -4.5, 10.0, 20.0, 1e-3, 0.5);
    DrawPlot(canvas, EverythingShown(), traces, &traces, false);
    EXPECT_TRUE(canvas.fills.empty());
    EXPECT_TRUE(canvas.texts.empty());
    EXPECT_EQ(canvas.segments.size(), 10u * (TracePoints - 1));
}

TEST(DrawPlot, FillsTheBackgroundFirstAndDrawsTheTracesLast) {
    PlotView view = EverythingShown();
    RecordingCanvas canvas;
    const Traces traces = Flat(-3.0, -4.5, 10.0, 20.0, 1e-3, 0.5);
    DrawPlot(canvas, view, traces, &traces, true);
    ASSERT_FALSE(canvas.calls.empty());
    EXPECT_EQ(canvas.calls.front(), RecordingCanvas::Call::Fill);
    ASSERT_EQ(canvas.fills.size(), 1u);
    const RecordingCanvas::Fill& fill = canvas.fills[0];
    EXPECT_EQ(fill.colour, PlotBackground);
    EXPECT_TRUE(fill.left == 0 && fill.top == 0 && fill.right == view.width &&
                fill.bottom == view.height);
    // Nothing but trace segments after the grid, labels and legend.
    const std::size_t traceSegments = 10u * (TracePoints - 1);
    ASSERT_GT(canvas.segments.size(), traceSegments);
    const auto firstTrace = canvas.calls.end() - static_cast<std::ptrdiff_t>(traceSegments);
    EXPECT_TRUE(std::all_of(firstTrace, canvas.calls.end(), [](RecordingCanvas::Call c) {
        return c == RecordingCanvas::Call::Segment;
    }));
    EXPECT_EQ(canvas.segments[canvas.segments.size() - traceSegments].colour, (Rgb{255, 0, 0}));
}

// Views of every sweep and scale combination, large and small.
std::vector<PlotView> AssortedViews() {
    std::vector<PlotView> views;
    const double starts[] = {1.0, 500.0, 250.0, 125.0, 100.0, 10.0};
    const double stops[] = {2000.0, 2000.0, 4000.0, 8000.0, 10000.0, 100000.0};
    for (int sweep = 0; sweep <= 5; ++sweep)
        for (int size = 0; size < 3; ++size)
            for (int scales = 0; scales < 4; ++scales) {
                PlotView view = EverythingShown();
                view.width = std::array{1000, 640, 320}[size];
                view.height = std::array{600, 420, 200}[size];
                view.sweepIndex = sweep;
                view.freqMin = starts[sweep];
                view.freqMax = stops[sweep];
                view.topDb = scales == 3 ? -380.0 : 410.0 * (scales % 2);
                view.groupDelayScale = std::array{2e-3, 0.12, 4.5e-6, 1.0}[scales];
                view.linearMagnitude = scales == 2;
                view.showPhase = scales != 1;
                view.showPulse = scales != 0;
                views.push_back(view);
            }
    return views;
}

TEST(DrawPlot, KeepsEveryLabelInsideTheImage) {
    const Traces traces = Flat(-3.0, -4.5, 10.0, 20.0, 1e-3, 0.5);
    for (const PlotView& view : AssortedViews()) {
        RecordingCanvas canvas;
        DrawPlot(canvas, view, traces, &traces, true);
        EXPECT_GT(canvas.texts.size(), 5u);
        for (const RecordingCanvas::Text& t : canvas.texts) {
            EXPECT_GE(t.x, 0) << t.text << " " << view.width << " sweep " << view.sweepIndex;
            EXPECT_GE(t.y, 0) << t.text;
            EXPECT_LE(t.x + t.size.width, view.width) << t.text << " " << view.width;
            EXPECT_LE(t.y + t.size.height, view.height) << t.text << " " << view.height;
        }
    }
}

TEST(DrawPlot, KeepsLabelsOnOneRowApart) {
    const Traces traces = Flat(-3.0, -4.5, 10.0, 20.0, 1e-3, 0.5);
    for (const PlotView& view : AssortedViews()) {
        RecordingCanvas canvas;
        DrawPlot(canvas, view, traces, &traces, true);
        for (std::size_t i = 0; i < canvas.texts.size(); ++i)
            for (std::size_t j = i + 1; j < canvas.texts.size(); ++j) {
                const RecordingCanvas::Text& a = canvas.texts[i];
                const RecordingCanvas::Text& b = canvas.texts[j];
                const bool apart = a.x + a.size.width <= b.x || b.x + b.size.width <= a.x ||
                                   a.y + a.size.height <= b.y || b.y + b.size.height <= a.y;
                EXPECT_TRUE(apart) << a.text << " and " << b.text << ", " << view.width << "x"
                                   << view.height << " sweep " << view.sweepIndex;
            }
    }
}

TEST(DrawPlot, CentresLabelsOnTheirValues) {
    PlotView view = EverythingShown();
    view.showReference = false;
    const PlotGeometry g = GeometryFor(view);
    const auto timeX = [&](double t) {
        return g.left + static_cast<int>(std::lround(g.width * t / (TracePoints * 25e-6)));
    };
    struct Row {
        std::string text;
        Rgb colour;
        int x;  // -1: not checked
        int y;
    };
    const Rgb dark{40, 40, 40}, mag10{255, 0, 0}, mag1{128, 0, 0}, phase{0, 0, 255},
        delay{0, 96, 0}, time{205, 102, 0};
    // clang-format off
    const Row rows[] = {
        {"100 Hz",      dark,  g.left,               -1},
        {"1 kHz",       dark,  g.left + g.width / 2, -1},
        {"10 kHz",      dark,  g.left + g.width,     -1},
        {"10 dB",       mag10, -1, g.top},
        {"-40 dB",      mag10, -1, g.top + g.height / 2},
        {"-90 dB",      mag10, -1, g.Bottom()},
        {"1 dB",        mag1,  -1, g.top},
        {"-9 dB",       mag1,  -1, g.Bottom()},
        {"+180\u00b0", phase, -1, g.top},
        {"0\u00b0",    phase, -1, g.top + g.height / 2},
        {"-90\u00b0",  phase, -1, RowOf(view, -90.0, PhaseTrace)},
        {"2 ms",        delay, -1, g.top},
        {"1 ms",        delay, -1, g.top + g.height / 2},
        {"200 us",      delay, -1, RowOf(view, 0.2e-3, GroupDelayTrace)},
        {"0 s",         delay, -1, g.Bottom()},
        {"0 s",         time,  timeX(0.0), -1},
        {"10 ms",       time,  timeX(10e-3), -1},
    };
    // clang-format on
    RecordingCanvas canvas;
    DrawPlot(canvas, view, Flat(0, 0, 0, 0, 0, 0), nullptr, true);
    for (const Row& row : rows) {
        const auto found = std::find_if(canvas.texts.begin(), canvas.texts.end(), [&](auto& t) {
            return t.text == row.text && t.colour == row.colour;
        });
        ASSERT_NE(found, canvas.texts.end()) << row.text;
        if (row.x >= 0) {
            EXPECT_NEAR(found->x + found->size.width / 2.0, row.x, 1.0) << row.text;
        }
        if (row.y >= 0) {
            EXPECT_NEAR(found->y + found->size.height / 2.0, row.y, 1.0) << row.text;
        }
    }
}

TEST(DrawPlot, LabelsTheLinearMagnitudeInGain) {
    PlotView view = EverythingShown();
    view.showMag10 = view.showPhase = view.showGroupDelay = view.showPulse = false;
    view.linearMagnitude = true;
    RecordingCanvas canvas;
    DrawPlot(canvas, view, Flat(0, 0, 0, 0, 0, 0), nullptr, true);
    // 9 |H| - 9 on the 1 dB scale: a gain of 1 where 0 dB is, a gain of 0 nine dB lower.
    for (const auto& [text, gain] : {std::pair{"1", 1.0}, std::pair{"0.5", 0.5}, {"0", 0.0}}) {
        const RecordingCanvas::Text* label = canvas.FindText(text);
        ASSERT_NE(label, nullptr) << text;
        EXPECT_NEAR(label->y + label->size.height / 2.0, RowOf(view, 9.0 * gain - 9.0, Mag1dB), 1.0)
            << text;
    }
    EXPECT_NE(canvas.FindText("Linear Mag"), nullptr);
    EXPECT_EQ(canvas.FindText("0 dB"), nullptr);
}

TEST(DrawPlot, LabelsTheLinearSweepFromZero) {
    PlotView view = EverythingShown();
    view.sweepIndex = 0;
    view.freqMin = 1.0;
    view.freqMax = 2000.0;
    RecordingCanvas canvas;
    DrawPlot(canvas, view, Flat(0, 0, 0, 0, 0, 0), nullptr, true);
    const PlotGeometry g = GeometryFor(view);
    for (const auto& [text, x] : {std::pair{"0 Hz", g.left},
                                  {"1 kHz", g.left + g.width / 2},
                                  {"2 kHz", g.left + g.width}}) {
        const RecordingCanvas::Text* label = canvas.FindText(text);
        ASSERT_NE(label, nullptr) << text;
        EXPECT_NEAR(label->x + label->size.width / 2.0, x, 1.0) << text;
    }
}

TEST(DrawPlot, NamesTheShownTracesInTheLegend) {
    struct Row {
        void (*change)(PlotView&);
        std::vector<std::string> present;
        std::vector<std::string> absent;
    };
    // clang-format off
    const Row rows[] = {
        {[](PlotView&) {},
         {"Mag 10 dB", "Mag 1 dB", "Phase", "Group Delay", "Sq Pulse", "dashed: reference"}, {}},
        {[](PlotView& v) { v.linearMagnitude = v.hilbertPhase = true; v.showReference = false; },
         {"Linear Mag", "Hilbert Phase"}, {"Mag 1 dB", "Phase", "dashed: reference"}},
        {[](PlotView& v) { v.groupDelayEnabled = v.pulseEnabled = false; v.showMag1 = false; },
         {"Mag 10 dB", "Phase"}, {"Mag 1 dB", "Group Delay", "Sq Pulse"}},
    };
    // clang-format on
    for (const Row& row : rows) {
        PlotView view = EverythingShown();
        row.change(view);
        const Traces traces = Flat(0, 0, 0, 0, 0, 0);
        RecordingCanvas canvas;
        DrawPlot(canvas, view, traces, &traces, true);
        for (const std::string& name : row.present)
            EXPECT_NE(canvas.FindText(name), nullptr) << name;
        for (const std::string& name : row.absent)
            EXPECT_EQ(canvas.FindText(name), nullptr) << name;
    }
}

TEST(GeometryFor, LeavesRoomForTheLabelsTheViewNeeds) {
    PlotView plain = EverythingShown();
    plain.showMag1 = plain.showPhase = plain.showGroupDelay = plain.showPulse = false;
    PlotView full = EverythingShown();
    const PlotGeometry a = GeometryFor(plain);
    const PlotGeometry b = GeometryFor(full);
    // Two magnitude columns on the left, phase and delay on the right, the time axis below.
    EXPECT_GT(b.left, a.left);
    EXPECT_GT(full.width - b.left - b.width, plain.width - a.left - a.width);
    EXPECT_GT(full.height - b.Bottom(), plain.height - a.Bottom());
    for (const PlotView& view : AssortedViews()) {
        const PlotGeometry g = GeometryFor(view);
        // The read-out's line above the frame, which also takes the 1 dB trace's rise.
        EXPECT_GE(g.top, PlotFontPixels + 4);
        EXPECT_GT(g.width, view.width / 4);
        EXPECT_LT(g.left + g.width, view.width);
        EXPECT_GT(g.height, view.height / 3);
        EXPECT_LT(g.Bottom(), view.height);
    }
}

}  // namespace
}  // namespace nerivane
