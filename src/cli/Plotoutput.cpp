#include "cli/Plotoutput.h"

#include "app/Picturefiles.h"
#include "cli/Rasterplugin.h"

namespace nerivane::cli {

PlotOutput::PlotOutput(ImageSize size)
    : raster_(MakePluginRaster({size.width, size.height, 1.0, PlotBackground})) {}

void PlotOutput::DrawRun(const PlotView& view, const Traces& traces, bool withGrid) {
    DrawPlot(*raster_->NewCanvas(), view, traces, nullptr, withGrid);
}

void PlotOutput::DrawEnvelope(const PlotView& view, const TraceEnvelope& envelope) {
    nerivane::DrawEnvelope(*raster_->NewCanvas(), GeometryFor(view), view, envelope);
}

void PlotOutput::Save(const std::string& path) const {
    WritePictureFile(path, raster_->Encode(PlotFileFormat(path)));
}

}  // namespace nerivane::cli
