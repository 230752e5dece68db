// The plot drawn on a recording canvas: each trace kind on its scale, gaps and dashes, labels
// that fit, and whole plots against their golden draw logs.
#include "response/Plot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "support/Golden.h"

namespace nerivane {
namespace {

// Records what the plot draws: every LineTo with the pen in force (invisible ones included,
// so that the dash pattern can be read back), texts and fills.
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
        x_ = x;
        y_ = y;
    }
    void Circle(int, int, int, bool) override { ADD_FAILURE() << "the plot draws no circles"; }
    void SetTextColour(Rgb colour) override { textColour_ = colour; }
    void TextOut(int x, int y, const std::string& text) override {
        texts.push_back({x, y, text, textColour_, TextExtent(text)});
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
    }
    void FillBehind(int left, int top, int right, int bottom, Rgb colour, Rgb under) override {
        EXPECT_EQ(under, PlotBackground);
        behind.push_back({left, top, right, bottom, colour});
    }

    std::vector<Segment> segments;
    std::vector<std::array<int, 2>> moves;
    std::vector<Text> texts;
    std::vector<Fill> fills;
    std::vector<Fill> behind;

  private:
    Rgb colour_{}, textColour_{};
    int width_ = 0;
    PenStyle style_ = PenStyle::Solid;
    int x_ = 0, y_ = 0;
};

std::string Hex(Rgb c) {
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", c.r, c.g, c.b);
    return text;
}

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

