#include "response/Plot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "numerics/Formatfunctions.h"
#include "numerics/Mathfunctions.h"

namespace nerivane {
namespace {

// Layout in pixels, sized for labels in a PlotFontPixels font.
constexpr int LineHeight = PlotFontPixels + 3;
constexpr int ScaleColumnWidth = 54;  // one column of scale labels such as "-390 dB", "350 us"
constexpr int MinSideMargin = 30;     // half of the frequency label centred on the frame's edge
constexpr int EdgeGap = 6;
constexpr int TickLength = 4;
constexpr int LabelGap = 3;                // between a tick and its label
constexpr int MinLabelSpacing = 10;        // between neighbouring labels on one row
constexpr int TopMargin = LineHeight + 8;  // the read-out's row; also holds the 1 dB trace's rise
constexpr int Divisions = 10;              // 10 dB or 1 dB per division

constexpr int Mag1dBRise = 10;  // how far the 1 dB trace may rise above the frame
// A reference trace is dashed by drawing four steps and skipping four; a step this long or
// longer is drawn with a dashed pen instead, as skipping it would leave a long hole.
constexpr double ShortReferenceStep = 6.0;

constexpr Rgb FrameColour{96, 96, 96};
constexpr Rgb MajorGridColour{188, 188, 188};
constexpr Rgb MinorGridColour{221, 221, 221};
constexpr Rgb AxisTextColour{40, 40, 40};
constexpr Rgb NoteTextColour{110, 110, 110};
constexpr Rgb PulseAxisColour{205, 102, 0};    // the pulse's orange, dark enough to read as text
constexpr Rgb ForbiddenColour{250, 218, 218};  // where the requirement does not let a trace go

// A trace as the plot draws it: which array, on which scale, in which colours and under
// which name in the legend.
struct PlotEntry {
    int kind;
    const std::array<double, TracePoints> Traces::*values;
    Rgb current;
    Rgb reference;
    const char* name;
};

// The traces the view shows, in drawing order.
std::vector<PlotEntry> ShownEntries(const PlotView& view) {
    const auto magnitude = view.linearMagnitude ? &Traces::magnitudeLinear : &Traces::magnitudeDb;
    const auto phase = view.hilbertPhase ? &Traces::hilbertPhase : &Traces::phase;
    std::vector<PlotEntry> entries;
    if (view.showMag10)
        entries.push_back({Mag10dB, magnitude, {255, 0, 0}, {205, 38, 38}, "Mag 10 dB"});
    if (view.showMag1)
        entries.push_back({Mag1dB,
                           magnitude,
                           {128, 0, 0},
                           {192, 0, 0},
                           view.linearMagnitude ? "Linear Mag" : "Mag 1 dB"});
    if (view.showPhase && view.phaseEnabled)
        entries.push_back({PhaseTrace,
                           phase,
                           {0, 0, 255},
                           {0, 0, 128},
                           view.hilbertPhase ? "Hilbert Phase" : "Phase"});
    if (view.showGroupDelay && view.groupDelayEnabled)
        entries.push_back(
            {GroupDelayTrace, &Traces::groupDelay, {0, 96, 0}, {0, 173, 0}, "Group Delay"});
    if (view.showPulse && view.pulseEnabled)
        entries.push_back({PulseTrace, &Traces::pulse, {255, 128, 0}, {255, 193, 37}, "Sq Pulse"});
    return entries;
}

bool PulseShown(const PlotView& view) {
    return view.showPulse && view.pulseEnabled;
}

// Columns of scale labels beside the plot: magnitude on the left, phase and delay on the right.
int LeftColumns(const PlotView& view) {
    if (view.linearMagnitude) return view.showMag10 || view.showMag1 ? 1 : 0;
    return int{view.showMag10} + int{view.showMag1};
}

int RightColumns(const PlotView& view) {
    return int{view.showPhase && view.phaseEnabled} +
           int{view.showGroupDelay && view.groupDelayEnabled};
}

// Unclamped pixel row of a value on a trace kind's scale; the grid and labels use the same
// mapping as the traces so that they agree to the pixel.
// A position in pixels. Far beyond any canvas, a value is held there, so that a line towards
// it keeps its direction and no coordinate overflows.
int PixelOf(double position) {
    constexpr double Far = 1e9;
    return NearestInt(std::clamp(position, -Far, Far));
}

int TraceY(const PlotGeometry& geometry, const PlotView& view, double v, int kind) {
    const double height = geometry.height;
    switch (kind) {
        case Mag1dB: return geometry.top - PixelOf((v - 0.1 * view.topDb) * height * 0.1);
        case Mag10dB: return geometry.top - PixelOf((v - view.topDb) * height * 0.01);
        case PhaseTrace: return geometry.top - PixelOf((v - 180.0) * height / 360.0);
        case GroupDelayTrace: return geometry.Bottom() - PixelOf(v * height / view.groupDelayScale);
        default: return geometry.Bottom() - PixelOf(v * height);
    }
}

bool SkipsNoPlotValues(int kind) {
    return kind == PhaseTrace || kind == GroupDelayTrace;
}

// ---- numbers on the axes ----

// The fewest significant digits (at most 4) that write v exactly, for tick values that are
// round by construction.
int SignificantDigits(double v) {
    for (int digits = 1; digits < 4; ++digits)
        if (std::fabs(RoundToSignificant(v, digits) - v) <= 1e-9 * std::fabs(v)) return digits;
    return 4;
}

std::string Engineering(double v, const std::string& unit) {
    return FormatEngineering(v, SignificantDigits(v) - 1, unit);
}

// A plain number with as many decimals (at most 3) as it needs; never "-0".
std::string PlainNumber(double v) {
    int decimals = 0;
    while (decimals < 3 && std::fabs(v * std::pow(10.0, decimals) -
                                     std::round(v * std::pow(10.0, decimals))) > 1e-6)
        ++decimals;
    return FormatFixedPlain(v + 0.0, decimals);
}

// The smallest step of the 1, 2, 5 series not below minimum.
double NiceStep(double minimum) {
    double decade = std::pow(10.0, std::floor(std::log10(minimum)));
    for (;;) {
        for (double m : {1.0, 2.0, 5.0})
            if (m * decade >= minimum * (1.0 - 1e-12)) return m * decade;
        decade *= 10.0;
    }
}

// ---- tick sets ----

// A label at a pixel position along its axis.
struct Label {
    int position;
    std::string text;
};

struct GridLine {
    int position;
    bool major;
};

// Whether two labels on a row, centred on their places, come closer than MinLabelSpacing.
bool Crowded(Canvas& canvas, const Label& before, const Label& after) {
    const int halfWidths =
        (canvas.TextExtent(before.text).width + canvas.TextExtent(after.text).width) / 2;
    return after.position - before.position < halfWidths + MinLabelSpacing;
}

bool Overlaps(Canvas& canvas, const std::vector<Label>& labels) {
    for (std::size_t i = 1; i < labels.size(); ++i)
        if (Crowded(canvas, labels[i - 1], labels[i])) return true;
    return false;
}

// Labels at round steps of the 1, 2, 5 series along a linear axis that runs from `from` at
// the frame's left edge to `to` at its right, as fine as the labels allow; step is set to
// the step chosen.
std::vector<Label> RoundStepLabels(Canvas& canvas, const PlotGeometry& geometry, double from,
                                   double to, const std::string& unit, double& step) {
    const double span = to - from;
    const int right = geometry.left + geometry.width;
    // The widest label is about as wide as the last one with two more digits.
    const int widest = canvas.TextExtent(Engineering(to, unit) + "00").width;
    std::vector<Label> labels;
    for (step = NiceStep(span * (widest + MinLabelSpacing) / geometry.width);;
         step = NiceStep(step * 1.5)) {
        labels.clear();
        for (long k = std::lround(std::floor(from / step));; ++k) {
            const double v = static_cast<double>(k) * step;
            const double x = geometry.left + geometry.width * (v - from) / span;
            if (x > right + 0.5) break;
            // Half a pixel of slack: the linear sweep starts at 1 Hz, and its 0 Hz label
            // belongs on the frame's edge.
            if (x >= geometry.left - 0.5) labels.push_back({PixelOf(x), Engineering(v, unit)});
        }
        if (!Overlaps(canvas, labels)) return labels;
    }
}

// The frequency axis. Point i of a sweep lies i/1024 of the width from the left, and the sweep
// spaces its points evenly in frequency (linear) or in its logarithm, so a frequency's place
// follows from the sweep's ends alone.
class FrequencyAxis {
  public:
    FrequencyAxis(const PlotView& view, const PlotGeometry& geometry)
        : view_(view), geometry_(geometry) {}

