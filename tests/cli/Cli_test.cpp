// The command line beyond what its golden table freezes: usage errors, --strict, the JSON's
// exact doubles, outputs that agree with each other, design files in and out, the process.
#include "cli/Cli.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "numerics/Polymain.h"
#include "numerics/Sivalue.h"

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

struct UsageCase {
    std::vector<std::string> args;
    const char* mentions;
};

std::string FileText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

TEST(Cli, UsageErrorsExitWithStatusTwoAndWriteNothing) {
    const UsageCase cases[] = {
        {{"--response", "foo"}, "--response"},
        {{"--frobnicate"}, "frobnicate"},
        {{"--poles"}, "--poles"},
        {{"--topology", "lowpass"}, "--topology"},
        {{"--mode", "best"}, "--mode"},
        {{"--res-tol", "3"}, "--res-tol"},
        {{"--opamp", "fast"}, "--opamp"},
        {{"--seed", "-1"}, "--seed"},
        {{"--sweep", "octave"}, "--sweep"},
        {{"--traces", "mag10,delay"}, "--traces"},
        {{"--mag", "log"}, "--mag"},
        {{"--phase", "unwrapped"}, "--phase"},
        {{"--schematic", "filter.gif"}, "--schematic"},
    };
    for (const UsageCase& c : cases) {
        const CliRun run = RunWith(c.args);
        EXPECT_EQ(run.status, 2) << c.mentions;
        EXPECT_TRUE(run.out.empty()) << c.mentions;
        EXPECT_NE(run.err.find(c.mentions), std::string::npos) << run.err;
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    }
}

// A script that wants no repairs asks for --strict: any warning, note or message is then a
// usage error and nothing is written.
TEST(Cli, StrictTurnsWarningsIntoUsageErrors) {
    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"--c1", "big", "--strict"},
          std::vector<std::string>{"--poles", "25", "--json", "-", "--strict"}}) {
        const CliRun run = RunWith(args);
        EXPECT_EQ(run.status, 2) << run.err;
        EXPECT_TRUE(run.out.empty());
        EXPECT_NE(run.err.find("nerivane-cli: --strict"), std::string::npos) << run.err;
    }
    EXPECT_EQ(RunWith({"--poles", "4", "--strict"}).status, 0);
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

