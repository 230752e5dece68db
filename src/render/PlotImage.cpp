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
    QtCanvas canvas(image);
    DrawPlot(canvas, view, current, reference, drawGrid);
}

QImage RenderPlot(const PlotView& view, const Traces& current, const Traces* reference,
                  qreal devicePixelRatio) {
    QImage image = NewPlotImage(view, devicePixelRatio);
    PaintPlot(image, view, current, reference, true);
    return image;
}

}  // namespace nerivane
