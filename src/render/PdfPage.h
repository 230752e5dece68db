// A PDF page made with QtGui's PDF writer and painted through QtCanvas: the plot as a vector
// file has the picture's text, font and colours, with a point for each of its pixels. The
// window links it directly; the command line reaches it through the raster plugin.
#pragma once

#include <memory>

#include "response/Raster.h"

namespace nerivane {

// Creates the offscreen GUI application text needs when no window made one. Throws
// std::runtime_error when the PDF writer cannot paint.
std::unique_ptr<PdfPage> MakeQtPdfPage(int width, int height, const PdfWriter& write);

}  // namespace nerivane
