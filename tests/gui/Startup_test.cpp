// The program as it starts in a new home: the user's folders appear below the documents
// folder, and a program without its run-time files says so and ends.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace nerivane {
namespace {

namespace fs = std::filesystem;

struct ProgramRun {
    int status;
    std::string output;
};

ProgramRun Start(const fs::path& program, const fs::path& home) {
    const std::string command = "env HOME='" + home.string() +
                                "' XDG_CONFIG_HOME= XDG_DOCUMENTS_DIR= QT_QPA_PLATFORM=offscreen "
                                "NERIVANE_EXIT_AFTER_FIRST_PAINT=1 '" +
                                program.string() + "' 2>&1";
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

}  // namespace
}  // namespace nerivane
