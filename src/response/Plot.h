// The plot: the traces of the current design (and of the reference, dashed) in their fixed
// order, colours and scales over a grid with frequency, dB, phase and delay labels and a
// legend, all drawn through a Canvas so the window, the command line and the tests share it.
#pragma once

#include <span>

#include "circuit/Circuitanalysis.h"
#include "response/Canvas.h"
#include "response/Requirementmask.h"
#include "response/Traceenvelope.h"
#include "response/Traces.h"

namespace nerivane {

// The background of the plot image.
inline constexpr Rgb PlotBackground{245, 245, 245};

// The pixel size of the label font that the plot's margins are sized for; a canvas should
// draw its text at this size.
inline constexpr int PlotFontPixels = 12;

// Which trace a line is, for its vertical scale: 0 Mag 1 dB, 1 Mag 10 dB, 2 phase, 3 group
// delay, 4 square pulse (5 is drawn like 4).
enum TraceKind : int {
    Mag1dB = 0,
    Mag10dB = 1,
    PhaseTrace = 2,
    GroupDelayTrace = 3,
    PulseTrace = 4
};

// The plot rectangle in pixels of the image.
struct PlotGeometry {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    int Bottom() const { return top + height; }
};

// What to draw and on which scales.
struct PlotView {
    int width = 800;  // the image, pixels
    int height = 500;
    Sweep sweepIndex = Sweep::OneDecade;  // 0 linear, 1..5 logarithmic
    double freqMin = 500.0;               // Hz, the sweep (for the frequency axis)
    double freqMax = 50000.0;
    std::span<const double> frequencies;  // the traces' points
    double topDb = 10.0;                  // dB at the top edge of the 10 dB scale
    double groupDelayScale = 1e-3;        // seconds at the top edge of the delay scale
    double pulseTimeStep = 0.0;           // seconds per pulse point
    bool showMag10 = true;
    bool showMag1 = false;
    bool showPhase = false;
    bool showGroupDelay = false;
    bool showPulse = false;
    bool showReference = false;
    bool phaseEnabled = true;  // the check boxes' enabled states
    bool groupDelayEnabled = true;
    bool pulseEnabled = true;
    bool linearMagnitude = false;  // "Linear Mag": both magnitude boxes draw 9 |H| - 9
    bool hilbertPhase = false;     // "Hilbert Phase": the phase box draws the delay-free phase
    // The requirement's forbidden regions, shaded on the magnitude scale (the 10 dB one when
    // both show), its attenuation counted down from maskReferenceDb.
    const RequirementMask* mask = nullptr;
    double maskReferenceDb = 0.0;
};

// The plot rectangle for an image of the view's size, leaving room for the labels of the
// scales the view shows.
PlotGeometry GeometryFor(const PlotView& view);

// One trace, in the given colour; reference traces are dashed; NoPlotValue points are not
// drawn (phase and delay kinds).
void DrawTrace(Canvas& canvas, const PlotGeometry& geometry, const PlotView& view,
               std::span<const double> values, bool isReference, Rgb colour, int kind);

// Background, grid, axes, labels and legend (drawGrid), then the current design's traces and,
// when shown, the reference's. A worst-case analysis draws run 0 with the grid and the later
// runs over it without.
void DrawPlot(Canvas& canvas, const PlotView& view, const Traces& current, const Traces* reference,
              bool drawGrid);

// The band between each shown trace's lowest and highest values over the runs, in a light tint
// of the trace's colour, put behind the runs already drawn (the pulse has no envelope).
void DrawEnvelope(Canvas& canvas, const PlotGeometry& geometry, const PlotView& view,
                  const TraceEnvelope& envelope);

// The two halves of DrawPlot, for a canvas that draws the traces at a finer resolution than
// the labels (a dense screen): the frame in the view's pixels, the traces in the given
// rectangle's.
void DrawPlotFrame(Canvas& canvas, const PlotView& view, const Traces& current,
                   const Traces* reference);
void DrawPlotTraces(Canvas& canvas, const PlotGeometry& geometry, const PlotView& view,
                    const Traces& current, const Traces* reference);

}  // namespace nerivane
