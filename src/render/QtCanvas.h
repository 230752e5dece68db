// The Canvas over a QPainter: the window and the command line paint the same plots and
// schematics into a QImage through it. Plot lines are drawn without antialiasing so every
// trace lands on the pixels its mapping gives; text is antialiased for legibility.
#pragma once

#include <QColor>
#include <QFontMetrics>
#include <QPainter>
#include <QPen>
#include <QPoint>
#include <QPointF>

#include "response/Canvas.h"

class QImage;
class QPaintDevice;

namespace nerivane {

// Paints on an image (or a PDF page) in its logical coordinates: an image with a device pixel ratio
// of 2 is twice the size in pixels and everything is drawn twice as large, crisp on dense screens.
// Text is UTF-8, in the platform's default sans font at the plot's label size. Drawing text
// needs a QGuiApplication (see OffscreenGui.h).
class QtCanvas final : public Canvas {
  public:
    // penScale widens every pen: traces drawn in the device pixels of a dense screen keep the
    // weight of a logical pixel. Smooth lines are antialiased (the schematics' slanted
    // strokes); the plot keeps every line on the pixels its mapping gives.
    // On another device than an image (a PDF page) every stroke is centred on its points.
    explicit QtCanvas(QPaintDevice& device, int penScale = 1, bool smoothLines = false);
    QtCanvas(const QtCanvas&) = delete;
    QtCanvas& operator=(const QtCanvas&) = delete;

    // False when the device could not be painted on.
    bool Painting() const { return painter_.isActive(); }

    void SetPen(Rgb colour, int width, PenStyle style) override;
    void MoveTo(int x, int y) override;
    void LineTo(int x, int y) override;
    void SetTextColour(Rgb colour) override;
    void TextOut(int x, int y, const std::string& text) override;
    TextSize TextExtent(const std::string& text) override;
    void FillRect(int left, int top, int right, int bottom, Rgb colour) override;
    void FillBehind(int left, int top, int right, int bottom, Rgb colour, Rgb behind) override;
    void Circle(int centreX, int centreY, int radius, bool filled) override;

  private:
    QImage* image_;  // the device when it is an image
    QPainter painter_;
    QPen pen_;
    QColor textColour_;
    QPoint position_;
    QFontMetrics metrics_;
    QPointF lineOffset_;
    int penScale_;
};

}  // namespace nerivane
