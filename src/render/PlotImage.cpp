#include "render/PlotImage.h"

#include <cmath>

#include "render/QtCanvas.h"

namespace nerivane {

QImage NewPlotImage(const PlotView& view, qreal devicePixelRatio) {
    // RGB32 is the format the raster painter draws fastest and the BMP export converts from.
    QImage image(static_cast<int>(std::lround(view.width * devicePixelRatio)),
                 static_cast<int>(std::lround(view.height * devicePixelRatio)),
                 QImage::Format_RGB32);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(QColor(PlotBackground.r, PlotBackground.g, PlotBackground.b));
    return image;
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
