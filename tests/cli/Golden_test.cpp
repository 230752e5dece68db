// A table of designs run through the command line, every output compared with the golden file
// kept for it under tests/data/golden/. The golden files were checked when they were made (the
// oracle tests hold the numbers they rest on); here they catch any change of what a user gets.
// After an intended change, remake them and read the diff:
//     NERIVANE_UPDATE_GOLDEN=1 build/tests/cli_Golden_test
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "cli/Cli.h"

namespace nerivane::cli {
namespace {

namespace fs = std::filesystem;

const fs::path GoldenDir = fs::path(NERIVANE_TEST_DATA_DIR) / "golden";

std::string ReadText(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

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

void Flatten(const nlohmann::json& value, const std::string& path, std::ostringstream& out) {
    if (value.is_object()) {
        for (const auto& [key, item] : value.items()) Flatten(item, path + "." + key, out);
    } else if (value.is_array()) {
        out << path << " #" << value.size() << "\n";
        for (std::size_t i = 0; i < value.size(); ++i)
            if (Kept(i, value.size())) Flatten(value[i], path + "[" + std::to_string(i) + "]", out);
    } else if (value.is_number()) {
        out << path << " = " << Number(value.get<double>()) << "\n";
    } else {
        out << path << " = " << value.dump() << "\n";
    }
}

std::string Sampled(const std::string& text) {
    const std::vector<std::string> lines = Lines(text);
    std::ostringstream out;
    for (std::size_t i = 0; i < lines.size(); ++i)
        if (Kept(i, lines.size())) out << lines[i] << "\n";
    return out.str();
}

struct Case {
    std::string name;
    std::vector<std::string> args;
};

std::vector<Case> Cases() {
    std::vector<Case> cases;
    std::istringstream in(ReadText(GoldenDir / "cases.txt"));
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
    std::vector<std::string> args{"nerivane-cli"};
    std::vector<fs::path> files;
    for (std::string arg : c.args) {
        if (arg.starts_with("TMP/")) {
            files.push_back(scratch / arg.substr(4));
            arg = files.back().string();
        }
        args.push_back(arg);
    }
    std::ostringstream out, err;
    const int status = RunCli(args, out, err);
    std::ostringstream all;
    all << "status " << status << "\n== stderr\n" << err.str() << "== stdout\n";
    const std::string text = out.str();
    if (text.starts_with("{")) {
        Flatten(nlohmann::json::parse(text), "", all);
    } else {
        all << Sampled(text);
    }
    for (const fs::path& file : files)
        all << "== " << file.filename().string() << "\n" << ReadText(file) << "\n";
    return all.str();
}

// Lines match when their words match and their numbers agree to nine digits: a build with
// other optimisation may round the last bits differently.
bool SameLine(const std::string& a, const std::string& b) {
    if (a == b) return true;
    static const std::regex number(R"([-+]?(\d+\.?\d*|\.\d+)([eE][-+]?\d+)?)");
    std::sregex_iterator x(a.begin(), a.end(), number), y(b.begin(), b.end(), number), end;
    std::size_t ax = 0, by = 0;
    for (; x != end && y != end; ++x, ++y) {
        if (a.substr(ax, x->position() - ax) != b.substr(by, y->position() - by)) return false;
        const double u = std::stod(x->str()), v = std::stod(y->str());
        if (!(std::abs(u - v) <= 1e-9 * std::max(std::abs(u), std::abs(v)))) return false;
        ax = x->position() + x->length();
        by = y->position() + y->length();
    }
    return x == end && y == end && a.substr(ax) == b.substr(by);
}

TEST(Golden, EveryCaseGivesWhatItGaveWhenChecked) {
    const bool update = std::getenv("NERIVANE_UPDATE_GOLDEN") != nullptr;
    const fs::path scratch =
        fs::temp_directory_path() / ("nerivane_golden_" + std::to_string(getpid()));
    fs::create_directories(scratch);
    const std::vector<Case> cases = Cases();
    ASSERT_GT(cases.size(), 20u);
    for (const Case& c : cases) {
        const std::string got = Outcome(c, scratch);
        const fs::path golden = GoldenDir / (c.name + ".txt");
        if (update) {
            std::ofstream(golden, std::ios::binary) << got;
            continue;
        }
        const std::vector<std::string> want = Lines(ReadText(golden)), have = Lines(got);
        ASSERT_FALSE(want.empty()) << golden;
        for (std::size_t i = 0; i < std::max(want.size(), have.size()); ++i) {
            const std::string w = i < want.size() ? want[i] : "(nothing)";
            const std::string h = i < have.size() ? have[i] : "(nothing)";
            if (!SameLine(w, h)) {
                ADD_FAILURE() << c.name << " line " << i + 1 << "\n  golden: " << w
                              << "\n  now:    " << h;
                break;
            }
        }
    }
    fs::remove_all(scratch);
}

}  // namespace
}  // namespace nerivane::cli
