// The plot as an SVG or PDF file, by the name's ending. It is drawn run by run as the picture
// is, kept in a temporary file rather than in memory (a thousand worst-case runs of five
// traces), and written when saved, with the worst case's envelope behind the runs, the grid
// and the requirement's regions, as the picture shows it.
#pragma once

#include <string>

#include "response/Canvasrecording.h"
#include "response/Raster.h"
#include "response/SvgCanvas.h"

namespace nerivane {

class VectorPlotFile {
  public:
    // The page in the picture's pixels (points in a PDF). Throws std::runtime_error when no
    // temporary file can be made.
    VectorPlotFile(int width, int height);

    // What the plot is drawn on: DrawPlot for each run, then DrawEnvelope. Text is measured as
    // the picture's painter measures it, so the labels fall where the picture has them.
    Canvas& Drawing() { return recording_; }

    // makePdf makes the page of a ".pdf"; throws std::runtime_error naming the file when it
    // cannot be written.
    void Save(const std::string& path, const PdfPageMaker& makePdf) const;

  private:
    int width_;
    int height_;
    SvgCanvas measure_;
    CanvasRecording recording_;
};

}  // namespace nerivane
