#include "render/ImageFiles.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <iterator>
#include <stdexcept>
#include <string>

#include "render/OffscreenGui.h"

namespace nerivane {
namespace {

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

TEST_F(ImageFilesTest, TurnsOnlyTheExactBackgroundWhite) {
    const QImage white = WithWhiteBackground(RuleImage());
    EXPECT_EQ(white.depth(), 24);
    for (int x = 0; x < white.width(); ++x)
        EXPECT_EQ(white.pixel(x, 0), BackgroundRule[x].exported) << x;
}

// The bitmap is 24 bits with the background made white; the PNG keeps what was painted.
TEST_F(ImageFilesTest, SavesTheBitmapWhiteAndThePngAsPainted) {
    ASSERT_TRUE(directory_.isValid());
    const std::string bmp = PathOf("plot.bmp"), png = PathOf("plot.png");
    SaveBmp(RuleImage(), bmp);
    SavePng(RuleImage(), png);
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
    for (auto save : {&SavePng, &SaveBmp}) {
        try {
            save(RuleImage(), path);
            ADD_FAILURE() << "no error";
        } catch (const std::runtime_error& error) {
            EXPECT_NE(std::string(error.what()).find(path), std::string::npos);
        }
    }
}

}  // namespace
}  // namespace nerivane
