// The desktop program. The folders are settled before any window exists (a missing run-time
// files folder ends the program); a design file named on the command line is opened at start.
//
// NERIVANE_EXIT_AFTER_FIRST_PAINT=1 makes the program print the milliseconds from the start
// of main to the first painted plot on standard output and exit; the start-up benchmark
// times the real program with it.
#include <pwd.h>
#include <unistd.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QMessageBox>
#include <QStandardPaths>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include "env/Directories.h"
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
    nerivane::DirectoryInputs inputs;
    inputs.programFolder = QCoreApplication::applicationDirPath().toStdString();
    inputs.documentsFolder =
        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation).toStdString();
    if (const passwd* account = ::getpwuid(::getuid()); account != nullptr && account->pw_dir)
        inputs.accountHome = account->pw_dir;
    inputs.environment = [](const char* name) -> std::optional<std::string> {
        const char* value = std::getenv(name);
        if (value == nullptr) return std::nullopt;
        return std::string(value);
    };
    const nerivane::DirectoriesOutcome folders = nerivane::SettleDirectories(inputs);
    if (!folders.directories) {
        // Without a screen (a script, a test) nobody could close the box: say it and end.
        if (QGuiApplication::platformName() == QStringLiteral("offscreen"))
            std::fprintf(stderr, "Error: %s\n", folders.fatalMessage.c_str());
        else
            QMessageBox::critical(nullptr, QStringLiteral("Error"),
                                  QString::fromStdString(folders.fatalMessage));
        return 1;
    }
    nerivane::ProgramWindows windows = nerivane::CreateProgramWindows();
    // Only the first argument is a design file; any further ones are ignored.
    const QStringList arguments = QCoreApplication::arguments();
    windows.topForm->SetStartup(*folders.directories,
                                arguments.size() > 1 ? arguments[1].toStdString() : std::string());
    ExitAfterFirstPaint exitHook(sinceStart);
    if (std::getenv("NERIVANE_EXIT_AFTER_FIRST_PAINT") != nullptr) {
        if (QWidget* plot = windows.topForm->findChild<QWidget*>(QStringLiteral("BitMap")))
            plot->installEventFilter(&exitHook);
    }
    windows.topForm->show();
    return application.exec();
}
