// The entry point of the raster plugin, the one symbol the command line looks up after opening
// it. A plain C name, so the lookup does not depend on the compiler's name mangling.
#include "render/QtRaster.h"

extern "C" __attribute__((visibility("default"))) nerivane::Raster* NerivaneMakeRaster(
    const nerivane::RasterSpec* spec) {
    return nerivane::MakeQtRaster(*spec).release();
}
