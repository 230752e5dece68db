#include "gui/OffscreenApplication.h"

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
    // The application keeps references to its arguments, so they outlive it.
    static int argc = 3;
    static char name[] = "nerivane";
    static char platformOption[] = "-platform";
    static char platform[] = "offscreen";
    static char* argv[] = {name, platformOption, platform, nullptr};
    Application() = std::make_unique<QApplication>(argc, argv);
}

void CloseWidgetsApplication() {
    Application().reset();
}

}  // namespace nerivane
