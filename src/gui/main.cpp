// The desktop program. A design file named on the command line is accepted; opening it comes
// with the design files.
//
// NERIVANE_EXIT_AFTER_FIRST_PAINT=1 makes the program print the milliseconds from the start
// of main to the first painted plot on standard output and exit; the start-up benchmark
// times the real program with it.
#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

#include "gui/ProgramWindows.h"

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
    QElapsedTimer sinceStart;
    sinceStart.start();
    QApplication application(argc, argv);
    nerivane::ProgramWindows windows = nerivane::CreateProgramWindows();
    ExitAfterFirstPaint exitHook(sinceStart);
    if (std::getenv("NERIVANE_EXIT_AFTER_FIRST_PAINT") != nullptr) {
        if (QWidget* plot = windows.topForm->findChild<QWidget*>(QStringLiteral("BitMap")))
            plot->installEventFilter(&exitHook);
    }
    windows.topForm->show();
    return application.exec();
}
