// The built command line in hostile surroundings, as a script meets it: full and closed
// standard output, symbolic links, read-only files, pipes, long names, endings it cannot
// write. Each case checks the exit status, the message and the bytes of the files involved.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>

#include "app/Initializevars.h"
#include "files/Filesaveread.h"

namespace nerivane {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t DesignFileBytes = 2016;

std::string Bytes(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

struct Outcome {
    int status;
    std::string messages;  // standard error
};

struct Case {
    const char* what;
    std::function<void(const fs::path& dir)> prepare;
    std::string arguments;  // shell words; DIR stands for the scratch folder
    int status;
    const char* says;
    std::function<void(const fs::path& dir)> check;
};

class CliEnvironments : public ::testing::Test {
  protected:
    void SetUp() override {
        dir = fs::temp_directory_path() / ("nerivane_cli_env_" + std::to_string(::getpid()));
        fs::remove_all(dir);
        fs::create_directories(dir);
    }
    void TearDown() override { fs::remove_all(dir); }

    Outcome Start(std::string arguments) const {
        for (std::size_t at; (at = arguments.find("DIR")) != std::string::npos;)
            arguments.replace(at, 3, dir.string());
        const fs::path errors = dir / "stderr.txt";
        const std::string command = "cd '" + dir.string() + "' && timeout 60 '" +
                                    NERIVANE_CLI_PATH + "' " + arguments + " 2>'" +
                                    errors.string() + "'";
        const int status = std::system(command.c_str());
        return {WEXITSTATUS(status), Bytes(errors)};
    }

    fs::path dir;
};

const auto Nothing = [](const fs::path&) {};

TEST_F(CliEnvironments, EachFailureExitsWithItsStatusAndMessageAndKeepsTheFiles) {
    const Case cases[] = {
        {"JSON to a full disk", Nothing, "--json - >/dev/full", 1,
         "standard output: No space left on device", Nothing},
        {"the report to a closed output", Nothing, "--report >&-", 1, "standard output", Nothing},
        {"the help to a full disk", Nothing, "--help >/dev/full", 1, "standard output", Nothing},
        {"a plot ending the program cannot write", Nothing, "--plot DIR/p.jpg", 2, "--plot",
         [](const fs::path& d) { EXPECT_FALSE(fs::exists(d / "p.jpg")); }},
        {"a plot too large", Nothing, "--plot DIR/p.png --width 5000", 2, "64 to 4000",
         [](const fs::path& d) { EXPECT_FALSE(fs::exists(d / "p.png")); }},
        {"a save through a link",
         [](const fs::path& d) {
             std::ofstream(d / "target.kq_opamp") << "old";
             fs::create_symlink(d / "target.kq_opamp", d / "link.kq_opamp");
         },
         "--save DIR/link.kq_opamp", 0, "",
         [](const fs::path& d) {
             EXPECT_TRUE(fs::is_symlink(d / "link.kq_opamp"));
             EXPECT_EQ(Bytes(d / "target.kq_opamp").size(), DesignFileBytes);
         }},
        {"a save over a read-only design",
         [](const fs::path& d) {
             std::ofstream(d / "kept.kq_opamp") << "old";
             fs::permissions(d / "kept.kq_opamp", fs::perms::owner_read);
         },
         "--save DIR/kept.kq_opamp", 1, "read-only",
         [](const fs::path& d) { EXPECT_EQ(Bytes(d / "kept.kq_opamp"), "old"); }},
        {"a save beside what an interrupted save left",
         [](const fs::path& d) {
             std::ofstream(d / ".nerivane-saving-AbC123") << "cut off";
             fs::last_write_time(d / ".nerivane-saving-AbC123",
                                 fs::file_time_type::clock::now() - std::chrono::hours(1));
         },
         "--save DIR/next.kq_opamp", 0, "",
         [](const fs::path& d) { EXPECT_EQ(Bytes(d / "next.kq_opamp").size(), DesignFileBytes); }},
        {"a save without the extension", Nothing, "--save DIR/plain", 0, "",
         [](const fs::path& d) {
             EXPECT_EQ(Bytes(d / "plain.kq_opamp").size(), DesignFileBytes);
             EXPECT_FALSE(fs::exists(d / "plain"));
         }},
        {"a save under a name near the system's limit", Nothing,
         "--save DIR/" + std::string(246, 'n') + ".kq_opamp", 0, "",
         [](const fs::path& d) {
             EXPECT_EQ(Bytes(d / (std::string(246, 'n') + ".kq_opamp")).size(), DesignFileBytes);
         }},
        {"JSON into a folder that is not there", Nothing, "--json DIR/none/r.json", 1,
         "No such file or directory", Nothing},
        {"a design that is a pipe",
         [](const fs::path& d) { ::mkfifo((d / "pipe.kq_opamp").c_str(), 0600); },
         "--open DIR/pipe.kq_opamp", 1, "not a regular file", Nothing},
        {"words that are no option", Nothing, "--frobnicate foo", 2, "--frobnicate foo", Nothing},
        {"a design file of other bytes",
         [](const fs::path& d) { std::ofstream(d / "bad.kq_opamp") << "not a design"; },
         "--open DIR/bad.kq_opamp --json -", 1, "incompatibility with this program", Nothing},
        {"a design file that is not there", Nothing, "--open DIR/none.kq_opamp", 1,
         "This file doesn't exist.", Nothing},
        {"a design file holding a value out of range",
         [](const fs::path& d) {
             DesignState design = DefaultDesignState();
             design.NumPoles = 25;
             WriteDesignFile((d / "wild.kq_opamp").string(), design);
         },
         "--open DIR/wild.kq_opamp --json DIR/r.json", 0, "NumPoles 25 replaced by 3",
         [](const fs::path& d) {
             EXPECT_NE(Bytes(d / "r.json").find("NumPoles 25 replaced by 3"), std::string::npos);
         }},
    };
    for (const Case& c : cases) {
        fs::remove_all(dir);
        fs::create_directories(dir);
        c.prepare(dir);
        const Outcome run = Start(c.arguments);
        EXPECT_EQ(run.status, c.status) << c.what << ": " << run.messages;
        EXPECT_NE(run.messages.find(c.says), std::string::npos) << c.what << ": " << run.messages;
        c.check(dir);
        // No save in progress is left behind.
        for (const fs::directory_entry& entry : fs::directory_iterator(dir))
            EXPECT_FALSE(entry.path().filename().string().starts_with(".nerivane-saving-"))
                << c.what;
    }
}

}  // namespace
}  // namespace nerivane
