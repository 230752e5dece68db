// Saves a picture of the real main window once it has calculated and painted the start-up
// design. The build runs it on the offscreen platform with a scratch home folder, so the
// picture the software centre shows is the program as it starts, with nobody's settings in it.
#include <QApplication>
#include <QString>
#include <cstdio>

#include "gui/FirstPlotPaint.h"
#include "gui/Program.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s PICTURE.png\n", argv[0]);
        return 2;
    }
    const QString picture = QString::fromLocal8Bit(argv[1]);
    // The program opens its first argument as a design file: it sees no arguments.
    int programArgc = 1;
    QApplication application(programArgc, argv);
    bool saved = false;
    const int status = nerivane::RunProgram(application, [&](nerivane::TTopForm& window) {
        nerivane::AfterFirstPlotPaint(window, [&] {
            saved = window.grab().save(picture, "PNG");
            if (!saved)
                std::fprintf(stderr, "Cannot write the screenshot \"%s\".\n",
                             picture.toLocal8Bit().constData());
            QCoreApplication::quit();
        });
    });
    return status != 0 ? status : saved ? 0 : 1;
}
