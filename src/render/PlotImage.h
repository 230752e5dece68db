// The plot as a picture: an image of the view's size painted through QtCanvas, shared by the
// window (which shows it) and the command line (which saves it), so both show the same plot.
#pragma once

#include <QImage>

#include "response/Plot.h"
#include "response/Traces.h"

namespace nerivane {

// A blank image for the view: view.width by view.height in logical pixels, times the device
// pixel ratio in real ones.
QImage NewPlotImage(const PlotView& view, qreal devicePixelRatio = 1.0);

// Paints the plot on the image as DrawPlot does. A worst-case analysis paints its first run
// with drawGrid and the later runs over it without.
void PaintPlot(QImage& image, const PlotView& view, const Traces& current, const Traces* reference,
               bool drawGrid);

// Puts the envelope of a worst-case analysis behind the runs already painted on the image.
void PaintEnvelope(QImage& image, const PlotView& view, const TraceEnvelope& envelope);

// A new image with the whole plot: grid, labels, legend and traces.
QImage RenderPlot(const PlotView& view, const Traces& current, const Traces* reference,
                  qreal devicePixelRatio = 1.0);

}  // namespace nerivane
