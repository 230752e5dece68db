// The program started in hostile surroundings: a settings file that is a folder or a pipe,
// recent files and a design named at start that cannot be checked (a loop of links, a name
// too long for the system, a pipe). Each start must paint its window and say what it could
// not use, never end or hang.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "files/Settingsfile.h"

namespace nerivane {
namespace {

namespace fs = std::filesystem;

struct ProgramRun {
    int status;
    std::string output;
};

class Environments : public ::testing::Test {
  public:
    void SetUp() override {
        root = fs::temp_directory_path() / ("nerivane_environments_" + std::to_string(::getpid()));
        fs::remove_all(root);
        files = root / "home" / "Documents" / "Kestrune" / "Nerivane" / "Files";
        fs::create_directories(files);
        fs::create_directories(root / "bin" / "RunTime Files");
        fs::copy_file(NERIVANE_PROGRAM_PATH, root / "bin" / "nerivane");
        fs::create_directory_symlink(root / "loop", root / "loop");
    }
    void TearDown() override { fs::remove_all(root); }

    // The program as a user starts it; a start that hangs is ended after a while.
    ProgramRun Start(const std::string& argument) {
        const std::string command = "env HOME='" + (root / "home").string() +
                                    "' XDG_CONFIG_HOME= XDG_DOCUMENTS_DIR= "
                                    "QT_QPA_PLATFORM=offscreen NERIVANE_EXIT_AFTER_FIRST_PAINT=1 "
                                    "timeout 60 '" +
                                    (root / "bin" / "nerivane").string() + "' '" + argument +
                                    "' 2>&1";
        FILE* pipe = ::popen(command.c_str(), "r");
        ProgramRun run{-1, {}};
        if (pipe == nullptr) return run;
        char buffer[512];
        while (std::fgets(buffer, sizeof buffer, pipe) != nullptr) run.output += buffer;
        run.status = WEXITSTATUS(::pclose(pipe));
        return run;
    }
    std::string TooLong() const { return (root / std::string(5000, 'a')).string() + ".kq_opamp"; }

    fs::path root;
    fs::path files;
};

struct Surroundings {
    const char* what;
    std::function<std::string(Environments&)> prepare;  // returns the argument to start with
    const char* says;
};

TEST_F(Environments, EveryStartPaintsAndSaysWhatItCouldNotUse) {
    const Surroundings cases[] = {
        {"a settings folder",
         [](Environments& e) {
             fs::create_directory(e.files / "Settings.txt");
             return std::string();
         },
         "cannot be read"},
        {"a settings pipe",
         [](Environments& e) {
             ::mkfifo((e.files / "Settings.txt").c_str(), 0600);
             return std::string();
         },
         "not a regular file"},
        {"recent files that cannot be checked",
         [](Environments& e) {
             ProgramSettings settings;
             settings.recentFiles = {(e.root / "loop" / "a.kq_opamp").string(), e.TooLong(), "",
                                     ""};
             std::ofstream(e.files / "Settings.txt") << SettingsText(settings);
             return std::string();
         },
         ""},
        {"a design that is a pipe",
         [](Environments& e) {
             ::mkfifo((e.root / "pipe.kq_opamp").c_str(), 0600);
             return (e.root / "pipe.kq_opamp").string();
         },
         "not a regular file"},
        {"a design through a loop of links",
         [](Environments& e) { return (e.root / "loop" / "a.kq_opamp").string(); },
         "symbolic links"},
        {"a design name too long", [](Environments& e) { return e.TooLong(); }, "too long"},
    };
    for (const Surroundings& c : cases) {
        fs::remove_all(files);
        fs::create_directories(files);
        const ProgramRun run = Start(c.prepare(*this));
        EXPECT_EQ(run.status, 0) << c.what << "\n" << run.output;
        EXPECT_NE(run.output.find("first paint"), std::string::npos) << c.what << run.output;
        EXPECT_NE(run.output.find(c.says), std::string::npos) << c.what << "\n" << run.output;
    }
}

}  // namespace
}  // namespace nerivane
