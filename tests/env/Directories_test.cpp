#include "env/Directories.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <map>

namespace nerivane {
namespace {

namespace fs = std::filesystem;

class Folders : public ::testing::Test {
  protected:
    void SetUp() override {
        char here[4096];
        ASSERT_NE(::getcwd(here, sizeof here), nullptr);
        previous = here;
        root = fs::temp_directory_path() / ("nerivane_env_" + std::to_string(::getpid()));
        fs::remove_all(root);
        fs::create_directories(root / "home");
        fs::create_directories(root / "bin" / RunTimeFilesFolder);
        environment["HOME"] = (root / "home").string();
    }
    void TearDown() override {
        ASSERT_EQ(::chdir(previous.c_str()), 0);
        fs::remove_all(root);
    }
    DirectoryInputs Inputs() {
        return {(root / "bin").string(), "",
                [this](const char* name) -> std::optional<std::string> {
                    const auto found = environment.find(name);
                    if (found == environment.end()) return std::nullopt;
                    return found->second;
                }};
    }

    fs::path root;
    std::string previous;
    std::map<std::string, std::string> environment;
};

TEST_F(Folders, FirstStartCreatesTheNestedFoldersAndASecondCreatesNothing) {
    const DirectoriesOutcome first = SettleDirectories(Inputs());
    ASSERT_TRUE(first.directories) << first.fatalMessage;
    const fs::path files = root / "home" / "Documents" / "Kestrune" / "Nerivane" / "Files";
    EXPECT_TRUE(fs::is_directory(files));
    EXPECT_EQ(fs::path(first.directories->userFilesDir), files);
    EXPECT_EQ(fs::current_path(), files);
    EXPECT_EQ(fs::path(first.directories->runTimeFilesDir), root / "bin" / RunTimeFilesFolder);

    const auto written = fs::last_write_time(root / "home" / "Documents" / "Kestrune");
    const DirectoriesOutcome second = SettleDirectories(Inputs());
    ASSERT_TRUE(second.directories);
    EXPECT_EQ(fs::last_write_time(root / "home" / "Documents" / "Kestrune"), written);
    std::size_t entries = 0;
    for ([[maybe_unused]] const auto& entry : fs::recursive_directory_iterator(root / "home"))
        ++entries;
    EXPECT_EQ(entries, 4u);  // Documents, Kestrune, Nerivane, Files
}

TEST_F(Folders, TheDesktopsDocumentsFolderIsUsedWhenGiven) {
    DirectoryInputs inputs = Inputs();
    inputs.documentsFolder = (root / "home" / "Papers").string();
    fs::create_directories(inputs.documentsFolder);
    const DirectoriesOutcome outcome = SettleDirectories(inputs);
    ASSERT_TRUE(outcome.directories);
    EXPECT_TRUE(fs::is_directory(root / "home" / "Papers" / "Kestrune" / "Nerivane" / "Files"));
}

TEST_F(Folders, MissingRunTimeFilesEndTheProgram) {
    fs::remove_all(root / "bin" / RunTimeFilesFolder);
    const DirectoriesOutcome outcome = SettleDirectories(Inputs());
    EXPECT_FALSE(outcome.directories);
    EXPECT_EQ(outcome.fatalMessage, ReinstallMessage);
    EXPECT_FALSE(fs::exists(root / "home" / "Documents"));  // nothing made before the check
}

TEST_F(Folders, AnInstalledProgramFindsItsSharedFiles) {
    fs::remove_all(root / "bin" / RunTimeFilesFolder);
    fs::create_directories(root / "share" / "nerivane" / RunTimeFilesFolder);
    const DirectoriesOutcome outcome = SettleDirectories(Inputs());
    ASSERT_TRUE(outcome.directories);
    EXPECT_TRUE(fs::equivalent(outcome.directories->runTimeFilesDir,
                               root / "share" / "nerivane" / RunTimeFilesFolder));
}

TEST_F(Folders, AnUnusableEnvironmentEndsTheProgram) {
    environment.erase("HOME");
    EXPECT_EQ(SettleDirectories(Inputs()).fatalMessage, ExpansionFailedMessage);
    // Without HOME the account's home folder serves.
    DirectoryInputs withAccount = Inputs();
    withAccount.accountHome = (root / "home").string();
    const DirectoriesOutcome outcome = SettleDirectories(withAccount);
    ASSERT_TRUE(outcome.directories) << outcome.fatalMessage;
    EXPECT_EQ(outcome.directories->userFilesDir,
              (root / "home" / "Documents" / "Kestrune" / "Nerivane" / "Files").string());
    environment["HOME"] = (root / "home").string();
    environment["TMPDIR"] = std::string(40000, 'x');
    EXPECT_EQ(SettleDirectories(Inputs()).fatalMessage, ExpansionFailedMessage);
}

}  // namespace
}  // namespace nerivane