TEST(DrawTrace, DashesReferenceTracesByPointCountOrByPen) {
    // A flat line moves about a pixel per point: four points drawn, four skipped. A steep
    // saw moves 100 pixels per point: the dashed pen.
    for (const bool saw : {false, true}) {
        auto values = Constant(0.5);
        for (std::size_t i = 0; saw && i < TracePoints; i += 2) values[i] = 0.25;
        RecordingCanvas canvas;
        DrawTrace(canvas, Frame, ScaleView(), values, true, {}, PulseTrace);
        for (std::size_t i = 1; i < TracePoints; ++i) {
            const RecordingCanvas::Segment& s = canvas.segments[i - 1];
            ASSERT_EQ(std::hypot(s.x1 - s.x0, s.y1 - s.y0) >= 6.0, saw) << i;
            const PenStyle flat = (i / 4) % 2 == 1 ? PenStyle::Solid : PenStyle::Clear;
            EXPECT_EQ(s.style, saw ? PenStyle::Dash : flat) << saw << " " << i;
        }
    }
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
    view.sweepIndex = Sweep::OneDecade;
    view.freqMin = 100.0;
    view.freqMax = 10000.0;
    view.groupDelayScale = 2e-3;
    view.pulseTimeStep = 25e-6;
    view.showMag1 = view.showPhase = view.showGroupDelay = view.showPulse = true;
    view.showReference = true;
    return view;
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
                view.sweepIndex = static_cast<Sweep>(sweep);
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

// The plot of seven views as a log of what was drawn, each run of segments that keeps colour
// and row written once: trace order and colours, scales, labels and legend.
std::string DrawLog(const RecordingCanvas& canvas) {
    std::ostringstream log;
    for (const RecordingCanvas::Fill& f : canvas.fills)
        log << "fill " << f.left << "," << f.top << " " << f.right << "," << f.bottom << " "
            << Hex(f.colour) << "\n";
    for (const RecordingCanvas::Text& t : canvas.texts)
        log << "text " << t.x << "," << t.y << " " << Hex(t.colour) << " " << t.text << "\n";
    // A run keeps colour and row; the pen styles in it are counted (the dash pattern has its
    // own test).
    const auto& s = canvas.segments;
    for (std::size_t i = 0, j; i < s.size(); i = j) {
        int styles[4] = {0, 0, 0, 0};
        for (j = i; j < s.size() && s[j].colour == s[i].colour && s[j].y0 == s[i].y1 &&
                    s[j].y1 == s[i].y1 && (j == i || s[j].x0 == s[j - 1].x1);
             ++j)
            ++styles[static_cast<int>(s[j].style) & 3];
        if (j == i) ++styles[static_cast<int>(s[j++].style) & 3];
        log << "line " << Hex(s[i].colour) << " " << s[i].x0 << "," << s[i].y0 << " " << s[j - 1].x1
            << "," << s[j - 1].y1 << " styles";
        for (int count : styles) log << " " << count;
        log << "\n";
    }
    return log.str();
}

TEST(DrawPlot, DrawsWhatItDrewWhenChecked) {
    struct Row {
        const char* name;
        void (*change)(PlotView&, Traces& reference);
        bool grid;
    };
    // clang-format off
    const Row rows[] = {
        {"plot-everything", [](PlotView&, Traces&) {}, true},
        {"plot-linear-hilbert", [](PlotView& v, Traces&) {
             v.linearMagnitude = v.hilbertPhase = true; v.showReference = false; }, true},
        {"plot-linear-sweep-no-pulse", [](PlotView& v, Traces& r) {
             v.sweepIndex = Sweep::Linear; v.freqMin = 1.0; v.freqMax = 2000.0; r.hasPulse = false; }, true},
        {"plot-disabled-traces", [](PlotView& v, Traces&) {
             v.phaseEnabled = v.groupDelayEnabled = v.pulseEnabled = false; v.showMag10 = false; }, true},
        {"plot-traces-only", [](PlotView&, Traces&) {}, false},
        {"plot-small-db", [](PlotView& v, Traces&) { v.height = 200; v.showReference = false; }, true},
        {"plot-linear-without-magnitude", [](PlotView& v, Traces&) {
             v.linearMagnitude = true; v.showMag10 = v.showMag1 = false; }, true},
    };
    // clang-format on
    for (const Row& row : rows) {
        PlotView view = EverythingShown();
        const Traces current = Flat(-3.0, -4.5, 10.0, -90.0, 1e-3, 0.5);
        Traces reference = Flat(-40.0, 0.0, 90.0, 45.0, 0.2e-3, 0.25);
        row.change(view, reference);
        RecordingCanvas canvas;
        DrawPlot(canvas, view, current, &reference, row.grid);
        golden::ExpectGolden(row.name, DrawLog(canvas));
    }
}

// A low-pass requirement on a decade from 100 Hz: its pass edge at 1 kHz halfway across, its
// stop edge at 3.16 kHz three quarters across; the limits on the 10 dB scale (10 dB at the top,
// 100 dB over the height) or, as 9 |H| - 9, on the linear one.
TEST(DrawPlot, ShadesWhereTheRequirementForbidsTheMagnitude) {
    RequirementMask mask;
    mask.passEdgesHz = {1000.0, 0.0};
    mask.stopEdgesHz = {std::sqrt(10.0) * 1000.0, 0.0};
    mask.passDb = 10.0;
    mask.stopDb = 40.0;
    for (const bool linear : {false, true}) {
        PlotView view = EverythingShown();
        view.showMag1 = false;
        view.linearMagnitude = linear;
        view.mask = &mask;
        view.maskReferenceDb = -2.0;
        RecordingCanvas canvas;
        DrawPlot(canvas, view, Flat(-3.0, -4.5, 10.0, -90.0, 1e-3, 0.5), nullptr, true);
        const PlotGeometry g = GeometryFor(view);
        const auto y = [&](double db) {
            const double v = linear ? 9.0 * std::pow(10.0, db / 20.0) - 9.0 : db;
            return g.top + static_cast<int>(std::lround((view.topDb - v) * g.height / 100.0));
        };
        std::vector<RecordingCanvas::Fill> shaded;
        for (const auto& f : canvas.fills)
            if (f.colour != PlotBackground) shaded.push_back(f);
        ASSERT_EQ(shaded.size(), 2u);
        const int right = g.left + g.width;
        EXPECT_EQ(shaded[0].left, g.left);
        EXPECT_EQ(shaded[0].right, g.left + g.width / 2);
        EXPECT_EQ(shaded[0].top, y(-12.0));
        EXPECT_EQ(shaded[0].bottom, g.Bottom());
        EXPECT_NEAR(shaded[1].left, g.left + 0.75 * g.width, 0.5);
        EXPECT_EQ(shaded[1].right, right);
        EXPECT_EQ(shaded[1].top, g.top);
        EXPECT_EQ(shaded[1].bottom, std::min(y(-42.0), g.Bottom()));
    }
}

// The envelope fills behind the runs, from the highest value to the lowest at every step, in a
// tint of each trace's colour; the phase's undrawn points leave gaps.
TEST(DrawEnvelope, FillsBetweenTheLowestAndHighestRunBehindThem) {
    PlotView view = EverythingShown();
    view.showMag1 = view.showGroupDelay = view.showPulse = false;
    TraceEnvelope envelope;
    envelope.low = Flat(-6.0, 0.0, -30.0, 0.0, 0.0, 0.0);
    envelope.high = Flat(-2.0, 0.0, 60.0, 0.0, 0.0, 0.0);
    envelope.low.phase[100] = envelope.high.phase[100] = NoPlotValue;
    RecordingCanvas canvas;
    const PlotGeometry g = GeometryFor(view);
    DrawEnvelope(canvas, g, view, envelope);
    const auto y = [&](double db) {
        return g.top + static_cast<int>(std::lround((view.topDb - db) * g.height / 100.0));
    };
    const auto phaseY = [&](double degrees) {
        return g.top + static_cast<int>(std::lround((180.0 - degrees) * g.height / 360.0));
    };
    int magnitude = 0, phase = 0;
    for (const auto& f : canvas.behind) {
        EXPECT_GT(f.right, f.left);
        if (f.top == y(-2.0) && f.bottom == y(-6.0) + 1) ++magnitude;
        if (f.top == phaseY(60.0) && f.bottom == phaseY(-30.0) + 1) ++phase;
    }
    EXPECT_EQ(magnitude, TracePoints - 1);
    EXPECT_EQ(phase, TracePoints - 3);
    EXPECT_EQ(magnitude + phase, static_cast<int>(canvas.behind.size()));
}

// Every sweep and scale, large and small: labels inside the image and apart from each other,
// and a frame that leaves room for them.
TEST(DrawPlot, LabelsStayInsideTheImageAndApart) {
    const Traces traces = Flat(-3.0, -4.5, 10.0, 20.0, 1e-3, 0.5);
    for (const PlotView& view : AssortedViews()) {
        RecordingCanvas canvas;
        DrawPlot(canvas, view, traces, &traces, true);
        const std::string where = std::to_string(view.width) + "x" + std::to_string(view.height) +
                                  " sweep " + std::to_string(Index(view.sweepIndex));
        EXPECT_GT(canvas.texts.size(), 5u);
        for (std::size_t i = 0; i < canvas.texts.size(); ++i) {
            const RecordingCanvas::Text& a = canvas.texts[i];
            EXPECT_TRUE(a.x >= 0 && a.y >= 0 && a.x + a.size.width <= view.width &&
                        a.y + a.size.height <= view.height)
                << a.text << " " << where;
            for (std::size_t j = i + 1; j < canvas.texts.size(); ++j) {
                const RecordingCanvas::Text& b = canvas.texts[j];
                EXPECT_TRUE(a.x + a.size.width <= b.x || b.x + b.size.width <= a.x ||
                            a.y + a.size.height <= b.y || b.y + b.size.height <= a.y)
                    << a.text << " and " << b.text << ", " << where;
            }
        }
        const PlotGeometry g = GeometryFor(view);
        // The read-out's line above the frame, which also takes the 1 dB trace's rise.
        EXPECT_GE(g.top, PlotFontPixels + 4);
        EXPECT_TRUE(g.width > view.width / 4 && g.left + g.width < view.width) << where;
        EXPECT_TRUE(g.height > view.height / 3 && g.Bottom() < view.height) << where;
    }
}

}  // namespace
}  // namespace nerivane
