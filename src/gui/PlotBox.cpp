#include "gui/PlotBox.h"

#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>

#include "response/Plot.h"

namespace nerivane {
namespace {

// The read-out uses the plot's own label size so it matches the scale texts beneath it.
QFont ReadoutFont(const QFont& base) {
    QFont font = base;
    font.setPixelSize(PlotFontPixels);
    return font;
}

const QColor ReadoutBackground(PlotBackground.r, PlotBackground.g, PlotBackground.b);

}  // namespace

PlotBox::PlotBox(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("BitMap"));
    setMouseTracking(true);
    // The picture covers the widget; no background needs erasing first.
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void PlotBox::SetImage(QImage image) {
    image_ = std::move(image);
    update();
}

QRect PlotBox::ReadoutRect() const {
    const QFontMetrics metrics(ReadoutFont(font()));
    const int height = metrics.height();
    return QRect(readoutLeft_, readoutPlotTop_ - height - 2, metrics.horizontalAdvance(readout_),
                 height);
}

void PlotBox::SetReadout(const QString& text, int left, int plotTop) {
    if (text == readout_ && left == readoutLeft_ && plotTop == readoutPlotTop_) return;
    // Only the margin strip changes: the old text's rectangle and the new one's.
    const QRect previous = readout_.isEmpty() ? QRect() : ReadoutRect();
    readout_ = text;
    readoutLeft_ = left;
    readoutPlotTop_ = plotTop;
    update(previous.united(readout_.isEmpty() ? QRect() : ReadoutRect()));
}

void PlotBox::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QRect area = event->rect();
    painter.fillRect(area, ReadoutBackground);
    if (!image_.isNull()) painter.drawImage(QPoint(0, 0), image_);
    if (readout_.isEmpty()) return;
    const QRect box = ReadoutRect();
    painter.fillRect(box, ReadoutBackground);
    painter.setFont(ReadoutFont(font()));
    painter.setPen(Qt::black);
    painter.drawText(box, Qt::AlignLeft | Qt::AlignVCenter, readout_);
}

void PlotBox::mouseMoveEvent(QMouseEvent* event) {
    emit PointerMoved(event->position().toPoint());
}

void PlotBox::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    emit PointerLeft();
}

}  // namespace nerivane