    bool Valid() const {
        return view_.freqMin > 0.0 && view_.freqMax > view_.freqMin && std::isfinite(view_.freqMax);
    }
    bool Linear() const { return view_.sweepIndex == Sweep::Linear; }

    double X(double f) const {
        const double fraction =
            Linear() ? (f - view_.freqMin) / (view_.freqMax - view_.freqMin)
                     : std::log(f / view_.freqMin) / std::log(view_.freqMax / view_.freqMin);
        return geometry_.left + geometry_.width * fraction;
    }
    // Within the frame, allowing for rounding.
    bool Inside(double x) const {
        return x >= geometry_.left - 0.5 && x <= geometry_.left + geometry_.width + 0.5;
    }

    double PixelsPerDecade() const {
        return geometry_.width / std::log10(view_.freqMax / view_.freqMin);
    }

    // Logarithmic sweeps: the decades darker, lighter lines between them as many as fit.
    std::vector<GridLine> LogLines() const {
        const double perDecade = PixelsPerDecade();
        // The closest lines of every set are those next to the decade above: 9 and 10.
        const double closest = perDecade * std::log10(10.0 / 9.0);
        const Multiples& set = closest >= 25.0                      ? FineLines
                               : closest >= 3.0                     ? UnitLines
                               : perDecade * std::log10(2.0) >= 3.0 ? OneTwoFive
                                                                    : Decades;
        std::vector<GridLine> lines;
        ForEachMultiple(set, [&](int tenths, double f) {
            lines.push_back({PixelOf(X(f)), tenths == 10});
        });
        return lines;
    }

