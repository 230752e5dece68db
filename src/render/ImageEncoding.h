// The plot's picture as an image file's bytes: PNG as painted, and the 24-bit BMP export, which
// turns the plot's grey background white so that the picture prints on white paper.
#pragma once

#include <QImage>
#include <string>

#include "response/Raster.h"

namespace nerivane {

// A 24-bit copy of the image in which every pixel of exactly the plot background becomes
// white; every other pixel, a near-grey included, is kept as it is.
QImage WithWhiteBackground(const QImage& image);

// Empty when the image could not be encoded.
std::string EncodeImage(const QImage& image, ImageFormat format);

}  // namespace nerivane
