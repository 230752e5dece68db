#include "cli/Plotoutput.h"

#include <QImage>
#include <QString>
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

namespace {

bool EndsWith(const std::string& path, const char* ending) {
    const std::string lower = QString::fromStdString(path).toLower().toStdString();
    return lower.ends_with(ending);
}

}  // namespace

bool IsPlotFileName(const std::string& path) {
    return EndsWith(path, ".png") || EndsWith(path, ".bmp");
}

void PlotOutput::Save(const std::string& path) const {
    if (EndsWith(path, ".bmp")) {
        SaveBmp(image_->picture, path);
    } else {
        SavePng(image_->picture, path);
    }
}

}  // namespace nerivane::cli