TEST(Cli, WorstCaseAddsTheEnvelopeAroundTheNominalResponse) {
    const nlohmann::json result = JsonOf({"--mode", "worst", "--runs", "20", "--seed", "5"});
    ASSERT_TRUE(result.contains("worst_case"));
    EXPECT_EQ(result["worst_case"]["runs"], 20);
    EXPECT_EQ(result["design"]["runs"], 20);
    const nlohmann::json& re = result["response"]["re"];
    const nlohmann::json& im = result["response"]["im"];
    for (int k = 0; k < 1024; k += 97) {
        const double db = 10.0 * std::log10(re[k].get<double>() * re[k].get<double>() +
                                            im[k].get<double>() * im[k].get<double>());
        EXPECT_LE(result["worst_case"]["mag_db_min"][k].get<double>(), db + 1e-9);
        EXPECT_GE(result["worst_case"]["mag_db_max"][k].get<double>(), db - 1e-9);
    }
    EXPECT_EQ(JsonOf({"--mode", "worst", "--runs", "20", "--seed", "5"}), result);
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

// Elements the netlist places in the section subcircuits: resistors, capacitors, op amps.
int PlacedElements(const std::string& netlist) {
    std::istringstream lines(netlist);
    std::string line;
    bool inSection = false;
    int count = 0;
    while (std::getline(lines, line)) {
        if (line.starts_with(".subckt section")) inSection = true;
        if (line.starts_with(".ends")) inSection = false;
        if (inSection && (line[0] == 'R' || line[0] == 'C' || line.starts_with("Xopamp"))) ++count;
    }
    return count;
}

// Every part value the JSON reports is on the schematic, and the parts list has one row per
// element the netlist places, each under its own designator.
TEST(Cli, SchematicAndPartsListCoverEveryPartOfTheDesign) {
    const std::string svg = ::testing::TempDir() + "nerivane_schematic.svg";
    for (const char* topology :
         {"vcvs-lpf", "mfb-lpf", "vcvs-hpf", "mfb-hpf", "vcvs-bpf", "mfb-bpf", "notch"}) {
        for (const char* poles : {"3", "4"}) {
            const std::vector<std::string> design = {"--topology", topology,   "--poles",   poles,
                                                     "--mode",     "standard", "--gain-db", "6"};
            std::vector<std::string> args = design;
            args.insert(args.end(), {"--schematic", svg});
            const nlohmann::json result = JsonOf(args);
            const std::string drawing = FileText(svg);
            args = design;
            args.insert(args.end(), {"--bom", "-"});
            const std::string bom = RunWith(args).out;
            for (const nlohmann::json& section : result["components"]) {
                for (const auto& [role, value] : section.items()) {
                    const double v = value.get<double>();
                    if (!(v > 0.0 && v < 1e47)) continue;
                    EXPECT_NE(drawing.find("(exact " + ExactText(v) + " "), std::string::npos)
                        << topology << " " << poles << " poles: " << role << " = " << v;
                    EXPECT_NE(bom.find("," + ExactText(v) + ","), std::string::npos)
                        << topology << " " << poles << " poles: " << role << " = " << v;
                }
            }
            args = design;
            args.insert(args.end(), {"--spice", "-"});
            const int rows = static_cast<int>(std::count(bom.begin(), bom.end(), '\n')) - 1;
            EXPECT_EQ(rows, PlacedElements(RunWith(args).out)) << topology << " " << poles;
            std::istringstream lines(bom);
            std::set<std::string> designators;
            std::string line;
            while (std::getline(lines, line)) designators.insert(line.substr(0, line.find(',')));
            EXPECT_EQ(static_cast<int>(designators.size()), rows + 1) << bom;
        }
    }
}

// A design saved by the command line opens again with every box as it was.
TEST(Cli, SaveThenOpenGivesTheSameDesign) {
    const std::string path = ::testing::TempDir() + "nerivane_cli_design.kq_opamp";
    const std::vector<std::string> design = {
        "--topology", "mfb-hpf",   "--response", "chebyshev", "--poles", "5",      "--f0",
        "2.5k",       "--gain-db", "-3",         "--ripple",  "0.4",     "--mode", "standard",
        "--cap-tol",  "5",         "--res-tol",  "2",         "--opamp", "3M,22"};
    std::vector<std::string> saving = design;
    saving.insert(saving.end(), {"--save", path});
    const CliRun saved = RunWith(saving);
    ASSERT_EQ(saved.status, 0);
    EXPECT_EQ(saved.out, "");  // saving is an output: no report besides
    nlohmann::json original = JsonOf(design);
    nlohmann::json reopened = JsonOf({"--open", path});
    EXPECT_EQ(reopened["design"], original["design"]);
    EXPECT_EQ(reopened["components"], original["components"]);
    EXPECT_TRUE(reopened["repairs"].empty()) << reopened["repairs"];
    // Options given with --open change the opened design.
    EXPECT_EQ(JsonOf({"--open", path, "--poles", "3"})["design"]["poles"], 3);
    std::remove(path.c_str());
}

TEST(Cli, RejectedOrMissingDesignFilesExitWithStatusOne) {
    const std::string bad = ::testing::TempDir() + "nerivane_cli_bad.kq_opamp";
    FILE* file = std::fopen(bad.c_str(), "wb");
    std::fputs("not a design", file);
    std::fclose(file);
    const CliRun rejected = RunWith({"--open", bad, "--json", "-"});
    EXPECT_EQ(rejected.status, 1);
    EXPECT_TRUE(rejected.out.empty());
    EXPECT_NE(rejected.err.find("Open File operation failed due to an incompatibility with this "
                                "program."),
              std::string::npos);
    const CliRun missing = RunWith({"--open", bad + ".none.kq_opamp"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_NE(missing.err.find("This file doesn't exist."), std::string::npos);
    EXPECT_EQ(RunWith({"--save", "/proc/nerivane.kq_opamp"}).status, 1);
    std::remove(bad.c_str());
}

}  // namespace
}  // namespace nerivane::cli
