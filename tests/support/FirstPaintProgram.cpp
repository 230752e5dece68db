// The desktop program as the start-up test and benchmark run it: the same start, and on the
// first painted plot it prints the milliseconds since main began and ends.
#include <QApplication>
#include <QElapsedTimer>
#include <cstdio>

#include "env/Allocator.h"
#include "gui/FirstPlotPaint.h"
#include "gui/Program.h"

int main(int argc, char** argv) {
    nerivane::KeepCalculationMemory();
    QElapsedTimer sinceStart;
    sinceStart.start();
    QApplication application(argc, argv);
    return nerivane::RunProgram(application, [&sinceStart](nerivane::TTopForm& window) {
        nerivane::AfterFirstPlotPaint(window, [&sinceStart] {
            std::printf("first paint %lld ms\n", static_cast<long long>(sinceStart.elapsed()));
            std::fflush(stdout);
            QCoreApplication::quit();
        });
    });
}
