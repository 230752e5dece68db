// The plot as the command line writes it: a picture of the chosen size on which every run of
// the calculation is drawn (the first with the grid, worst-case runs over it), saved as PNG
// or BMP by the file name's ending.
#pragma once

#include <memory>
#include <string>

#include "cli/Applyoptions.h"
#include "response/Plot.h"
#include "response/Raster.h"

namespace nerivane::cli {

class PlotOutput {
  public:
    // Throws std::runtime_error when the picture renderer cannot be opened.
    explicit PlotOutput(ImageSize size);

    void DrawRun(const PlotView& view, const Traces& traces, bool withGrid);
    // Behind the runs drawn.
    void DrawEnvelope(const PlotView& view, const TraceEnvelope& envelope);
    // Throws std::runtime_error naming the file when it cannot be written.
    void Save(const std::string& path) const;

  private:
    std::unique_ptr<Raster> raster_;
};

}  // namespace nerivane::cli
