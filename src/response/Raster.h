// A picture painted through Canvas and encoded as an image file's bytes, or a PDF page. The
// render layer makes them with QtGui; the command line opens that maker only when a picture is
// asked for, so a run that writes none starts without loading Qt.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "response/Canvas.h"

namespace nerivane {

// BMP is for printing: exactly the plot's grey background turns white.
enum class ImageFormat { Png, Bmp };

struct RasterSpec {
    int width = 0;  // logical pixels
    int height = 0;
    // Real pixels per logical one: 2 draws everything twice as large, crisp on paper.
    double pixelRatio = 1.0;
    Rgb background;
    // Antialiased strokes for the schematics; the plot keeps every line on its pixels.
    bool smoothLines = false;
};

class Raster {
  public:
    virtual ~Raster() = default;
    // A canvas over the picture; what it painted stays when it is destroyed.
    virtual std::unique_ptr<Canvas> NewCanvas() = 0;
    // The file's bytes, empty when the picture could not be encoded.
    virtual std::string Encode(ImageFormat format) const = 0;
};

using RasterMaker = std::function<std::unique_ptr<Raster>(const RasterSpec&)>;

// One page of a PDF file, width by height points, painted through Canvas with a point for
// each of a picture's pixels; the file's bytes go to the writer as they are made.
class PdfPage {
  public:
    virtual ~PdfPage() = default;
    virtual Canvas& Painter() = 0;
    // Ends the page and the file.
    virtual void Finish() = 0;
};

using PdfWriter = std::function<void(std::string_view piece)>;
// Throws std::runtime_error when no page can be made.
using PdfPageMaker =
    std::function<std::unique_ptr<PdfPage>(int width, int height, const PdfWriter& write)>;

}  // namespace nerivane
