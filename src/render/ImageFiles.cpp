#include "render/ImageFiles.h"

#include <QBuffer>
#include <QByteArray>
#include <stdexcept>

#include "files/Atomicwrite.h"
#include "response/Plot.h"

namespace nerivane {
namespace {

// Encoded first, then written through the atomic writer: a failed write leaves the file that
// was there.
void Save(const QImage& image, const std::string& path, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    std::string reason = "the image could not be encoded";
    if (!image.save(&buffer, format) ||
        !WriteFileAtomically(path, std::string_view(bytes.constData(), bytes.size()), &reason))
        throw std::runtime_error("Cannot write the image file \"" + path + "\": " + reason + ".");
}

}  // namespace

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

void SavePng(const QImage& image, const std::string& path) {
    Save(image, path, "PNG");
}

void SaveBmp(const QImage& image, const std::string& path) {
    Save(WithWhiteBackground(image), path, "BMP");
}

}  // namespace nerivane
