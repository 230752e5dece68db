// The plot as the command line writes it: every run of the calculation is drawn (the first
// with the grid, worst-case runs over it) on a picture of the chosen size saved as PNG or BMP,
// or on a vector page of that size saved as SVG or PDF, by the file name's ending.
#pragma once

#include <memory>
#include <string>

#include "app/Vectorplotfile.h"
#include "cli/Applyoptions.h"
#include "response/Plot.h"
#include "response/Raster.h"

namespace nerivane::cli {

class PlotOutput {
  public:
    // Throws std::runtime_error when the picture renderer (needed for PNG, BMP and PDF) cannot
    // be opened or the vector page has no temporary file.
    PlotOutput(ImageSize size, const std::string& path);

    void DrawRun(const PlotView& view, const Traces& traces, bool withGrid);
    // Behind the runs drawn.
    void DrawEnvelope(const PlotView& view, const TraceEnvelope& envelope);
    // Throws std::runtime_error naming the file when it cannot be written.
    void Save() const;

  private:
    // Calls draw with a canvas over the picture or the vector page.
    template <typename Draw>
    void OnCanvas(Draw draw);

    std::string path_;
    std::unique_ptr<Raster> raster_;
    std::unique_ptr<VectorPlotFile> vector_;
};

}  // namespace nerivane::cli
