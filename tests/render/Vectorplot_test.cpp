// The plot as SVG and PDF against the picture: the command line writes one design as PNG, SVG
// and PDF, standard renderers (rsvg-convert, pdftoppm) turn the vector files into pictures,
// and these must match the PNG but for the renderers' smoothing of text and slanted lines.
#include <gtest/gtest.h>

#include <QImage>
#include <QTemporaryDir>
#include <cstdlib>
#include <string>

#include "support/ImageCompare.h"

namespace nerivane {
namespace {

class VectorPlot : public ::testing::Test {
  protected:
    // The plot of the design the options give, written with the ending and read back as a
    // picture: the PNG as it is, SVG and PDF through their renderers.
    QImage Plot(const std::string& options, const std::string& ending) {
        const std::string file = folder.filePath(QString::number(++count)).toStdString();
        const std::string plot = file + "." + ending;
        Run(std::string(NERIVANE_CLI_PATH) + " " + options + " --plot " + plot);
        if (ending == "svg") Run("rsvg-convert -o " + file + ".png " + plot);
        if (ending == "pdf")
            Run("pdftoppm -r 72 -aaVector no -png -singlefile " + plot + " " + file);
        return QImage(QString::fromStdString(file + ".png")).convertToFormat(QImage::Format_RGB32);
    }
    static void Run(const std::string& command) {
        ASSERT_EQ(std::system((command + " 2>&1").c_str()), 0) << command;
    }

    QTemporaryDir folder;
    int count = 0;
};

TEST_F(VectorPlot, SvgAndPdfShowWhatThePictureShows) {
    // clang-format off
    const char* const designs[] = {
        "",                                                                 // the start-up design
        "--mode worst --runs 20 --traces mag10,gd",                         // runs and envelopes
        "--mask fp=1k,ap=1,fs=3k,as=40 --mode worst --runs 20",  // forbidden regions
        "--topology mfb-bpf --poles 4 --traces mag1,phase,pulse --width 640 --height 400",
    };
    // clang-format on
    for (const char* design : designs) {
        const QImage png = Plot(design, "png");
        ASSERT_FALSE(png.isNull()) << design;
        EXPECT_LE(Mismatch(png, Plot(design, "svg")), MostMismatched) << design;
        // The PDF renderer steps slanted lines its own way: a loose check, yet no blank page.
        EXPECT_LE(Mismatch(png, Plot(design, "pdf")), 10 * MostMismatched) << design;
    }
}

// The comparison tells what matters: the envelope's band left out, a trace moved.
TEST_F(VectorPlot, TheComparisonSeesAMissingBandOrAMovedTrace) {
    const std::string runs = "--mode worst --runs 20 --traces mag10,phase";
    EXPECT_GT(Mismatch(Plot(runs, "png"), Plot("--mode standard --traces mag10,phase", "svg")),
              MostMismatched);
    EXPECT_GT(Mismatch(Plot("", "png"), Plot("--poles 4", "svg")), MostMismatched);
}

}  // namespace
}  // namespace nerivane