    // The densest set of multiples whose labels do not overlap. A decade's labels crowd at
    // its top, where 8, 9 and 10 meet, so the sets thin out from there first.
    std::vector<Label> LogLabels(Canvas& canvas) const {
        std::vector<Label> labels;
        for (const Multiples& set : LabelSets) {
            labels.clear();
            ForEachMultiple(set, [&](int, double f) {
                labels.push_back({PixelOf(X(f)), Engineering(f, "Hz")});
            });
            if (!Overlaps(canvas, labels)) return labels;
        }
        return DropCrowded(canvas, labels);
    }

    // Linear sweep: labels at round steps, lighter lines between them.
    std::vector<Label> LinearLabels(Canvas& canvas, std::vector<GridLine>& lines) const {
        double step = 0.0;
        std::vector<Label> labels =
            RoundStepLabels(canvas, geometry_, view_.freqMin, view_.freqMax, "Hz", step);
        const double mantissa = step / std::pow(10.0, std::floor(std::log10(step) + 1e-9));
        const double minor = step / (std::lround(mantissa) == 2 ? 4.0 : 5.0);
        const bool minorShown = X(view_.freqMin + minor) - geometry_.left >= 8.0;
        const double lineStep = minorShown ? minor : step;
        lines.clear();
        for (long k = std::lround(std::floor(view_.freqMin / lineStep));; ++k) {
            const double f = static_cast<double>(k) * lineStep;
            const double x = X(f);
            if (x > geometry_.left + geometry_.width + 0.5) break;
            if (!Inside(x)) continue;
            const double inSteps = f / step;
            lines.push_back({PixelOf(x), std::fabs(inSteps - std::round(inSteps)) < 1e-6});
        }
        return labels;
    }

  private:
    // Multiples of a decade in tenths: 15 stands for 1.5, 150, 1500 ... hertz.
    using Multiples = std::vector<int>;
    static inline const Multiples FineLines = {10, 12, 14, 16, 18, 20, 25, 30,
                                               35, 40, 45, 50, 60, 70, 80, 90};
    static inline const Multiples UnitLines = {10, 20, 30, 40, 50, 60, 70, 80, 90};
    static inline const Multiples OneTwoFive = {10, 20, 50};
    static inline const Multiples Decades = {10};
    static inline const std::array<Multiples, 9> LabelSets = {{
        FineLines,
        {10, 15, 20, 25, 30, 40, 50, 60, 70, 80, 90},
        {10, 15, 20, 25, 30, 40, 50, 60, 80},
        {10, 20, 30, 40, 50, 60, 80},
        {10, 20, 30, 40, 50},
        {10, 20, 30, 50},
        OneTwoFive,
        {10, 30},
        Decades,
    }};

