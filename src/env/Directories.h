// The program's folders, settled before anything else at start-up: the read-only run-time
// files folder beside the program (pictures, help) and the per-user folder for the settings
// file and the designs, created level by level below the user's documents folder.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace nerivane {

inline constexpr const char* RunTimeFilesFolder = "RunTime Files";
inline constexpr const char* HelpFilesFolder = "Help Files";
inline constexpr const char* ProgramHelpFile = "Program Help.md";
inline constexpr const char* ReinstallMessage =
    "Error. The RunTime Files directory is missing. \nYou must reinstall the program. \nThe "
    "application will be closed.";
inline constexpr const char* ExpansionFailedMessage =
    "Buffer too small to expand\nThe application will be closed.";

// What the folders are decided from, injected so tests run in a temporary home.
struct DirectoryInputs {
    std::string programFolder;    // the folder of the program file
    std::string documentsFolder;  // the desktop's documents folder; empty: $HOME/Documents
    std::function<std::optional<std::string>(const char*)> environment;  // getenv
    std::string accountHome = {};  // the account's home folder, taken when HOME is not set
};

struct ProgramDirectories {
    std::string runTimeFilesDir;
    std::string userFilesDir;  // empty when it could not be made
    std::string currentDir;    // the folder file dialogs start in
};

struct DirectoriesOutcome {
    std::optional<ProgramDirectories> directories;
    std::string fatalMessage;  // with caption "Error"; the program ends
};

// Finds the run-time files folder (beside the program, or in an installed program's share
// folder), creates the user's folder chain Kestrune/Nerivane/Files where it is missing, and
// makes it the process's current folder.
DirectoriesOutcome SettleDirectories(const DirectoryInputs& inputs);

}  // namespace nerivane
