// The Qt canvas puts lines, fills and texts on the pixels the plot and schematics expect, in
// logical pixels on a dense screen too.
#include "render/QtCanvas.h"

#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <array>
#include <set>
#include <utility>
#include <vector>

#include "render/OffscreenGui.h"
#include "response/Plot.h"

namespace nerivane {
namespace {

constexpr Rgb Red{255, 0, 0};

using Pixel = std::pair<int, int>;

class QtCanvasTest : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { EnsureGuiApplication(); }

    // A white image of the given logical size.
    static QImage Blank(int width, int height, qreal ratio = 1.0) {
        QImage image(static_cast<int>(width * ratio), static_cast<int>(height * ratio),
                     QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::white);
        return image;
    }

    // The device pixels that are not white.
    static std::set<Pixel> Painted(const QImage& image) {
        std::set<Pixel> pixels;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixel(x, y) != qRgb(255, 255, 255)) pixels.insert({x, y});
        return pixels;
    }
};

std::set<Pixel> Span(int x0, int x1, int y0, int y1) {
    std::set<Pixel> pixels;
    for (int y = y0; y <= y1; ++y)
        for (int x = x0; x <= x1; ++x) pixels.insert({x, y});
    return pixels;
}

TEST_F(QtCanvasTest, DrawsLinesOnTheirPixelsWithBothEnds) {
    struct Row {
        const char* name;
        std::vector<Pixel> path;  // move to the first point, then lines
        std::set<Pixel> pixels;
    };
    // clang-format off
    const Row rows[] = {
        {"horizontal", {{2, 3}, {9, 3}},          Span(2, 9, 3, 3)},
        {"vertical",   {{4, 1}, {4, 6}},          Span(4, 4, 1, 6)},
        {"corner",     {{2, 2}, {6, 2}, {6, 5}},  [] { auto p = Span(2, 6, 2, 2);
                                                        p.merge(Span(6, 6, 3, 5)); return p; }()},
        {"diagonal",   {{1, 1}, {5, 5}},          {{1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}}},
        {"one point",  {{7, 7}, {7, 7}},          {{7, 7}}},
    };
    // clang-format on
    for (const Row& row : rows) {
        QImage image = Blank(12, 10);
        {
            QtCanvas canvas(image);
            canvas.SetPen(Red, 1, PenStyle::Solid);
            canvas.MoveTo(row.path[0].first, row.path[0].second);
            for (std::size_t i = 1; i < row.path.size(); ++i)
                canvas.LineTo(row.path[i].first, row.path[i].second);
        }
        EXPECT_EQ(Painted(image), row.pixels) << row.name;
        for (const Pixel& p : row.pixels)
            EXPECT_EQ(image.pixel(p.first, p.second), qRgb(255, 0, 0)) << row.name;
    }
}

TEST_F(QtCanvasTest, WritesTextInsideItsExtent) {
    QImage image = Blank(120, 40);
    TextSize size;
    {
        QtCanvas canvas(image);
        canvas.SetTextColour({0, 0, 0});
        size = canvas.TextExtent("-90 dB \u00b0");
        canvas.TextOut(10, 12, "-90 dB \u00b0");
    }
    // A readable size: about the plot's label font.
    EXPECT_GE(size.height, PlotFontPixels);
    EXPECT_LE(size.height, 2 * PlotFontPixels);
    EXPECT_GT(size.width, 4 * PlotFontPixels / 2);
    const std::set<Pixel> painted = Painted(image);
    EXPECT_GT(painted.size(), 30u);
    for (const Pixel& p : painted) {
        EXPECT_GE(p.first, 10);
        EXPECT_LT(p.first, 10 + size.width);
        EXPECT_GE(p.second, 12);
        EXPECT_LT(p.second, 12 + size.height);
    }
}

TEST_F(QtCanvasTest, DrawsInLogicalPixelsOnADenseImage) {
    // At a ratio of 2 every logical pixel is a 2 x 2 block, for lines and fills alike; a fill
    // stops short of its far edges.
    QImage image = Blank(20, 10, 2.0);
    ASSERT_EQ(image.width(), 40);
    TextSize size;
    {
        QtCanvas canvas(image);
        canvas.SetPen(Red, 1, PenStyle::Solid);
        canvas.MoveTo(2, 3);
        canvas.LineTo(8, 3);
        canvas.FillRect(12, 2, 15, 4, Red);
        size = canvas.TextExtent("1 kHz");
    }
    std::set<Pixel> expected = Span(4, 17, 6, 7);
    expected.merge(Span(24, 29, 4, 7));
    EXPECT_EQ(Painted(image), expected);
    QImage plain = Blank(20, 10);
    QtCanvas plainCanvas(plain);
    EXPECT_EQ(plainCanvas.TextExtent("1 kHz").width, size.width);
}

}  // namespace
}  // namespace nerivane
