// The plot rendered for the screen and for files: dense screens, runs painted over each other,
// and the bitmap and PNG files with their background rule.
#include "render/PlotImage.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/Picturefiles.h"
#include "render/ImageEncoding.h"
#include "render/OffscreenGui.h"

namespace nerivane {
namespace {

class PlotImageTest : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { EnsureGuiApplication(); }
};

PlotView MagnitudeView(int sweep, double start, double stop) {
    PlotView view;
    view.width = 700;
    view.height = 450;
    view.sweepIndex = static_cast<Sweep>(sweep);
    view.freqMin = start;
    view.freqMax = stop;
    view.groupDelayScale = 1.2e-3;
    view.pulseTimeStep = 25e-6;
    return view;
}

Traces FlatTraces(double magnitudeDb) {
    Traces traces;
    traces.magnitudeDb.fill(magnitudeDb);
    traces.pulse.fill(0.5);
    traces.hasPulse = true;
    return traces;
}

QRgb ToQRgb(Rgb colour) {
    return qRgb(colour.r, colour.g, colour.b);
}

// On a dense screen a gentle slope steps one device row at a time: the traces are drawn at
// the screen's resolution. Drawn in logical pixels they would climb in two-row stairs.
TEST_F(PlotImageTest, OnADenseScreenTracesStepAtDeviceResolution) {
    const PlotView view = MagnitudeView(4, 100.0, 10000.0);
    Traces ramp = FlatTraces(0.0);
    for (int i = 0; i < TracePoints; ++i) ramp.magnitudeDb[i] = -10.0 - 60.0 * i / TracePoints;
    QImage image = RenderPlot(view, ramp, nullptr, 2.0);
    EXPECT_EQ(image.width(), 2 * view.width);
    EXPECT_EQ(image.devicePixelRatio(), 2.0);
    EXPECT_EQ(image.pixel(0, 0), ToQRgb(PlotBackground));
    image.setDevicePixelRatio(1.0);
    const PlotGeometry g = GeometryFor(view);
    const QRgb red = ToQRgb({255, 0, 0});
    std::vector<int> topRows;
    for (int x = 2 * g.left + 20; x < 2 * (g.left + g.width) - 20; ++x) {
        for (int y = 2 * g.top; y < 2 * g.Bottom(); ++y) {
            if (image.pixel(x, y) == red) {
                topRows.push_back(y);
                break;
            }
        }
    }
    ASSERT_GT(topRows.size(), 100u);
    int singleSteps = 0;
    int doubleSteps = 0;
    for (std::size_t i = 1; i < topRows.size(); ++i) {
        singleSteps += topRows[i] - topRows[i - 1] == 1;
        doubleSteps += topRows[i] - topRows[i - 1] == 2;
    }
    EXPECT_GT(singleSteps, 100);
    EXPECT_EQ(doubleSteps, 0);
}

TEST_F(PlotImageTest, PaintsLaterRunsOverTheFirstWithoutClearingIt) {
    const PlotView view = MagnitudeView(4, 100.0, 10000.0);
    const PlotGeometry g = GeometryFor(view);
    QImage image = NewPlotImage(view);
    PaintPlot(image, view, FlatTraces(-40.0), nullptr, true);
    PaintPlot(image, view, FlatTraces(-60.0), nullptr, false);
    const int x = g.left + g.width / 3;
    EXPECT_EQ(image.pixel(x, g.top + g.height / 2), qRgb(255, 0, 0));
    EXPECT_EQ(image.pixel(x, g.top + 7 * g.height / 10), qRgb(255, 0, 0));
}

// clang-format off
struct Row {
    QRgb painted;
    QRgb exported;
};
const Row BackgroundRule[] = {
    {qRgb(245, 245, 245), qRgb(255, 255, 255)},  // the plot's background
    {qRgb(245, 245, 244), qRgb(245, 245, 244)},  // close is not enough
    {qRgb(244, 245, 245), qRgb(244, 245, 245)},
    {qRgb(245, 246, 245), qRgb(245, 246, 245)},
    {qRgb(255, 0, 0),     qRgb(255, 0, 0)},
    {qRgb(0, 0, 0),       qRgb(0, 0, 0)},
};
// clang-format on

// One pixel per row of the rule, side by side.
QImage RuleImage() {
    QImage image(std::size(BackgroundRule), 1, QImage::Format_RGB32);
    for (int x = 0; x < image.width(); ++x) image.setPixel(x, 0, BackgroundRule[x].painted);
    return image;
}

class ImageFilesTest : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { EnsureGuiApplication(); }
    std::string PathOf(const char* name) const { return directory_.filePath(name).toStdString(); }
    QTemporaryDir directory_;
};

// The bitmap is 24 bits with the background made white; the PNG keeps what was painted.
TEST_F(ImageFilesTest, SavesTheBitmapWhiteAndThePngAsPainted) {
    ASSERT_TRUE(directory_.isValid());
    const std::string bmp = PathOf("plot.bmp"), png = PathOf("plot.png");
    WritePictureFile(bmp, EncodeImage(RuleImage(), ImageFormat::Bmp));
    WritePictureFile(png, EncodeImage(RuleImage(), ImageFormat::Png));
    QFile file(QString::fromStdString(bmp));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    ASSERT_GT(bytes.size(), 30);
    EXPECT_EQ(bytes.left(2), QByteArray("BM"));
    EXPECT_EQ(static_cast<unsigned char>(bytes[28]) | static_cast<unsigned char>(bytes[29]) << 8,
              24);  // bits per pixel in the header
    const QImage readBmp(QString::fromStdString(bmp)), readPng(QString::fromStdString(png));
    ASSERT_EQ(readBmp.width(), static_cast<int>(std::size(BackgroundRule)));
    ASSERT_EQ(readPng.width(), readBmp.width());
    for (int x = 0; x < readBmp.width(); ++x) {
        EXPECT_EQ(readBmp.pixel(x, 0), BackgroundRule[x].exported) << x;
        EXPECT_EQ(readPng.pixel(x, 0), BackgroundRule[x].painted) << x;
    }
}

TEST_F(ImageFilesTest, ReportsAFileThatCannotBeWritten) {
    const std::string path = PathOf("no such folder/plot.png");
    for (const ImageFormat format : {ImageFormat::Png, ImageFormat::Bmp}) {
        try {
            WritePictureFile(path, EncodeImage(RuleImage(), format));
            ADD_FAILURE() << "no error";
        } catch (const std::runtime_error& error) {
            EXPECT_NE(std::string(error.what()).find(path), std::string::npos);
        }
    }
}

}  // namespace
}  // namespace nerivane
