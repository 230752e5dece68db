#include "gui/PlotPanel.h"

#include "render/PlotImage.h"
#include "response/Readout.h"

namespace nerivane {

void PlotPanel::PaintRun(int run, const PlotView& view, const Traces& traces,
                         const Traces* reference) {
    if (run == 0) {
        view_ = view;
        image_ = NewPlotImage(view_, box_.devicePixelRatioF());
    }
    PaintPlot(image_, view_, traces, reference, run == 0);
}

void PlotPanel::PaintEnvelope(const TraceEnvelope& envelope) {
    nerivane::PaintEnvelope(image_, view_, envelope);
}

void PlotPanel::Show() {
    box_.SetImage(std::move(image_));
}

void PlotPanel::ShowReadout(const Traces* traces, ReadOutMode mode) {
    if (!pointer_ || traces == nullptr) {
        box_.SetReadout(QString(), 0, 0);
        return;
    }
    const PlotGeometry geometry = GeometryFor(view_);
    const std::optional<std::string> text =
        ReadoutText(view_, geometry, *traces, pointer_->x(), pointer_->y(),
                    mode == ReadOutMode::GraphPosition ? ReadoutMode::GraphPosition
                                                       : ReadoutMode::ValueAtFrequency);
    box_.SetReadout(text ? QString::fromStdString(*text) : QString(), geometry.left, geometry.top);
}

}  // namespace nerivane
