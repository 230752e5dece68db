// Golden files: a text a test produced, compared line by line with the one kept under
// tests/data/golden/ when it was last checked. NERIVANE_UPDATE_GOLDEN=1 in the environment
// writes the texts instead, after an intended change; read the diff before committing it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace nerivane::golden {

inline std::string ReadText(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

inline std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

inline const std::regex NumberPattern(R"([-+]?(\d+\.?\d*|\.\d+)([eE][-+]?\d+)?)");

// The largest number a line's value holds: after " = " when there is one, else anywhere (a
// row of numbers).
inline double LineScale(const std::string& line) {
    const std::size_t equals = line.rfind(" = ");
    const std::string value = equals == std::string::npos ? line : line.substr(equals);
    double largest = 0.0;
    for (std::sregex_iterator x(value.begin(), value.end(), NumberPattern), end; x != end; ++x)
        largest = std::max(largest, std::abs(std::stod(x->str())));
    return largest;
}

// Lines match when their words match and their numbers agree to nine digits of the larger, or
// of the scale the numbers stand on: a build with other optimisation rounds the last bits
// differently, and a value that is rounding noise around zero (the imaginary part of a real
// response) differs in every digit.
inline bool SameLine(const std::string& a, const std::string& b, double scale) {
    if (a == b) return true;
    const double floor = 1e-9 * std::max(scale, LineScale(a));
    std::sregex_iterator x(a.begin(), a.end(), NumberPattern), end;
    std::sregex_iterator y(b.begin(), b.end(), NumberPattern);
    std::size_t ax = 0, by = 0;
    for (; x != end && y != end; ++x, ++y) {
        if (a.substr(ax, x->position() - ax) != b.substr(by, y->position() - by)) return false;
        const double u = std::stod(x->str()), v = std::stod(y->str());
        if (!(std::abs(u - v) <= 1e-9 * std::max(std::abs(u), std::abs(v)) + floor)) return false;
        ax = x->position() + x->length();
        by = y->position() + y->length();
    }
    return x == end && y == end && a.substr(ax) == b.substr(by);
}

inline const std::filesystem::path Folder =
    std::filesystem::path(NERIVANE_TEST_DATA_DIR) / "golden";

// Checks text against golden file name.txt and reports the first line that differs.
inline void ExpectGolden(const std::string& name, const std::string& text) {
    const std::filesystem::path path = Folder / (name + ".txt");
    if (std::getenv("NERIVANE_UPDATE_GOLDEN") != nullptr) {
        std::ofstream(path, std::ios::binary) << text;
        return;
    }
    const std::vector<std::string> want = Lines(ReadText(path)), have = Lines(text);
    ASSERT_FALSE(want.empty()) << path;
    // "PATH #N max S" heads a list of numbers: its elements stand on the scale S.
    static const std::regex list(R"(^(\S+) #\d+ max (\S+)$)");
    std::string elements = "\n";
    double scale = 0.0;
    for (std::size_t i = 0; i < std::max(want.size(), have.size()); ++i) {
        const std::string w = i < want.size() ? want[i] : "(nothing)";
        const std::string h = i < have.size() ? have[i] : "(nothing)";
        if (std::smatch m; std::regex_match(w, m, list)) {
            elements = m[1].str() + "[";
            scale = std::stod(m[2].str());
        }
        if (!SameLine(w, h, w.starts_with(elements) ? scale : 0.0)) {
            ADD_FAILURE() << name << " line " << i + 1 << "\n  golden: " << w
                          << "\n  now:    " << h;
            return;
        }
    }
}

}  // namespace nerivane::golden