    template <typename Visit>
    void ForEachMultiple(const Multiples& set, Visit visit) const {
        const int first = static_cast<int>(std::floor(std::log10(view_.freqMin)));
        const int last = static_cast<int>(std::ceil(std::log10(view_.freqMax)));
        for (int decade = first; decade <= last; ++decade)
            for (int tenths : set) {
                const double f = tenths * std::pow(10.0, decade - 1);
                if (Inside(X(f))) visit(tenths, f);
            }
    }

    // Keeps every label that does not crowd the last one kept.
    static std::vector<Label> DropCrowded(Canvas& canvas, const std::vector<Label>& labels) {
        std::vector<Label> kept;
        for (const Label& label : labels)
            if (kept.empty() || !Crowded(canvas, kept.back(), label)) kept.push_back(label);
        return kept;
    }

    const PlotView& view_;
    const PlotGeometry& geometry_;
};

// The time axis of the square pulse, 0 at the left edge to 1024 time steps at the right.
std::vector<Label> TimeLabels(Canvas& canvas, const PlotView& view, const PlotGeometry& geometry) {
    const double span = TracePoints * view.pulseTimeStep;
    if (!(span > 0.0) || !std::isfinite(span)) return {};
    double step = 0.0;
    return RoundStepLabels(canvas, geometry, 0.0, span, "s", step);
}

// How many grid divisions apart labels go so that they do not touch.
int LabelStride(const PlotGeometry& geometry) {
    for (int stride : {1, 2, 5})
        if (stride * geometry.height >= Divisions * LineHeight) return stride;
    return Divisions;
}

// ---- vertical scales ----

struct Scale {
    std::vector<Label> labels;
    Rgb colour;
};

Scale DbScale(const PlotView& view, const PlotGeometry& geometry, const PlotEntry& entry) {
    const double perDivision = entry.kind == Mag1dB ? 1.0 : 10.0;
    const double topValue = entry.kind == Mag1dB ? 0.1 * view.topDb : view.topDb;
    Scale scale{{}, entry.current};
    for (int k = 0; k <= Divisions; k += LabelStride(geometry)) {
        const double v = topValue - k * perDivision;
        scale.labels.push_back({TraceY(geometry, view, v, entry.kind), PlainNumber(v) + " dB"});
    }
    return scale;
}

// "Linear Mag" draws 9|H| - 9 on a magnitude kind's scale, so a gain of 1 sits where the dB
// scale has 0 and a gain of 0 nine units lower. The labels give |H| itself at round values.
Scale LinearScale(const PlotView& view, const PlotGeometry& geometry, const PlotEntry& entry) {
    const double range = entry.kind == Mag1dB ? 10.0 : 100.0;  // plot units over the height
    const double topValue = entry.kind == Mag1dB ? 0.1 * view.topDb : view.topDb;
    const double gainAtTop = (topValue + 9.0) / 9.0;
    const double gainAtBottom = std::max(0.0, (topValue - range + 9.0) / 9.0);
    Scale scale{{}, entry.current};
    if (!(gainAtTop > gainAtBottom)) return scale;
    const double pixelsPerGain = 9.0 * geometry.height / range;
    const double step = NiceStep(2.0 * LineHeight / pixelsPerGain);
    for (long k = std::lround(std::ceil(gainAtBottom / step - 1e-9));
         k * step <= gainAtTop * (1.0 + 1e-9); ++k) {
        const double gain = static_cast<double>(k) * step;
        scale.labels.push_back(
            {TraceY(geometry, view, 9.0 * gain - 9.0, entry.kind), PlainNumber(gain)});
    }
    return scale;
}

// Phase at multiples of 45 degrees where they fit: the steps an engineer reads a phase at.
Scale PhaseScale(const PlotView& view, const PlotGeometry& geometry, const PlotEntry& entry) {
    int step = 180;
    for (int candidate : {90, 45})
        if (candidate * geometry.height >= 360 * LineHeight) step = candidate;
    Scale scale{{}, entry.current};
    for (int degrees = 180; degrees >= -180; degrees -= step)
        scale.labels.push_back({TraceY(geometry, view, degrees, PhaseTrace),
                                (degrees > 0 ? "+" : "") + std::to_string(degrees) + "\u00b0"});
    return scale;
}

// Delay at round values: the scale's full value has two significant digits, so its tenths
// would make labels such as "7.38 ms".
Scale DelayScale(const PlotView& view, const PlotGeometry& geometry, const PlotEntry& entry) {
    Scale scale{{}, entry.current};
    const double full = view.groupDelayScale;
    if (!(full > 0.0) || !std::isfinite(full)) return scale;
    const double step = NiceStep(2.0 * LineHeight * full / geometry.height);
    for (long k = 0; k * step <= full * (1.0 + 1e-9); ++k) {
        const double v = static_cast<double>(k) * step;
        scale.labels.push_back({TraceY(geometry, view, v, GroupDelayTrace), Engineering(v, "s")});
    }
    return scale;
}

// ---- drawing the frame ----

void Line(Canvas& canvas, int x0, int y0, int x1, int y1) {
    canvas.MoveTo(x0, y0);
    canvas.LineTo(x1, y1);
}

// Text kept inside the image.
void Text(Canvas& canvas, const PlotView& view, int x, int y, const std::string& text) {
    const TextSize size = canvas.TextExtent(text);
    canvas.TextOut(std::clamp(x, 0, std::max(0, view.width - size.width)),
                   std::clamp(y, 0, std::max(0, view.height - size.height)), text);
}

void DrawGridLines(Canvas& canvas, const PlotGeometry& geometry,
                   const std::vector<GridLine>& vertical, const std::vector<int>& horizontal) {
    const int right = geometry.left + geometry.width;
    for (bool major : {false, true}) {
        canvas.SetPen(major ? MajorGridColour : MinorGridColour, 1, PenStyle::Solid);
        for (const GridLine& line : vertical)
            if (line.major == major)
                Line(canvas, line.position, geometry.top, line.position, geometry.Bottom());
        if (major)
            for (int y : horizontal) Line(canvas, geometry.left, y, right, y);
    }
    canvas.SetPen(FrameColour, 1, PenStyle::Solid);
    canvas.MoveTo(geometry.left, geometry.top);
    canvas.LineTo(right, geometry.top);
    canvas.LineTo(right, geometry.Bottom());
    canvas.LineTo(geometry.left, geometry.Bottom());
    canvas.LineTo(geometry.left, geometry.top);
}

// A row of labels below the frame, each centred on its place; the first row (frequency) has
// ticks on the frame.
void DrawAxisRow(Canvas& canvas, const PlotView& view, const PlotGeometry& geometry,
                 const std::vector<Label>& labels, int row, Rgb colour) {
    canvas.SetPen(colour, 1, PenStyle::Solid);
    canvas.SetTextColour(colour);
    const int textTop = geometry.Bottom() + TickLength + LabelGap + row * LineHeight;
    for (const Label& label : labels) {
        if (row == 0)
            Line(canvas, label.position, geometry.Bottom(), label.position,
                 geometry.Bottom() + TickLength);
        Text(canvas, view, label.position - canvas.TextExtent(label.text).width / 2, textTop,
             label.text);
    }
}

// A column of labels beside the frame, with its ticks on the frame's edge.
void DrawScale(Canvas& canvas, const PlotView& view, const PlotGeometry& geometry,
               const Scale& scale, bool leftSide, int column) {
    canvas.SetPen(scale.colour, 1, PenStyle::Solid);
    canvas.SetTextColour(scale.colour);
    const int edge = leftSide ? geometry.left : geometry.left + geometry.width;
    const int outward = leftSide ? -1 : 1;
    const int textEdge = edge + outward * (TickLength + LabelGap + column * ScaleColumnWidth);
    for (const Label& label : scale.labels) {
        if (label.position < geometry.top || label.position > geometry.Bottom()) continue;
        Line(canvas, edge, label.position, edge + outward * TickLength, label.position);
        const TextSize size = canvas.TextExtent(label.text);
        Text(canvas, view, leftSide ? textEdge - size.width : textEdge,
             label.position - size.height / 2, label.text);
    }
}

// Whether a design has the trace at all: one whose pulse was never computed has no pulse.
bool HasTrace(const Traces& traces, const PlotEntry& entry) {
    return entry.kind != PulseTrace || traces.hasPulse;
}

// A short line, two pixels thick so that its colour reads at a glance.
void DrawSample(Canvas& canvas, int x, int middle, Rgb colour, PenStyle style) {
    constexpr int Length = 18;
    canvas.SetPen(colour, 1, style);
    Line(canvas, x, middle, x + Length, middle);
    Line(canvas, x, middle + 1, x + Length, middle + 1);
}

// One entry per trace: a sample in the current design's colour and, when the reference is
// drawn, a dashed one in the reference's colour, then the trace's name.
void DrawLegend(Canvas& canvas, const PlotView& view, const PlotGeometry& geometry,
                const std::vector<PlotEntry>& entries, const Traces& current,
                const Traces* reference) {
    constexpr int SampleStep = 22;
    constexpr int EntryGap = 16;
    const int rows = PulseShown(view) ? 2 : 1;
    const int top = geometry.Bottom() + TickLength + LabelGap + rows * LineHeight + 4;
    const int middle = top + LineHeight / 2;
    int x = geometry.left;
    canvas.SetTextColour(AxisTextColour);
    for (const PlotEntry& entry : entries) {
        const bool currentDrawn = HasTrace(current, entry);
        const bool referenceDrawn = reference != nullptr && HasTrace(*reference, entry);
        if (!currentDrawn && !referenceDrawn) continue;
        // On an image too narrow for the whole legend the later traces go unnamed rather
        // than names running into each other.
        const int width = SampleStep * (int{currentDrawn} + int{referenceDrawn}) +
                          canvas.TextExtent(entry.name).width;
        if (x + width > view.width - EdgeGap) break;
        if (currentDrawn) {
            DrawSample(canvas, x, middle, entry.current, PenStyle::Solid);
            x += SampleStep;
        }
        if (referenceDrawn) {
            DrawSample(canvas, x, middle, entry.reference, PenStyle::Dash);
            x += SampleStep;
        }
        Text(canvas, view, x, top, entry.name);
        x += canvas.TextExtent(entry.name).width + EntryGap;
    }
    const std::string note = "dashed: reference";
    if (reference != nullptr && x > geometry.left &&
        x + canvas.TextExtent(note).width <= view.width - EdgeGap) {
        canvas.SetTextColour(NoteTextColour);
        Text(canvas, view, x, top, note);
    }
}

// The magnitude a trace kind plots for a level in dB: the dB itself, or the linear scale's
// 9 |H| - 9.
double MagnitudeValue(const PlotView& view, double db) {
    return view.linearMagnitude ? 9.0 * std::pow(10.0, db / 20.0) - 9.0 : db;
}

// Below the pass band's limit and above the stop band's, region by region, on the scale of
// the first magnitude trace shown.
void DrawForbiddenRegions(Canvas& canvas, const PlotView& view, const PlotGeometry& geometry,
                          const std::vector<PlotEntry>& entries, const FrequencyAxis& axis) {
    if (view.mask == nullptr) return;
    const auto magnitude = std::find_if(entries.begin(), entries.end(), [](const PlotEntry& e) {
        return e.kind == Mag10dB || e.kind == Mag1dB;
    });
    if (magnitude == entries.end()) return;
    const int right = geometry.left + geometry.width;
    for (const MaskRegion& region : MaskRegions(*view.mask)) {
        const double limitDb =
            view.maskReferenceDb - (region.pass ? view.mask->passDb : view.mask->stopDb);
        const int y =
            std::clamp(TraceY(geometry, view, MagnitudeValue(view, limitDb), magnitude->kind),
                       geometry.top, geometry.Bottom());
        const int from = region.fromHz > 0.0 ? PixelOf(axis.X(region.fromHz)) : geometry.left;
        const int to = std::isfinite(region.toHz) ? PixelOf(axis.X(region.toHz)) : right;
        const int x0 = std::clamp(from, geometry.left, right),
                  x1 = std::clamp(to, geometry.left, right);
        if (x1 <= x0) continue;
        if (region.pass)
            canvas.FillRect(x0, y, x1, geometry.Bottom(), ForbiddenColour);
        else
            canvas.FillRect(x0, geometry.top, x1, y, ForbiddenColour);
    }
}

void DrawFrame(Canvas& canvas, const PlotView& view, const PlotGeometry& geometry,
               const std::vector<PlotEntry>& entries, const Traces& current,
               const Traces* reference) {
    canvas.FillRect(0, 0, view.width, view.height, PlotBackground);

    std::vector<GridLine> vertical;
    std::vector<Label> frequencyLabels;
    const FrequencyAxis axis(view, geometry);
    if (axis.Valid()) {
        if (axis.Linear()) {
            frequencyLabels = axis.LinearLabels(canvas, vertical);
        } else {
            vertical = axis.LogLines();
            frequencyLabels = axis.LogLabels(canvas);
        }
    }

    std::vector<Scale> left, right;
    for (const PlotEntry& entry : entries) {
        switch (entry.kind) {
            case Mag10dB:
            case Mag1dB:
                // The linear magnitude has one scale; the finer kind labels it when both show.
                if (!view.linearMagnitude)
                    left.push_back(DbScale(view, geometry, entry));
                else if (left.empty() || entry.kind == Mag1dB)
                    left.assign(1, LinearScale(view, geometry, entry));
                break;
            case PhaseTrace: right.push_back(PhaseScale(view, geometry, entry)); break;
            case GroupDelayTrace: right.push_back(DelayScale(view, geometry, entry)); break;
            default: break;
        }
    }

    // Horizontal lines follow the magnitude scale: every division of the dB scales, the round
    // gains of the linear one.
    std::vector<int> horizontal;
    if (view.linearMagnitude && !left.empty()) {
        for (const Label& label : left.front().labels) horizontal.push_back(label.position);
    } else {
        for (int k = 1; k < Divisions; ++k)
            horizontal.push_back(geometry.top +
                                 PixelOf(static_cast<double>(k) * geometry.height / Divisions));
    }

    if (axis.Valid()) DrawForbiddenRegions(canvas, view, geometry, entries, axis);
    DrawGridLines(canvas, geometry, vertical, horizontal);
    DrawAxisRow(canvas, view, geometry, frequencyLabels, 0, AxisTextColour);
    if (PulseShown(view))
        DrawAxisRow(canvas, view, geometry, TimeLabels(canvas, view, geometry), 1, PulseAxisColour);
    for (std::size_t i = 0; i < left.size(); ++i)
        DrawScale(canvas, view, geometry, left[i], true, static_cast<int>(i));
    for (std::size_t i = 0; i < right.size(); ++i)
        DrawScale(canvas, view, geometry, right[i], false, static_cast<int>(i));
    DrawLegend(canvas, view, geometry, entries, current, reference);
}

void DrawEntries(Canvas& canvas, const PlotGeometry& geometry, const PlotView& view,
                 const std::vector<PlotEntry>& entries, const Traces& traces, bool isReference) {
    for (const PlotEntry& entry : entries) {
        if (!HasTrace(traces, entry)) continue;
        DrawTrace(canvas, geometry, view, traces.*entry.values, isReference,
                  isReference ? entry.reference : entry.current, entry.kind);
    }
}

}  // namespace

PlotGeometry GeometryFor(const PlotView& view) {
    const int left = EdgeGap + std::max(MinSideMargin, LeftColumns(view) * ScaleColumnWidth);
    const int right = EdgeGap + std::max(MinSideMargin, RightColumns(view) * ScaleColumnWidth);
    const int rows = PulseShown(view) ? 3 : 2;  // frequency, time, legend
    const int bottom = TickLength + LabelGap + rows * LineHeight + 4 + EdgeGap;
    PlotGeometry geometry;
    geometry.left = left;
    geometry.top = TopMargin;
    geometry.width = std::max(1, view.width - left - right);
    geometry.height = std::max(1, view.height - TopMargin - bottom);
    return geometry;
}

void DrawTrace(Canvas& canvas, const PlotGeometry& geometry, const PlotView& view,
               std::span<const double> values, bool isReference, Rgb colour, int kind) {
    const std::size_t n = values.size();
    if (n == 0) return;
    const int topY = geometry.top;
    const int bottomY = geometry.Bottom();
    const int highestY = kind == Mag1dB ? topY - Mag1dBRise : topY;
    const auto xAt = [&](std::size_t i) {
        return geometry.left +
               PixelOf(static_cast<double>(i) * geometry.width / static_cast<double>(n));
    };

    PenStyle pen = PenStyle::Solid;
    canvas.SetPen(colour, 1, pen);
    int lastX = xAt(0);
    int lastY = std::clamp(TraceY(geometry, view, values[0], kind), topY, bottomY);
    canvas.MoveTo(lastX, lastY);
    for (std::size_t i = 1; i < n; ++i) {
        const int x = xAt(i);
        const int y = std::clamp(TraceY(geometry, view, values[i], kind), highestY, bottomY);
        PenStyle style = PenStyle::Solid;
        if (isReference) {
            if (std::hypot(x - lastX, y - lastY) < ShortReferenceStep)
                style = (i / 4) % 2 == 1 ? PenStyle::Solid : PenStyle::Clear;
            else
                style = PenStyle::Dash;
        }
        if (SkipsNoPlotValues(kind)) {
            if (values[i] == NoPlotValue) style = PenStyle::Clear;
            if (values[i - 1] == NoPlotValue) canvas.MoveTo(x, y);
        }
        if (style != pen) {
            pen = style;
            canvas.SetPen(colour, 1, pen);
        }
        canvas.LineTo(x, y);
        lastX = x;
        lastY = y;
    }
}

void DrawEnvelope(Canvas& canvas, const PlotGeometry& geometry, const PlotView& view,
                  const TraceEnvelope& envelope) {
    const std::size_t n = TracePoints;
    const auto xAt = [&](std::size_t i) {
        return geometry.left +
               PixelOf(static_cast<double>(i) * geometry.width / static_cast<double>(n));
    };
    for (const PlotEntry& entry : ShownEntries(view)) {
        if (entry.kind == PulseTrace) continue;
        const auto& low = envelope.low.*entry.values;
        const auto& high = envelope.high.*entry.values;
        // A quarter of the trace's colour on the background.
        const auto tint = [](std::uint8_t c, std::uint8_t b) {
            return static_cast<std::uint8_t>((c + 3 * b) / 4);
        };
        const Rgb band{tint(entry.current.r, PlotBackground.r),
                       tint(entry.current.g, PlotBackground.g),
                       tint(entry.current.b, PlotBackground.b)};
        const int highestY = entry.kind == Mag1dB ? geometry.top - Mag1dBRise : geometry.top;
        const auto y = [&](double v) {
            return std::clamp(TraceY(geometry, view, v, entry.kind), highestY, geometry.Bottom());
        };
        for (std::size_t i = 0; i + 1 < n; ++i) {
            const bool undrawn = SkipsNoPlotValues(entry.kind) &&
                                 (low[i] == NoPlotValue || low[i + 1] == NoPlotValue);
            if (undrawn) continue;
            // Each step spans its two points, so the band has no gaps where the trace is steep.
            const int top = std::min(y(high[i]), y(high[i + 1]));
            const int bottom = std::max(y(low[i]), y(low[i + 1]));
            canvas.FillBehind(xAt(i), top, std::max(xAt(i + 1), xAt(i) + 1), bottom + 1, band,
                              PlotBackground);
        }
    }
}

void DrawPlotFrame(Canvas& canvas, const PlotView& view, const Traces& current,
                   const Traces* reference) {
    DrawFrame(canvas, view, GeometryFor(view), ShownEntries(view), current,
              view.showReference ? reference : nullptr);
}

void DrawPlotTraces(Canvas& canvas, const PlotGeometry& geometry, const PlotView& view,
                    const Traces& current, const Traces* reference) {
    const std::vector<PlotEntry> entries = ShownEntries(view);
    DrawEntries(canvas, geometry, view, entries, current, false);
    if (view.showReference && reference != nullptr)
        DrawEntries(canvas, geometry, view, entries, *reference, true);
}

void DrawPlot(Canvas& canvas, const PlotView& view, const Traces& current, const Traces* reference,
              bool drawGrid) {
    if (drawGrid) DrawPlotFrame(canvas, view, current, reference);
    DrawPlotTraces(canvas, GeometryFor(view), view, current, reference);
}

}  // namespace nerivane
