// The program as it starts: in a new home the user's folders appear below the documents
// folder; a program without its run-time files says so and ends; and in hostile surroundings
// (settings or designs that are folders, pipes, link loops or names too long) every start
// paints its window and says what it could not use, never ending or hanging.
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

class Startup : public ::testing::Test {
  protected:
    void SetUp() override {
        fs::remove_all(root);
        fs::create_directories(root / "home");
        fs::create_directories(root / "bin");
        fs::copy_file(NERIVANE_PROGRAM_PATH, root / "bin" / "nerivane");
    }
    void TearDown() override { fs::remove_all(root); }

    // The exit status and everything said; a start that hangs is ended after a while.
    std::pair<int, std::string> Run(const std::string& argument = "") {
        const std::string command =
            "env HOME='" + (root / "home").string() +
            "' XDG_CONFIG_HOME= XDG_DOCUMENTS_DIR= QT_QPA_PLATFORM=offscreen"
            " NERIVANE_EXIT_AFTER_FIRST_PAINT=1 timeout 60 '" +
            (root / "bin" / "nerivane").string() + "' '" + argument + "' 2>&1";
        FILE* pipe = ::popen(command.c_str(), "r");
        std::string output;
        char buffer[512];
        while (pipe != nullptr && std::fgets(buffer, sizeof buffer, pipe) != nullptr)
            output += buffer;
        return {pipe == nullptr ? -1 : WEXITSTATUS(::pclose(pipe)), output};
    }

    const fs::path root =
        fs::temp_directory_path() / ("nerivane_startup_" + std::to_string(::getpid()));
    const fs::path kestrune = root / "home" / "Documents" / "Kestrune";
    const fs::path files = kestrune / "Nerivane" / "Files";
};

TEST_F(Startup, AFirstStartMakesTheUsersFoldersOnceButNotWithoutItsRunTimeFiles) {
    const auto [missing, said] = Run();
    EXPECT_EQ(missing, 1);
    EXPECT_NE(said.find("The RunTime Files directory is missing."), std::string::npos) << said;
    EXPECT_FALSE(fs::exists(root / "home" / "Documents"));
    fs::create_directories(root / "bin" / "RunTime Files");
    const auto [status, output] = Run();
    ASSERT_EQ(status, 0) << output;
    EXPECT_NE(output.find("first paint"), std::string::npos) << output;
    EXPECT_TRUE(fs::is_directory(files));
    const auto made = fs::last_write_time(kestrune);
    ASSERT_EQ(Run().first, 0);
    EXPECT_EQ(fs::last_write_time(kestrune), made);
}

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
        const auto [status, output] = Run(design);
        const std::string what = std::to_string(settingsFile) + " " + design.substr(0, 60) + "\n";
        EXPECT_EQ(status, 0) << what << output;
        EXPECT_NE(output.find("first paint"), std::string::npos) << what << output;
        EXPECT_NE(output.find(says), std::string::npos) << what << output;
    }
}

}  // namespace
}  // namespace nerivane
