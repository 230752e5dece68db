// The command line's way to the raster: the plugin is opened on the first picture asked for,
// so a run that draws none starts without loading Qt.
#pragma once

#include <memory>

#include "response/Raster.h"

namespace nerivane::cli {

// Throws std::runtime_error saying where the plugin was looked for when it cannot be opened.
std::unique_ptr<Raster> MakePluginRaster(const RasterSpec& spec);

}  // namespace nerivane::cli
