// The plot as the command line writes it: an image of the chosen size on which every run of
// the calculation is drawn (the first with the grid, worst-case runs over it), saved as PNG
// or BMP by the file name's ending.
#pragma once

#include <memory>
#include <string>

#include "cli/Applyoptions.h"
#include "response/Plot.h"

namespace nerivane::cli {

// True when the name ends in .png or .bmp (in any letter case): the formats the plot is
// written in.
bool IsPlotFileName(const std::string& path);

class PlotOutput {
  public:
    explicit PlotOutput(ImageSize size);
    ~PlotOutput();
    PlotOutput(const PlotOutput&) = delete;
    PlotOutput& operator=(const PlotOutput&) = delete;

    void DrawRun(const PlotView& view, const Traces& traces, bool withGrid);
    // Throws std::runtime_error naming the file when it cannot be written.
    void Save(const std::string& path) const;

  private:
    struct Image;
    std::unique_ptr<Image> image_;
};

}  // namespace nerivane::cli
