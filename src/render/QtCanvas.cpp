#include "render/QtCanvas.h"

#include <QBrush>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPointF>
#include <QRect>
#include <QString>
#include <algorithm>
#include <cmath>

#include "response/Plot.h"

namespace nerivane {
namespace {

QColor ToQColor(Rgb colour) {
    return QColor(colour.r, colour.g, colour.b);
}

Qt::PenStyle ToQtStyle(PenStyle style) {
    switch (style) {
        case PenStyle::Solid: return Qt::SolidLine;
        case PenStyle::Dash: return Qt::DashLine;
        case PenStyle::Dot: return Qt::DotLine;
        case PenStyle::Clear: return Qt::NoPen;
    }
    return Qt::SolidLine;
}

// The platform's default sans font at the size the plot's margins are laid out for. A pixel
// size rather than points keeps the layout the same whatever resolution the platform reports.
QFont LabelFont() {
    QFont font = QGuiApplication::font();
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(PlotFontPixels);
    return font;
}

}  // namespace

QtCanvas::QtCanvas(QPaintDevice& device, int penScale, bool smoothLines)
    : image_(device.devType() == QInternal::Image ? static_cast<QImage*>(&device) : nullptr),
      painter_(&device),
      pen_(Qt::black, 1),
      textColour_(Qt::black),
      metrics_(LabelFont(), &device),
      // At a ratio of 1 the raster engine puts an aliased one-pixel line on the pixels right
      // of and below its points already. Antialiased and thicker device lines are centred on
      // their points, so they go through the pixels' centres to cover the pixels a fill would.
      lineOffset_(image_ != nullptr && device.devicePixelRatio() == 1.0 && !smoothLines
                      ? QPointF(0.0, 0.0)
                      : QPointF(0.5, 0.5)),
      penScale_(penScale < 1 ? 1 : penScale) {
    painter_.setRenderHint(QPainter::Antialiasing, smoothLines);
    painter_.setRenderHint(QPainter::TextAntialiasing, true);
    painter_.setFont(LabelFont());
    painter_.setPen(pen_);
}

void QtCanvas::SetPen(Rgb colour, int width, PenStyle style) {
    pen_ = QPen(ToQColor(colour), width * penScale_, ToQtStyle(style),
                image_ ? Qt::SquareCap : Qt::FlatCap);
    painter_.setPen(pen_);
}

void QtCanvas::MoveTo(int x, int y) {
    position_ = QPoint(x, y);
}

void QtCanvas::LineTo(int x, int y) {
    const QPoint to(x, y);
    if (pen_.style() != Qt::NoPen)
        painter_.drawLine(QPointF(position_) + lineOffset_, QPointF(to) + lineOffset_);
    position_ = to;
}

void QtCanvas::SetTextColour(Rgb colour) {
    textColour_ = ToQColor(colour);
}

void QtCanvas::TextOut(int x, int y, const std::string& text) {
    painter_.setPen(textColour_);
    painter_.drawText(x, y + metrics_.ascent(), QString::fromUtf8(text));
    painter_.setPen(pen_);
}

TextSize QtCanvas::TextExtent(const std::string& text) {
    return {metrics_.horizontalAdvance(QString::fromUtf8(text)), metrics_.height()};
}

void QtCanvas::Circle(int centreX, int centreY, int radius, bool filled) {
    painter_.setBrush(filled ? QBrush(pen_.color()) : QBrush(Qt::NoBrush));
    painter_.drawEllipse(QPointF(centreX, centreY) + lineOffset_, radius, radius);
    painter_.setBrush(Qt::NoBrush);
}

void QtCanvas::FillRect(int left, int top, int right, int bottom, Rgb colour) {
    painter_.fillRect(QRect(left, top, right - left, bottom - top), ToQColor(colour));
}

}  // namespace nerivane

namespace nerivane {

void QtCanvas::FillBehind(int left, int top, int right, int bottom, Rgb colour, Rgb behind) {
    // The raster painter draws straight into the image's pixels, so they can be read here; the
    // plot's images are all RGB32.
    if (image_ == nullptr || image_->format() != QImage::Format_RGB32)
        return FillRect(left, top, right, bottom, colour);
    QImage& image = *image_;
    const double ratio = image.devicePixelRatio();
    const auto device = [ratio](int value) { return static_cast<int>(std::lround(value * ratio)); };
    const int x0 = std::max(0, device(left)), x1 = std::min(image.width(), device(right));
    const int y0 = std::max(0, device(top)), y1 = std::min(image.height(), device(bottom));
    const QRgb from = qRgb(behind.r, behind.g, behind.b), to = qRgb(colour.r, colour.g, colour.b);
    for (int y = y0; y < y1; ++y) {
        QRgb* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = x0; x < x1; ++x)
            if (line[x] == from) line[x] = to;
    }
}

}  // namespace nerivane
