#include "cli/Plotoutput.h"

#include <QImage>
#include <stdexcept>

#include "render/ImageFiles.h"
#include "render/OffscreenGui.h"
#include "render/PlotImage.h"

namespace nerivane::cli {

struct PlotOutput::Image {
    QImage picture;
};

PlotOutput::PlotOutput(ImageSize size) : image_(std::make_unique<Image>()) {
    // Labels need a GUI application; the command line runs on the offscreen platform.
    EnsureGuiApplication();
    PlotView view;
    view.width = size.width;
    view.height = size.height;
    image_->picture = NewPlotImage(view);
}

PlotOutput::~PlotOutput() = default;

void PlotOutput::DrawRun(const PlotView& view, const Traces& traces, bool withGrid) {
    PaintPlot(image_->picture, view, traces, nullptr, withGrid);
}

void PlotOutput::Save(const std::string& path) const {
    const bool bitmap = path.size() >= 4 && (path.ends_with(".bmp") || path.ends_with(".BMP"));
    if (bitmap) {
        SaveBmp(image_->picture, path);
    } else {
        SavePng(image_->picture, path);
    }
}

}  // namespace nerivane::cli
