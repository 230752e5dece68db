// The desktop program as the start-up test and benchmark run it: the same start, and on the
// first painted plot it prints the milliseconds since main began and ends.
#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QTimer>
#include <cstdio>

#include "env/Allocator.h"
#include "gui/Program.h"

namespace {

class ExitAfterFirstPaint final : public QObject {
  public:
    explicit ExitAfterFirstPaint(const QElapsedTimer& sinceStart) : sinceStart_(sinceStart) {}

    bool eventFilter(QObject*, QEvent* event) override {
        // The paint event is seen before it is handled; quitting from the event loop lets the
        // paint finish first.
        if (event->type() == QEvent::Paint && !seen_) {
            seen_ = true;
            QTimer::singleShot(0, [this] {
                std::printf("first paint %lld ms\n", static_cast<long long>(sinceStart_.elapsed()));
                std::fflush(stdout);
                QCoreApplication::quit();
            });
        }
        return false;
    }

  private:
    const QElapsedTimer& sinceStart_;
    bool seen_ = false;
};

}  // namespace

int main(int argc, char** argv) {
    nerivane::KeepCalculationMemory();
    QElapsedTimer sinceStart;
    sinceStart.start();
    QApplication application(argc, argv);
    ExitAfterFirstPaint exitHook(sinceStart);
    return nerivane::RunProgram(application, [&exitHook](nerivane::TTopForm& window) {
        if (QWidget* plot = window.findChild<QWidget*>(QStringLiteral("BitMap")))
            plot->installEventFilter(&exitHook);
    });
}
