#include "gui/Program.h"

#include <pwd.h>
#include <unistd.h>

#include <QMessageBox>
#include <QStandardPaths>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include "env/Directories.h"
#include "gui/ProgramWindows.h"

namespace nerivane {

int RunProgram(QApplication& application, const std::function<void(TTopForm&)>& beforeShow) {
    DirectoryInputs inputs;
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
    const DirectoriesOutcome folders = SettleDirectories(inputs);
    if (!folders.directories) {
        // Without a screen (a script, a test) nobody could close the box: say it and end.
        if (QGuiApplication::platformName() == QStringLiteral("offscreen"))
            std::fprintf(stderr, "Error: %s\n", folders.fatalMessage.c_str());
        else
            QMessageBox::critical(nullptr, QStringLiteral("Error"),
                                  QString::fromStdString(folders.fatalMessage));
        return 1;
    }
    ProgramWindows windows = CreateProgramWindows();
    // Only the first argument is a design file; any further ones are ignored.
    const QStringList arguments = QCoreApplication::arguments();
    windows.topForm->SetStartup(*folders.directories,
                                arguments.size() > 1 ? arguments[1].toStdString() : std::string());
    if (beforeShow) beforeShow(*windows.topForm);
    windows.topForm->show();
    return application.exec();
}

}  // namespace nerivane
