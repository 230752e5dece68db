#include "render/ImageEncoding.h"

#include <QBuffer>
#include <QByteArray>

#include "response/Plot.h"

namespace nerivane {

QImage WithWhiteBackground(const QImage& image) {
    QImage copy = image.convertToFormat(QImage::Format_RGB888);
    for (int y = 0; y < copy.height(); ++y) {
        uchar* pixel = copy.scanLine(y);
        for (int x = 0; x < copy.width(); ++x, pixel += 3)
            if (pixel[0] == PlotBackground.r && pixel[1] == PlotBackground.g &&
                pixel[2] == PlotBackground.b)
                pixel[0] = pixel[1] = pixel[2] = 255;
    }
    return copy;
}

std::string EncodeImage(const QImage& image, ImageFormat format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    const bool encoded = format == ImageFormat::Bmp
                             ? WithWhiteBackground(image).save(&buffer, "BMP")
                             : image.save(&buffer, "PNG");
    if (!encoded) return {};
    return std::string(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

}  // namespace nerivane
