// The desktop program.
#include <QApplication>

#include "gui/Program.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    return nerivane::RunProgram(application);
}
