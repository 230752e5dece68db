// The plot as the main window shows it: each run of a calculation painted into one picture as
// it finishes (the first with the grid and the reference), the picture handed to the plot box
// when the calculation is done, and the read-out under the pointer.
#pragma once

#include <QImage>
#include <QPoint>
#include <optional>

#include "app/DesignState.h"
#include "gui/PlotBox.h"
#include "response/Plot.h"
#include "response/Traces.h"

namespace nerivane {

class PlotPanel {
  public:
    explicit PlotPanel(PlotBox& box) : box_(box) {}

    // Run 0 starts a new picture for view; later runs are painted over it in the same view.
    void PaintRun(int run, const PlotView& view, const Traces& traces, const Traces* reference);
    // Puts a worst-case analysis's envelope behind the runs painted.
    void PaintEnvelope(const TraceEnvelope& envelope);
    // Hands the painted picture to the plot box.
    void Show();
    const PlotView& View() const { return view_; }

    // Where the pointer is over the plot, or nothing once it has left.
    void SetPointer(std::optional<QPoint> pointer) { pointer_ = pointer; }
    // The read-out of traces at the pointer, or none before the first calculation.
    void ShowReadout(const Traces* traces, ReadOutMode mode);

  private:
    PlotBox& box_;
    PlotView view_;  // of the picture on screen, for the read-out
    QImage image_;   // painted run by run, then handed to the plot box
    std::optional<QPoint> pointer_;
};

}  // namespace nerivane
