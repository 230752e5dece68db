// The plot saved as an image file: PNG as painted, and the 24-bit BMP export, which turns the
// plot's grey background white so that the picture prints on white paper.
#pragma once

#include <QImage>
#include <string>

namespace nerivane {

// A 24-bit copy of the image in which every pixel of exactly the plot background becomes
// white; every other pixel, a near-grey included, is kept as it is.
QImage WithWhiteBackground(const QImage& image);

// Both throw std::runtime_error naming the file when it cannot be written; the path is UTF-8.
void SavePng(const QImage& image, const std::string& path);
void SaveBmp(const QImage& image, const std::string& path);

}  // namespace nerivane
