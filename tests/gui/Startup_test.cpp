// The program as it starts in hostile surroundings (settings or designs that are folders,
// pipes, link loops or names too long): every start paints its window and says what it could
// not use, never ending or hanging. Making the user's folders is the folder tests' concern.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <tuple>

#include "files/Settingsfile.h"

namespace nerivane {
namespace {

namespace fs = std::filesystem;

bool Has(const std::string& text, const std::string& part) {
    return text.find(part) != text.npos;
}

class Startup : public ::testing::Test {
  protected:
    void SetUp() override {
        fs::remove_all(root);
        fs::create_directories(root / "bin");
        fs::copy_file(NERIVANE_PROGRAM_PATH, root / "bin" / "nerivane");
    }
    void TearDown() override { fs::remove_all(root); }

    // Everything the program said and then its exit status; a start that hangs is ended.
    std::string Run(const std::string& argument = "") {
        const std::string command =
            "env HOME='" + root.string() +
            "' XDG_CONFIG_HOME= XDG_DOCUMENTS_DIR= QT_QPA_PLATFORM=offscreen"
            " timeout 60 '" +
            root.string() + "/bin/nerivane' '" + argument + "' 2>&1";
        FILE* pipe = ::popen(command.c_str(), "r");
        if (pipe == nullptr) return "cannot start the program";
        std::string output;
        for (char buffer[512]; std::fgets(buffer, sizeof buffer, pipe) != nullptr;)
            output += buffer;
        return output + "exit " + std::to_string(WEXITSTATUS(::pclose(pipe)));
    }

    const fs::path root =
        fs::temp_directory_path() / ("nerivane_startup_" + std::to_string(::getpid()));
    const fs::path files = root / "Documents" / "Kestrune" / "Nerivane" / "Files";
};

TEST_F(Startup, EveryStartInHostileSurroundingsPaintsAndSaysWhatItCouldNotUse) {
    fs::create_directories(root / "bin" / "RunTime Files");
    fs::create_directory_symlink(root / "loop", root / "loop");
    const std::string loop = (root / "loop" / "a.kq_opamp").string();
    const std::string tooLong = (root / std::string(5000, 'a')).string() + ".kq_opamp";
    const std::string pipe = (root / "pipe.kq_opamp").string();
    ::mkfifo(pipe.c_str(), 0600);
    ProgramSettings unreachable;
    unreachable.recentFiles = {loop, tooLong, "", ""};
    enum Settings { None, Folder, Pipe, Unreachable };
    const std::tuple<Settings, std::string, const char*> cases[] = {
        // settings, design, says
        {Folder, "", "cannot be read"}, {Pipe, "", "not a regular file"},
        {Unreachable, "", ""},          {None, pipe, "not a regular file"},
        {None, loop, "symbolic links"}, {None, tooLong, "too long"},
    };
    for (const auto& [settingsFile, design, says] : cases) {
        fs::remove_all(files);
        fs::create_directories(files);
        const fs::path settings = files / "Settings.txt";
        if (settingsFile == Folder) fs::create_directory(settings);
        if (settingsFile == Pipe) ::mkfifo(settings.c_str(), 0600);
        if (settingsFile == Unreachable) std::ofstream(settings) << SettingsText(unreachable);
        const std::string output = Run(design);
        EXPECT_TRUE(Has(output, "first paint") && output.ends_with("exit 0")) << output;
        EXPECT_TRUE(Has(output, says)) << settingsFile << " " << output;
    }
}

}  // namespace
}  // namespace nerivane
