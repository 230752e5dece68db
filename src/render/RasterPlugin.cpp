// The entry points of the raster plugin, the symbols the command line looks up after opening
// it. Plain C names, so the lookup does not depend on the compiler's name mangling.
#include "render/PdfPage.h"
#include "render/QtRaster.h"

#include <exception>

extern "C" __attribute__((visibility("default"))) nerivane::Raster* NerivaneMakeRaster(
    const nerivane::RasterSpec* spec) {
    return nerivane::MakeQtRaster(*spec).release();
}

// Null when the page cannot be made: no exception crosses the plain interface.
extern "C" __attribute__((visibility("default"))) nerivane::PdfPage* NerivaneMakePdfPage(
    int width, int height, const nerivane::PdfWriter* write) {
    try {
        return nerivane::MakeQtPdfPage(width, height, *write).release();
    } catch (const std::exception&) {
        return nullptr;
    }
}
