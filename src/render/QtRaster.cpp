#include "render/QtRaster.h"

#include <QImage>
#include <cmath>

#include "render/ImageEncoding.h"
#include "render/OffscreenGui.h"
#include "render/QtCanvas.h"

namespace nerivane {
namespace {

class QtRaster final : public Raster {
  public:
    explicit QtRaster(const RasterSpec& spec)
        : image_(NewImage(spec)), smoothLines_(spec.smoothLines) {}
    std::unique_ptr<Canvas> NewCanvas() override {
        return std::make_unique<QtCanvas>(image_, 1, smoothLines_);
    }
    std::string Encode(ImageFormat format) const override { return EncodeImage(image_, format); }

  private:
    QImage image_;
    bool smoothLines_;
};

}  // namespace

QImage NewImage(const RasterSpec& spec) {
    // RGB32 is the format the raster painter draws fastest and the BMP export converts from.
    QImage image(static_cast<int>(std::lround(spec.width * spec.pixelRatio)),
                 static_cast<int>(std::lround(spec.height * spec.pixelRatio)),
                 QImage::Format_RGB32);
    image.setDevicePixelRatio(spec.pixelRatio);
    image.fill(QColor(spec.background.r, spec.background.g, spec.background.b));
    return image;
}

std::unique_ptr<Raster> MakeQtRaster(const RasterSpec& spec) {
    EnsureGuiApplication();
    return std::make_unique<QtRaster>(spec);
}

}  // namespace nerivane
