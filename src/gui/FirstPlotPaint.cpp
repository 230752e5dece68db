#include "gui/FirstPlotPaint.h"

#include <QEvent>
#include <QTimer>
#include <utility>

#include "gui/TopForm.h"

namespace nerivane {
namespace {

class FirstPaintWatch final : public QObject {
  public:
    FirstPaintWatch(QObject* plot, std::function<void()> then)
        : QObject(plot), then_(std::move(then)) {}

    bool eventFilter(QObject*, QEvent* event) override {
        // The paint event is seen before it is handled; a zero timer runs after it.
        if (event->type() == QEvent::Paint && then_) {
            QTimer::singleShot(0, std::exchange(then_, nullptr));
        }
        return false;
    }

  private:
    std::function<void()> then_;
};

}  // namespace

void AfterFirstPlotPaint(TTopForm& window, std::function<void()> then) {
    QWidget* plot = window.findChild<QWidget*>(QStringLiteral("BitMap"));
    if (plot == nullptr) return;
    plot->installEventFilter(new FirstPaintWatch(plot, std::move(then)));
}

}  // namespace nerivane
