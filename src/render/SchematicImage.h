// A schematic as a picture or a file: painted through QtCanvas into an image with smooth
// strokes, or written as SVG or PNG by the file name's ending.
#pragma once

#include <QImage>
#include <string>

#include "response/Schematic.h"

namespace nerivane {

QImage RenderSchematic(const Schematic& schematic, qreal devicePixelRatio = 1.0);

// The SVG document of the schematic.
std::string SchematicSvg(const Schematic& schematic);

// True when the name ends in .svg or .png (in any letter case).
bool IsSchematicFileName(const std::string& path);

// Writes path as SVG (".svg") or PNG (".png", drawn at twice the size for print); throws
// std::runtime_error naming the file when it cannot be written or the ending is neither.
void SaveSchematic(const Schematic& schematic, const std::string& path);

}  // namespace nerivane
