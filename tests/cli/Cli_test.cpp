// The command line beyond what its golden table freezes (usage errors and --strict among its
// cases): the JSON's exact doubles and the image files. Files in hostile surroundings are the
// environment tests'.
#include "cli/Cli.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
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

std::string FileText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
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

TEST(Cli, PlotIsWrittenAsPngOrBmp) {
    const std::string png = ::testing::TempDir() + "nerivane_plot.png";
    const std::string bmp = ::testing::TempDir() + "nerivane_plot.bmp";
    ASSERT_EQ(RunWith({"--plot", png, "--width", "640", "--height", "400"}).status, 0);
    ASSERT_EQ(RunWith({"--plot", bmp, "--traces", "mag10,phase,gd"}).status, 0);
    EXPECT_TRUE(FileText(png).starts_with("\x89PNG"));
    EXPECT_TRUE(FileText(bmp).starts_with("BM"));
    std::remove(png.c_str());
    std::remove(bmp.c_str());
}

}  // namespace
}  // namespace nerivane::cli
