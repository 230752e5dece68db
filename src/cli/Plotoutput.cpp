#include "cli/Plotoutput.h"

#include "app/Picturefiles.h"
#include "cli/Rasterplugin.h"

namespace nerivane::cli {

PlotOutput::PlotOutput(ImageSize size, const std::string& path) : path_(path) {
    if (!IsVectorPlotFileName(path)) {
        raster_ = MakePluginRaster({size.width, size.height, 1.0, PlotBackground});
        return;
    }
    // Opened now, so a missing renderer is said before the calculation runs.
    if (IsPdfFileName(path)) LoadRasterPlugin();
    vector_ = std::make_unique<VectorPlotFile>(size.width, size.height);
}

template <typename Draw>
void PlotOutput::OnCanvas(Draw draw) {
    if (vector_) return draw(vector_->Drawing());
    draw(*raster_->NewCanvas());
}

void PlotOutput::DrawRun(const PlotView& view, const Traces& traces, bool withGrid) {
    OnCanvas([&](Canvas& canvas) { DrawPlot(canvas, view, traces, nullptr, withGrid); });
}

void PlotOutput::DrawEnvelope(const PlotView& view, const TraceEnvelope& envelope) {
    OnCanvas(
        [&](Canvas& canvas) { nerivane::DrawEnvelope(canvas, GeometryFor(view), view, envelope); });
}

void PlotOutput::Save() const {
    if (vector_) return vector_->Save(path_, MakePluginPdfPage);
    WritePictureFile(path_, raster_->Encode(PlotFileFormat(path_)));
}

}  // namespace nerivane::cli
