// The program as it starts: in a new home the user's folders appear below the documents
// folder; a program without its run-time files says so and ends; and in hostile surroundings
// (a settings file that is a folder or a pipe, recent files and a design named at start that
// cannot be checked) every start paints its window and says what it could not use, never
// ending or hanging.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
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

// A start that hangs is ended after a while.
ProgramRun Start(const fs::path& program, const fs::path& home,
                 const std::string& argument = std::string()) {
    const std::string command = "env HOME='" + home.string() +
                                "' XDG_CONFIG_HOME= XDG_DOCUMENTS_DIR= QT_QPA_PLATFORM=offscreen "
                                "NERIVANE_EXIT_AFTER_FIRST_PAINT=1 timeout 60 '" +
                                program.string() + "' '" + argument + "' 2>&1";
    FILE* pipe = ::popen(command.c_str(), "r");
    ProgramRun run{-1, {}};
    if (pipe == nullptr) return run;
    char buffer[512];
    while (std::fgets(buffer, sizeof buffer, pipe) != nullptr) run.output += buffer;
    run.status = WEXITSTATUS(::pclose(pipe));
    return run;
}

class Startup : public ::testing::Test {
  protected:
    void SetUp() override {
        root = fs::temp_directory_path() / ("nerivane_startup_" + std::to_string(::getpid()));
        fs::remove_all(root);
        fs::create_directories(root / "home");
        fs::create_directories(root / "bin");
        fs::copy_file(NERIVANE_PROGRAM_PATH, root / "bin" / "nerivane");
    }
    void TearDown() override { fs::remove_all(root); }

  public:
    fs::path Files() const {
        return root / "home" / "Documents" / "Kestrune" / "Nerivane" / "Files";
    }
    std::string TooLong() const { return (root / std::string(5000, 'a')).string() + ".kq_opamp"; }
    fs::path root;
};

TEST_F(Startup, AFirstStartMakesTheUsersFoldersAndASecondMakesNothing) {
    fs::create_directories(root / "bin" / "RunTime Files");
    const ProgramRun first = Start(root / "bin" / "nerivane", root / "home");
    ASSERT_EQ(first.status, 0) << first.output;
    EXPECT_NE(first.output.find("first paint"), std::string::npos) << first.output;
    const fs::path files = root / "home" / "Documents" / "Kestrune" / "Nerivane" / "Files";
    EXPECT_TRUE(fs::is_directory(files));
    const auto made = fs::last_write_time(root / "home" / "Documents" / "Kestrune");
    ASSERT_EQ(Start(root / "bin" / "nerivane", root / "home").status, 0);
    EXPECT_EQ(fs::last_write_time(root / "home" / "Documents" / "Kestrune"), made);
}

TEST_F(Startup, WithoutItsRunTimeFilesTheProgramSaysSoAndEnds) {
    const ProgramRun run = Start(root / "bin" / "nerivane", root / "home");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.output.find("The RunTime Files directory is missing."), std::string::npos)
        << run.output;
    EXPECT_FALSE(fs::exists(root / "home" / "Documents"));
}

struct Surroundings {
    const char* what;
    std::function<std::string(Startup&)> prepare;  // returns the argument to start with
    const char* says;
};

TEST_F(Startup, EveryStartInHostileSurroundingsPaintsAndSaysWhatItCouldNotUse) {
    const Surroundings cases[] = {
        {"a settings folder",
         [](Startup& e) {
             fs::create_directory(e.Files() / "Settings.txt");
             return std::string();
         },
         "cannot be read"},
        {"a settings pipe",
         [](Startup& e) {
             ::mkfifo((e.Files() / "Settings.txt").c_str(), 0600);
             return std::string();
         },
         "not a regular file"},
        {"recent files that cannot be checked",
         [](Startup& e) {
             ProgramSettings settings;
             settings.recentFiles = {(e.root / "loop" / "a.kq_opamp").string(), e.TooLong(), "",
                                     ""};
             std::ofstream(e.Files() / "Settings.txt") << SettingsText(settings);
             return std::string();
         },
         ""},
        {"a design that is a pipe",
         [](Startup& e) {
             ::mkfifo((e.root / "pipe.kq_opamp").c_str(), 0600);
             return (e.root / "pipe.kq_opamp").string();
         },
         "not a regular file"},
        {"a design through a loop of links",
         [](Startup& e) { return (e.root / "loop" / "a.kq_opamp").string(); }, "symbolic links"},
        {"a design name too long", [](Startup& e) { return e.TooLong(); }, "too long"},
    };
    fs::create_directories(root / "bin" / "RunTime Files");
    fs::create_directory_symlink(root / "loop", root / "loop");
    for (const Surroundings& c : cases) {
        fs::remove_all(Files());
        fs::create_directories(Files());
        const ProgramRun run = Start(root / "bin" / "nerivane", root / "home", c.prepare(*this));
        EXPECT_EQ(run.status, 0) << c.what << "\n" << run.output;
        EXPECT_NE(run.output.find("first paint"), std::string::npos) << c.what << run.output;
        EXPECT_NE(run.output.find(c.says), std::string::npos) << c.what << "\n" << run.output;
    }
}

}  // namespace
}  // namespace nerivane
