#include "cli/Cli.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <nlohmann/json.hpp>
#include <sstream>

#include "numerics/Polymain.h"

namespace nerivane::cli {
namespace {

struct CliRun {
    int status;
    std::string out;
    std::string err;
};

CliRun RunWith(std::vector<std::string> args) {
    args.insert(args.begin(), "nerivane-cli");
    std::ostringstream out, err;
    const int status = RunCli(args, out, err);
    return {status, out.str(), err.str()};
}

nlohmann::json JsonOf(std::vector<std::string> args) {
    args.push_back("--json");
    args.push_back("-");
    const CliRun run = RunWith(args);
    EXPECT_EQ(run.status, 0) << run.err;
    return nlohmann::json::parse(run.out);
}

TEST(Cli, UnreadablePolesRepairToTheDefaultWithAWarning) {
    const CliRun run = RunWith({"--poles", "abc"});
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.err.find("warning: NumPolesBox: \"abc\" replaced by \"3\""), std::string::npos)
        << run.err;
}

struct UsageCase {
    std::vector<std::string> args;
    const char* mentions;
};

TEST(Cli, UsageErrorsExitWithStatusTwoAndWriteNothing) {
    const UsageCase cases[] = {
        {{"--response", "foo"}, "--response"},
        {{"--frobnicate"}, "frobnicate"},
        {{"--poles"}, "--poles"},
    };
    for (const UsageCase& c : cases) {
        const CliRun run = RunWith(c.args);
        EXPECT_EQ(run.status, 2) << c.mentions;
        EXPECT_TRUE(run.out.empty()) << c.mentions;
        EXPECT_NE(run.err.find(c.mentions), std::string::npos) << run.err;
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    }
}

TEST(Cli, JsonHoldsTheDesignRepairsAndPrototype) {
    const nlohmann::json result =
        JsonOf({"--response", "chebyshev", "--poles", "25", "--ripple", "0.5"});
    const nlohmann::json& design = result["design"];
    EXPECT_EQ(design["response"], "chebyshev");
    EXPECT_EQ(design["response_index"], 1);
    EXPECT_EQ(design["topology"], "vcvs-lpf");
    EXPECT_EQ(design["poles"], 20);
    EXPECT_EQ(design["sections"], 10);
    EXPECT_EQ(design["f0_hz"], 5000.0);
    EXPECT_EQ(design["threshold_db"], -20.0);
    EXPECT_EQ(design["c1_f"].size(), 20u);
    EXPECT_EQ(design["cap_tol"], 0.1);
    EXPECT_EQ(design["res_tol"], 0.01);
    EXPECT_EQ(design["mode"], "exact");

    // 20 poles lower the Chebyshev ripple limit to 0.1 dB: two repairs.
    ASSERT_EQ(result["repairs"].size(), 2u);
    EXPECT_EQ(result["repairs"][0]["box"], "NumPolesBox");
    EXPECT_EQ(result["repairs"][0]["typed"], "25");
    EXPECT_EQ(result["repairs"][0]["repaired"], "20");
    EXPECT_EQ(result["repairs"][1]["box"], "RippleBox");
    EXPECT_EQ(result["repairs"][1]["repaired"], "0.100");
    EXPECT_EQ(design["ripple_db"], 0.1);
    EXPECT_TRUE(result["messages"].empty());
    EXPECT_EQ(result["prototype"].size(), 10u);
}

// The JSON's doubles are the program's doubles, bit for bit.
TEST(Cli, PrototypeNumbersSurviveTheJsonRoundTrip) {
    const nlohmann::json result = JsonOf({"--response", "bessel", "--poles", "7"});
    ProtoSections expected;
    const int count = BuildPrototype(Bessel, 7, 0.2, 0.0, expected).sectionCount;
    ASSERT_EQ(result["prototype"].size(), static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const nlohmann::json& section = result["prototype"][i];
        EXPECT_EQ(section["den_s2"].get<double>(), expected.DenS2[i]);
        EXPECT_EQ(section["den_s1"].get<double>(), expected.DenS1[i]);
        EXPECT_EQ(section["den_s0"].get<double>(), expected.DenS0[i]);
        EXPECT_EQ(section["num_s0"].get<double>(), expected.NumS0[i]);
    }
}

TEST(Cli, GammaOutOfRangeIsClampedAndReported) {
    const nlohmann::json result = JsonOf({"--gamma", "1.5"});
    EXPECT_EQ(result["design"]["gamma"], 1.0);
    ASSERT_EQ(result["repairs"].size(), 1u);
    EXPECT_EQ(result["repairs"][0]["box"], "GammaBox");
    EXPECT_EQ(result["repairs"][0]["repaired"], "1.00");
}

TEST(Cli, UnwritableJsonFileExitsWithStatusOne) {
    const CliRun run = RunWith({"--json", "/nonexistent-folder/result.json"});
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("/nonexistent-folder/result.json"), std::string::npos);
}

// The installed program, as a script runs it.
TEST(Cli, ProgramRunsAsAProcess) {
    const std::string command = std::string(NERIVANE_CLI_PATH) + " --poles abc --json - 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string output;
    char buffer[4096];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) output.append(buffer, n);
    const int status = pclose(pipe);
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_NE(output.find("warning: NumPolesBox"), std::string::npos);
    EXPECT_NE(output.find("\"prototype\""), std::string::npos);

    const std::string bad = std::string(NERIVANE_CLI_PATH) + " --response foo >/dev/null 2>&1";
    EXPECT_EQ(WEXITSTATUS(std::system(bad.c_str())), 2);
}

}  // namespace
}  // namespace nerivane::cli
