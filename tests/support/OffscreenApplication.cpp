#include "support/OffscreenApplication.h"

#include <QApplication>
#include <memory>

#include "render/OffscreenGui.h"

namespace nerivane {
namespace {

std::unique_ptr<QApplication>& Application() {
    static std::unique_ptr<QApplication> application;
    return application;
}

}  // namespace

void EnsureWidgetsApplication() {
    if (QCoreApplication::instance() != nullptr) return;
    QuietOffscreenWarnings();
    const OffscreenArguments arguments = OffscreenApplicationArguments();
    Application() = std::make_unique<QApplication>(arguments.argc, arguments.argv);
}

void CloseWidgetsApplication() {
    Application().reset();
}

}  // namespace nerivane
