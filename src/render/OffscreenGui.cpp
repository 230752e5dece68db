#include "render/OffscreenGui.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QtGlobal>
#include <memory>

namespace nerivane {

namespace {

void DropPlatformWarnings(QtMsgType type, const QMessageLogContext& context,
                          const QString& message) {
    if (type == QtWarningMsg &&
        (message.startsWith(QStringLiteral("This plugin does not support")) ||
         message.contains(QStringLiteral("XDG_RUNTIME_DIR"))))
        return;
    qt_message_output(type, context, message);
}

}  // namespace

void QuietOffscreenWarnings() {
    qInstallMessageHandler(DropPlatformWarnings);
}

OffscreenArguments OffscreenApplicationArguments() {
    static int argc = 3;
    static char name[] = "nerivane";
    static char platformOption[] = "-platform";
    static char platform[] = "offscreen";
    static char* argv[] = {name, platformOption, platform, nullptr};
    return {argc, argv};
}

void EnsureGuiApplication() {
    if (QCoreApplication::instance() != nullptr) return;
    QuietOffscreenWarnings();
    const OffscreenArguments arguments = OffscreenApplicationArguments();
    // Destroyed at exit, before the Qt state it set up, which releases the font library's
    // caches too.
    static const std::unique_ptr<QGuiApplication> application =
        std::make_unique<QGuiApplication>(arguments.argc, arguments.argv);
}

}  // namespace nerivane
