// The raster the core paints pictures on, made with QtGui: a QImage painted through QtCanvas.
// The window links it directly; the command line reaches it through the raster plugin.
#pragma once

#include <QImage>
#include <memory>

#include "response/Raster.h"

namespace nerivane {

// An image of the spec's size and pixel ratio, filled with its background.
QImage NewImage(const RasterSpec& spec);

// Creates the offscreen GUI application text needs when no window made one.
std::unique_ptr<Raster> MakeQtRaster(const RasterSpec& spec);

}  // namespace nerivane
