// The plot image on the main window ("BitMap"): shows the picture the calculation painted, at
// the screen's pixel density, and the one-line read-out in the margin above the plot while
// the pointer moves over it.
#pragma once

#include <QImage>
#include <QPoint>
#include <QString>
#include <QWidget>

namespace nerivane {

class PlotBox final : public QWidget {
    Q_OBJECT

  public:
    explicit PlotBox(QWidget* parent);

    // Takes a new picture (its device pixel ratio set) and shows it.
    void SetImage(QImage image);
    const QImage& Image() const { return image_; }

    // The read-out and where its text starts (the baseline's left end is computed from the
    // text height: the text sits just above plotTop). An empty text erases it.
    void SetReadout(const QString& text, int left, int plotTop);
    const QString& Readout() const { return readout_; }

  signals:
    void PointerMoved(QPoint position);
    void PointerLeft();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    QRect ReadoutRect() const;

    QImage image_;
    QString readout_;
    int readoutLeft_ = 0;
    int readoutPlotTop_ = 0;
};

}  // namespace nerivane
