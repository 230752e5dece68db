#include "app/Vectorplotfile.h"

#include <stdexcept>

#include "app/Picturefiles.h"
#include "files/Atomicwrite.h"

namespace nerivane {

VectorPlotFile::VectorPlotFile(int width, int height)
    : width_(width),
      height_(height),
      measure_(width, height, [](std::string_view) {}),
      recording_(measure_) {}

void VectorPlotFile::Save(const std::string& path, const PdfPageMaker& makePdf) const {
    const bool pdf = IsPdfFileName(path);
    std::string reason;
    const bool written = WriteFileAtomically(
        path,
        [&](const PieceWriter& write) {
            if (pdf) {
                const std::unique_ptr<PdfPage> page = makePdf(width_, height_, write);
                recording_.Replay(page->Painter());
                page->Finish();
            } else {
                SvgCanvas svg(width_, height_, write, SvgStrokes::OnPixels);
                recording_.Replay(svg);
                svg.Finish();
            }
        },
        &reason);
    if (!written)
        throw std::runtime_error("Cannot write the image file \"" + path + "\": " + reason + ".");
}

}  // namespace nerivane
