// The desktop program.
#include <QApplication>

#include "env/Allocator.h"
#include "gui/Program.h"

int main(int argc, char** argv) {
    nerivane::KeepCalculationMemory();
    QApplication application(argc, argv);
    return nerivane::RunProgram(application);
}
