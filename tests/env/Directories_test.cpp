// The program's folders: the user's nested folders made under the documents folder (once),
// the run-time files found beside the program or where it is installed, and an environment
// that cannot give a home ending the program with its message.
#include "env/Directories.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <map>

namespace nerivane {
namespace {

namespace fs = std::filesystem;

TEST(SettleDirectories, MakesTheUsersFoldersAndFindsTheRunTimeFilesOrSaysWhy) {
    const fs::path root =
        fs::temp_directory_path() / ("nerivane_env_" + std::to_string(::getpid()));
    const fs::path here = fs::current_path();
    const fs::path home = root / "home", files = "Kestrune/Nerivane/Files";
    std::map<std::string, std::string> environment;
    DirectoryInputs inputs;
    struct Case {
        const char* what;
        std::function<void()> prepare;
        const char* fatal;      // or nullptr
        fs::path userFiles;     // under home
        fs::path runTimeFiles;  // under root
    };
    const Case cases[] = {
        {"a first start", [] {}, nullptr, "Documents" / files, "bin/RunTime Files"},
        {"the desktop's documents folder",
         [&] { inputs.documentsFolder = (home / "Papers").string(); }, nullptr, "Papers" / files,
         "bin/RunTime Files"},
        {"an installed program",
         [&] {
             fs::remove_all(root / "bin" / RunTimeFilesFolder);
             fs::create_directories(root / "share/nerivane" / RunTimeFilesFolder);
         },
         nullptr, "Documents" / files, "share/nerivane/RunTime Files"},
        {"no run-time files",
         [&] { fs::remove_all(root / "bin" / RunTimeFilesFolder); },
         ReinstallMessage,
         {},
         {}},
        {"no HOME", [&] { environment.erase("HOME"); }, ExpansionFailedMessage, {}, {}},
        {"no HOME but an account",
         [&] {
             environment.erase("HOME");
             inputs.accountHome = home.string();
         },
         nullptr, "Documents" / files, "bin/RunTime Files"},
        {"a TMPDIR too long",
         [&] { environment["TMPDIR"] = std::string(40000, 'x'); },
         ExpansionFailedMessage,
         {},
         {}},
    };
    for (const Case& c : cases) {
        fs::remove_all(root);
        fs::create_directories(home);
        fs::create_directories(root / "bin" / RunTimeFilesFolder);
        environment = {{"HOME", home.string()}};
        inputs = {(root / "bin").string(), "", [&](const char* name) -> std::optional<std::string> {
                      const auto found = environment.find(name);
                      if (found == environment.end()) return std::nullopt;
                      return found->second;
                  }};
        c.prepare();
        const DirectoriesOutcome outcome = SettleDirectories(inputs);
        if (c.fatal != nullptr) {
            EXPECT_FALSE(outcome.directories) << c.what;
            EXPECT_EQ(outcome.fatalMessage, c.fatal) << c.what;
            EXPECT_FALSE(fs::exists(home / "Documents")) << c.what;  // nothing made before
            continue;
        }
        ASSERT_TRUE(outcome.directories) << c.what << ": " << outcome.fatalMessage;
        EXPECT_EQ(fs::path(outcome.directories->userFilesDir), home / c.userFiles) << c.what;
        EXPECT_EQ(fs::current_path(), home / c.userFiles) << c.what;
        EXPECT_TRUE(fs::equivalent(outcome.directories->runTimeFilesDir, root / c.runTimeFiles));
        // A second start makes nothing new.
        const auto written = fs::last_write_time(home / c.userFiles.begin()->string());
        ASSERT_TRUE(SettleDirectories(inputs).directories);
        EXPECT_EQ(fs::last_write_time(home / c.userFiles.begin()->string()), written) << c.what;
    }
    fs::current_path(here);
    fs::remove_all(root);
}

}  // namespace
}  // namespace nerivane
