#include "render/PlotImage.h"

#include <cmath>

#include "render/QtCanvas.h"
#include "render/QtRaster.h"

namespace nerivane {

QImage NewPlotImage(const PlotView& view, qreal devicePixelRatio) {
    return NewImage({view.width, view.height, devicePixelRatio, PlotBackground});
}

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
    const PlotGeometry logical = GeometryFor(view);
    const auto device = [ratio](int value) { return static_cast<int>(std::lround(value * ratio)); };
    const PlotGeometry geometry{device(logical.left), device(logical.top), device(logical.width),
                                device(logical.height)};
    image.setDevicePixelRatio(1.0);
    {
        QtCanvas traces(image, static_cast<int>(std::lround(ratio)));
        DrawPlotTraces(traces, geometry, view, current, reference);
    }
    image.setDevicePixelRatio(ratio);
}

QImage RenderPlot(const PlotView& view, const Traces& current, const Traces* reference,
                  qreal devicePixelRatio) {
    QImage image = NewPlotImage(view, devicePixelRatio);
    PaintPlot(image, view, current, reference, true);
    return image;
}

}  // namespace nerivane
