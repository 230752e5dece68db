// The command line's way to the raster: the plugin is opened on the first picture (or PDF)
// asked for, so a run that draws none starts without loading Qt.
#pragma once

#include <memory>

#include "response/Raster.h"

namespace nerivane::cli {

// Opens the plugin once; throws std::runtime_error saying where it was looked for when it
// cannot be opened.
void LoadRasterPlugin();

// Both throw std::runtime_error as LoadRasterPlugin does.
std::unique_ptr<Raster> MakePluginRaster(const RasterSpec& spec);
// Also when the page cannot be made.
std::unique_ptr<PdfPage> MakePluginPdfPage(int width, int height, const PdfWriter& write);

}  // namespace nerivane::cli
