// The plot and the schematics as files: the name's ending chooses the format (PNG, BMP, SVG or
// PDF for the plot, SVG or PNG for a schematic), pictures are painted on a raster the front end
// makes, and every file is written whole or not at all.
#pragma once

#include <string>
#include <string_view>

#include "response/Raster.h"
#include "response/Schematic.h"

namespace nerivane {

// Endings in any letter case. A plot is a picture (PNG, BMP) or a vector file (SVG, PDF).
bool IsPlotFileName(const std::string& path);
bool IsVectorPlotFileName(const std::string& path);
bool IsPdfFileName(const std::string& path);
bool IsSchematicFileName(const std::string& path);
// The format a plot picture's ending asks for.
ImageFormat PlotFileFormat(const std::string& path);

// Throws std::runtime_error naming the file when it cannot be written (or the picture could
// not be encoded: empty bytes).
void WritePictureFile(const std::string& path, std::string_view bytes);

std::string SchematicSvg(const Schematic& schematic);

// SVG as vector elements, PNG drawn at twice the size for print; throws std::runtime_error
// naming the file when it cannot be written or the ending is neither.
void SaveSchematic(const Schematic& schematic, const std::string& path,
                   const RasterMaker& makeRaster);

}  // namespace nerivane
