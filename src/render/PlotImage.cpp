#include "render/PlotImage.h"

#include <cmath>

#include "render/QtCanvas.h"
#include "render/QtRaster.h"

namespace nerivane {

QImage NewPlotImage(const PlotView& view, qreal devicePixelRatio) {
    return NewImage({view.width, view.height, devicePixelRatio, PlotBackground});
}

namespace {

// Draws with a canvas and the plot's rectangle in the image's real pixels, as the traces are
// drawn.
template <typename Draw>
void InDevicePixels(QImage& image, const PlotView& view, Draw draw) {
    const qreal ratio = image.devicePixelRatio();
    const PlotGeometry logical = GeometryFor(view);
    const auto device = [ratio](int value) { return static_cast<int>(std::lround(value * ratio)); };
    const PlotGeometry geometry{device(logical.left), device(logical.top), device(logical.width),
                                device(logical.height)};
    image.setDevicePixelRatio(1.0);
    {
        QtCanvas canvas(image, static_cast<int>(std::lround(ratio)));
        draw(canvas, geometry);
    }
    image.setDevicePixelRatio(ratio);
}

}  // namespace

void PaintPlot(QImage& image, const PlotView& view, const Traces& current, const Traces* reference,
               bool drawGrid) {
    const qreal ratio = image.devicePixelRatio();
    if (ratio == 1.0) {
        QtCanvas canvas(image);
        DrawPlot(canvas, view, current, reference, drawGrid);
        return;
    }
    // A dense screen: labels and grid in logical pixels, the traces in device pixels, so a
    // curve steps at the screen's resolution rather than at the logical one.
    if (drawGrid) {
        QtCanvas frame(image);
        DrawPlotFrame(frame, view, current, reference);
    }
    InDevicePixels(image, view, [&](QtCanvas& traces, const PlotGeometry& geometry) {
        DrawPlotTraces(traces, geometry, view, current, reference);
    });
}

void PaintEnvelope(QImage& image, const PlotView& view, const TraceEnvelope& envelope) {
    InDevicePixels(image, view, [&](QtCanvas& canvas, const PlotGeometry& geometry) {
        DrawEnvelope(canvas, geometry, view, envelope);
    });
}

QImage RenderPlot(const PlotView& view, const Traces& current, const Traces* reference,
                  qreal devicePixelRatio) {
    QImage image = NewPlotImage(view, devicePixelRatio);
    PaintPlot(image, view, current, reference, true);
    return image;
}

}  // namespace nerivane
