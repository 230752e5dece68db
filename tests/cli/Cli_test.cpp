// The command line: a table of designs whose every output (status, messages, JSON, report,
// CSV, netlist, parts list, schematic, saved file) is compared with the golden file kept for it
// under tests/data/golden/, checked when it was made against the oracle tests; then what a
// golden file cannot hold: the JSON's exact doubles and image files. Files in hostile
// surroundings are the environment tests'. After an intended change, remake the golden files
// with NERIVANE_UPDATE_GOLDEN=1 set and read the diff.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "cli/Cli.h"
#include "numerics/Polymain.h"
#include "response/Traces.h"
#include "support/Golden.h"

namespace nerivane::cli {
namespace {

namespace fs = std::filesystem;

// Long outputs keep their ends and every eighth line or point: enough for any fault in a
// trace to show, small enough to read in a diff.
bool Kept(std::size_t index, std::size_t size) {
    return size <= 64 || index < 4 || index + 4 >= size || index % 8 == 0;
}

std::string Number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

// A level far below anything a filter passes is rounding noise at a notch's null (-1225 dB in
// one build, -1228 dB in another): it is written as the floor.
double Shown(const std::string& path, const nlohmann::json& value) {
    const double x = value.get<double>();
    return path.find("_db") != std::string::npos && x < -300.0 ? -300.0 : x;
}

void Flatten(const nlohmann::json& value, const std::string& path, std::ostringstream& out) {
    if (value.is_object()) {
        for (const auto& [key, item] : value.items()) Flatten(item, path + "." + key, out);
    } else if (value.is_array()) {
        double scale = 0.0;    // of a list of numbers, which the comparison allows for
        bool numbers = false;  // some of a trace's points may be null
        for (const nlohmann::json& item : value) {
            if (!item.is_number()) continue;
            scale = std::max(scale, std::abs(Shown(path, item)));
            numbers = true;
        }
        out << path << " #" << value.size();
        if (numbers) out << " max " << Number(scale);
        out << "\n";
        for (std::size_t i = 0; i < value.size(); ++i)
            if (Kept(i, value.size())) Flatten(value[i], path + "[" + std::to_string(i) + "]", out);
    } else if (value.is_number()) {
        out << path << " = " << Number(Shown(path, value)) << "\n";
    } else {
        out << path << " = " << value.dump() << "\n";
    }
}

std::string Sampled(const std::string& text) {
    const std::vector<std::string> lines = golden::Lines(text);
    std::ostringstream out;
    for (std::size_t i = 0; i < lines.size(); ++i)
        if (Kept(i, lines.size())) out << lines[i] << "\n";
    return out.str();
}

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

struct Case {
    std::string name;
    std::vector<std::string> args;
};

std::vector<Case> Cases() {
    std::vector<Case> cases;
    std::istringstream in(golden::ReadText(golden::Folder / "cases.txt"));
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream words(line);
        Case c;
        words >> c.name;
        for (std::string word; words >> word;) c.args.push_back(word);
        cases.push_back(c);
    }
    return cases;
}

// What a case gives a user: exit status, standard error, standard output (JSON flattened) and
// every file it names under TMP/.
std::string Outcome(const Case& c, const fs::path& scratch) {
    std::vector<std::string> args;
    std::vector<fs::path> files;
    for (std::string arg : c.args) {
        if (arg.starts_with("TMP/")) {
            files.push_back(scratch / arg.substr(4));
            arg = files.back().string();
        }
        args.push_back(arg);
    }
    const CliRun run = RunWith(args);
    std::ostringstream all;
    all << "status " << run.status << "\n== stderr\n" << run.err << "== stdout\n";
    if (run.out.starts_with("{")) {
        Flatten(nlohmann::json::parse(run.out), "", all);
    } else {
        all << Sampled(run.out);
    }
    for (const fs::path& file : files) {
        const std::string bytes = golden::ReadText(file);
        all << "== " << file.filename().string() << "\n";
        if (file.extension() != ".kq_opamp") {
            all << bytes << "\n";
            continue;
        }
        // A design file is bytes: 32 of them a line, in hex.
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            char hex[4];
            std::snprintf(hex, sizeof hex, "%02x", static_cast<unsigned char>(bytes[i]));
            all << hex << (i % 32 == 31 || i + 1 == bytes.size() ? "\n" : "");
        }
    }
    return all.str();
}

TEST(Golden, EveryCaseGivesWhatItGaveWhenChecked) {
    const fs::path scratch =
        fs::temp_directory_path() / ("nerivane_golden_" + std::to_string(getpid()));
    fs::create_directories(scratch);
    const std::vector<Case> cases = Cases();
    ASSERT_GT(cases.size(), 20u);
    for (const Case& c : cases) golden::ExpectGolden(c.name, Outcome(c, scratch));
    fs::remove_all(scratch);
}

// The command line beyond what its golden table freezes (usage errors and --strict among its
// cases): the JSON's exact doubles and the image files. Files in hostile surroundings are the
// environment tests'.
nlohmann::json JsonOf(std::vector<std::string> args) {
    args.push_back("--json");
    args.push_back("-");
    const CliRun run = RunWith(args);
    EXPECT_EQ(run.status, 0) << run.err;
    return nlohmann::json::parse(run.out);
}

