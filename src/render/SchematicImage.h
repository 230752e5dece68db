// A schematic as a picture for the screen: painted through QtCanvas into an image with smooth
// strokes. Schematic files are written by the picture files unit.
#pragma once

#include <QImage>

#include "response/Schematic.h"

namespace nerivane {

QImage RenderSchematic(const Schematic& schematic, qreal devicePixelRatio = 1.0);

}  // namespace nerivane
