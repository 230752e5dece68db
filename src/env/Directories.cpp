#include "env/Directories.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>

namespace nerivane {
namespace {

constexpr std::size_t ExpansionLimit = 32767;

bool IsFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string Join(const std::string& folder, const std::string& name) {
    if (folder.empty() || folder.back() == '/') return folder + name;
    return folder + "/" + name;
}

// This platform's counterparts of the variables whose expansion the program checks: a value
// that is present must fit the expansion buffer, and the home folder must be there.
// HOME, or the account's home folder when HOME is not set (a service, a cleared environment).
std::string HomeFolder(const DirectoryInputs& inputs) {
    const std::optional<std::string> home = inputs.environment("HOME");
    return home && !home->empty() ? *home : inputs.accountHome;
}

bool EnvironmentUsable(const DirectoryInputs& inputs) {
    static constexpr std::array<const char*, 4> Variables = {"HOME", "TMPDIR", "XDG_CONFIG_HOME",
                                                             "XDG_DATA_HOME"};
    for (const char* name : Variables) {
        const std::optional<std::string> value = inputs.environment(name);
        if (value && value->size() >= ExpansionLimit) return false;
    }
    return !HomeFolder(inputs).empty();
}

std::optional<std::string> FindRunTimeFiles(const std::string& programFolder) {
    const std::string beside = Join(programFolder, RunTimeFilesFolder);
    if (IsFolder(beside)) return beside;
    // An installed program lives in <prefix>/bin and its files in <prefix>/share/nerivane.
    const std::string shared = Join(Join(programFolder, "../share/nerivane"), RunTimeFilesFolder);
    if (IsFolder(shared)) return shared;
    return std::nullopt;
}

}  // namespace

DirectoriesOutcome SettleDirectories(const DirectoryInputs& inputs) {
    DirectoriesOutcome outcome;
    if (!EnvironmentUsable(inputs)) {
        outcome.fatalMessage = ExpansionFailedMessage;
        return outcome;
    }
    const std::optional<std::string> runTime = FindRunTimeFiles(inputs.programFolder);
    if (!runTime) {
        outcome.fatalMessage = ReinstallMessage;
        return outcome;
    }
    ProgramDirectories directories;
    directories.runTimeFilesDir = *runTime;

    const std::string documents = inputs.documentsFolder.empty()
                                      ? Join(HomeFolder(inputs), "Documents")
                                      : inputs.documentsFolder;
    // One level at a time, each only when missing; a level that cannot be made ends the chain
    // and later file operations report their own failures.
    std::string folder = documents;
    bool made = IsFolder(folder) || ::mkdir(folder.c_str(), 0777) == 0;
    for (const char* level : {"Kestrune", "Nerivane", "Files"}) {
        if (!made) break;
        folder = Join(folder, level);
        made = IsFolder(folder) || ::mkdir(folder.c_str(), 0777) == 0;
    }
    directories.userFilesDir = made ? folder : std::string();
    directories.currentDir = made ? folder : documents;
    if (::chdir(directories.currentDir.c_str()) != 0) directories.currentDir.clear();
    outcome.directories = directories;
    return outcome;
}

}  // namespace nerivane