// The JSON's doubles are the program's doubles, bit for bit.
TEST(Cli, PrototypeNumbersSurviveTheJsonRoundTrip) {
    const nlohmann::json result = JsonOf({"--response", "bessel", "--poles", "7"});
    ProtoSections expected;
    const int count = BuildPrototype(Response::Bessel, 7, 0.2, 0.0, expected).sectionCount;
    ASSERT_EQ(result["prototype"].size(), static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const nlohmann::json& section = result["prototype"][i];
        EXPECT_EQ(section["den_s2"].get<double>(), expected.DenS2[i]);
        EXPECT_EQ(section["den_s1"].get<double>(), expected.DenS1[i]);
        EXPECT_EQ(section["den_s0"].get<double>(), expected.DenS0[i]);
        EXPECT_EQ(section["num_s0"].get<double>(), expected.NumS0[i]);
    }
}

// Every number under a trace or the envelope, undrawn points being null.
void ForEachTraceNumber(const nlohmann::json& value, const std::function<void(double)>& visit) {
    if (value.is_structured()) {
        for (const nlohmann::json& item : value) ForEachTraceNumber(item, visit);
    } else if (value.is_number()) {
        visit(value.get<double>());
    }
}

// A script reads the parts and the traces as they stand: every part the report prints is in
// `parts` with the same text and the stored value, and no trace holds the undrawn-point marker.
TEST(Cli, JsonPartsAreTheReportsAndTracesHoldNoMarker) {
    const std::vector<std::vector<std::string>> designs = {
        {"--topology", "vcvs-lpf", "--poles", "5", "--traces", "mag10,phase,gd"},
        {"--topology", "mfb-lpf", "--poles", "4", "--gain-db", "-20"},
        {"--topology", "vcvs-hpf", "--poles", "1", "--threshold", "3"},
        {"--topology", "mfb-hpf", "--poles", "3", "--mode", "standard"},
        {"--topology", "vcvs-bpf", "--poles", "4", "--mode", "worst", "--runs", "5"},
        {"--topology", "mfb-bpf", "--poles", "2", "--bw", "1e9"},
        {"--topology", "notch", "--poles", "3", "--f0", "60", "--bw", "20"},
        {"--topology", "vcvs-lpf", "--poles", "2", "--c1", "1", "--c2", "1p"},
    };
    const std::regex sectionLine(R"(Section (\d+))"), partLine(R"(([RC]\d) = (.*))");
    int undrawn = 0;
    for (const std::vector<std::string>& design : designs) {
        const nlohmann::json result = JsonOf(design);
        SCOPED_TRACE(result["design"]["topology"].get<std::string>());
        EXPECT_EQ(result["format_version"], 1);
        const nlohmann::json& parts = result["parts"];
        int section = -1;
        std::size_t reported = 0;
        for (const std::string line : result["report"]) {
            std::smatch m;
            if (std::regex_match(line, m, sectionLine)) section = std::stoi(m[1]);
            if (line.starts_with("What each stage needs")) break;
            if (!std::regex_match(line, m, partLine)) continue;
            ++reported;
            const auto found = std::find_if(parts.begin(), parts.end(), [&](const auto& part) {
                return part["section"] == section && part["role"] == m[1].str();
            });
            ASSERT_NE(found, parts.end()) << line;
            EXPECT_EQ((*found)["printed"], m[2].str()) << line;
            const nlohmann::json& stored = result["components"][section][m[1].str()];
            if ((*found)["state"] == "value") {
                EXPECT_EQ((*found)["value"], stored) << line;
            }
            EXPECT_EQ((*found)["value"].is_null(), (*found)["state"] != "value") << line;
        }
        EXPECT_GT(reported, 0u);
        EXPECT_GE(parts.size(), reported);
        for (const char* traces : {"traces", "worst_case"}) {
            if (!result.contains(traces)) continue;
            int markers = 0;
            ForEachTraceNumber(result[traces],
                               [&markers](double v) { markers += v == NoPlotValue; });
            EXPECT_EQ(markers, 0) << traces;
            for (const auto& [name, values] : result[traces].items())
                if (values.is_array())
                    undrawn += static_cast<int>(std::count(values.begin(), values.end(), nullptr));
        }
    }
    EXPECT_GT(undrawn, 0) << "no design had an undrawn point: the marker check proves nothing";
}

TEST(Cli, PlotIsWrittenAsPngOrBmp) {
    const std::string png = ::testing::TempDir() + "nerivane_plot.png";
    const std::string bmp = ::testing::TempDir() + "nerivane_plot.bmp";
    ASSERT_EQ(RunWith({"--plot", png, "--width", "640", "--height", "400"}).status, 0);
    ASSERT_EQ(RunWith({"--plot", bmp, "--traces", "mag10,phase,gd"}).status, 0);
    EXPECT_TRUE(golden::ReadText(png).starts_with("\x89PNG"));
    EXPECT_TRUE(golden::ReadText(bmp).starts_with("BM"));
    std::remove(png.c_str());
    std::remove(bmp.c_str());
}

}  // namespace
}  // namespace nerivane::cli
