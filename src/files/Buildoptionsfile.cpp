#include "files/Buildoptionsfile.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <sstream>
#include <string_view>
#include <utility>

#include "files/Atomicwrite.h"
#include "files/Regularfiles.h"

namespace nerivane {
namespace {

constexpr std::size_t MaxBuildOptionsBytes = 1 << 16;
constexpr std::array<std::string_view, 2> YesNo = {"no", "yes"};

std::string Number(double x) {
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), x);
    return std::string(buffer.data(), result.ptr);
}

std::optional<double> ReadNumber(std::string_view text) {
    double x = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), x);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(x))
        return std::nullopt;
    return x;
}

template <std::size_t N>
std::optional<int> ReadName(const std::array<std::string_view, N>& names, std::string_view text) {
    for (std::size_t i = 0; i < N; ++i)
        if (names[i] == text) return static_cast<int>(i);
    return std::nullopt;
}

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// The range is checked once both ends are read, so a file may give them in any order.
struct RangeLines {
    std::optional<double> low, high;
    int lowLine = 0, highLine = 0;
};

// Sets the option a line names; false when the name or the value is not one it takes.
bool Apply(std::string_view name, std::string_view value, BuildOptions& options, RangeLines& range,
           int line) {
    if (name == "opamp-model") {
        const std::optional<int> index = ReadName(OpAmpModelNames, value);
        if (index) options.opAmpModel = static_cast<OpAmpModel>(*index);
        return index.has_value();
    }
    if (name == "resistor-series") {
        const std::optional<int> index = ReadName(ResistorSeriesNames, value);
        if (index) options.resistorSeries = static_cast<ResistorSeries>(*index);
        return index.has_value();
    }
    for (const auto& [key, field] :
         {std::pair{"notch-parts-independent", &BuildOptions::notchPartsIndependent},
          std::pair{"best-standard-values", &BuildOptions::bestStandardValues}}) {
        if (name != key) continue;
        const std::optional<int> index = ReadName(YesNo, value);
        if (index) options.*field = *index == 1;
        return index.has_value();
    }
    const std::optional<double> x = ReadNumber(value);
    if (!x || !(*x > 0.0)) return false;
    if (name == "min-practical-ohms")
        range.low = *x, range.lowLine = line;
    else if (name == "max-practical-ohms")
        range.high = *x, range.highLine = line;
    else if (name == "input-amplitude-volts" && *x <= 1e4)
        options.inputAmplitudeVolts = *x;
    else
        return false;
    return true;
}

std::string IgnoredLine(int number, std::string_view content) {
    return std::string(BuildOptionsFileName) + ", line " + std::to_string(number) + ": \"" +
           std::string(content) + "\" is not a setting this program takes; it is ignored.";
}

}  // namespace

std::string BuildOptionsText(const BuildOptions& options) {
    std::string text = "# How the circuit as built is simulated and checked.\n";
    text += "opamp-model = " +
            std::string(OpAmpModelNames[static_cast<std::size_t>(options.opAmpModel)]) + "\n";
    text += "resistor-series = " +
            std::string(ResistorSeriesNames[static_cast<std::size_t>(options.resistorSeries)]) +
            "\n";
    text += "min-practical-ohms = " + Number(options.minPracticalOhms) + "\n";
    text += "max-practical-ohms = " + Number(options.maxPracticalOhms) + "\n";
    text += "input-amplitude-volts = " + Number(options.inputAmplitudeVolts) + "\n";
    text +=
        "notch-parts-independent = " + std::string(YesNo[options.notchPartsIndependent ? 1 : 0]) +
        "\n";
    text +=
        "best-standard-values = " + std::string(YesNo[options.bestStandardValues ? 1 : 0]) + "\n";
    return text;
}

std::vector<std::string> ApplyBuildOptionsText(const std::string& text, BuildOptions& options) {
    std::vector<std::string> messages;
    std::istringstream lines(text);
    RangeLines range;
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        const std::string_view content = Trimmed(line);
        if (content.empty() || content.front() == '#') continue;
        const std::size_t equals = content.find('=');
        const bool used = equals != std::string_view::npos &&
                          Apply(Trimmed(content.substr(0, equals)),
                                Trimmed(content.substr(equals + 1)), options, range, number);
        if (!used) messages.push_back(IgnoredLine(number, content));
    }
    const double low = range.low.value_or(options.minPracticalOhms);
    const double high = range.high.value_or(options.maxPracticalOhms);
    if (low < high) {
        options.minPracticalOhms = low;
        options.maxPracticalOhms = high;
    } else {
        messages.push_back(std::string(BuildOptionsFileName) + ", lines " +
                           std::to_string(range.lowLine) + " and " +
                           std::to_string(range.highLine) +
                           ": the practical resistor range is empty; it is ignored.");
    }
    return messages;
}

std::vector<std::string> ReadBuildOptionsFile(const std::string& folder, BuildOptions& options) {
    const std::string path = folder + "/" + BuildOptionsFileName;
    const FileContents file = ReadRegularFile(path, MaxBuildOptionsBytes);
    if (file.status == ReadStatus::Missing) return {};
    if (file.status != ReadStatus::Read)
        return {"\"" + path + "\" cannot be read (" + file.reason + "); the defaults stand."};
    return ApplyBuildOptionsText(file.bytes, options);
}

bool WriteBuildOptionsFile(const std::string& folder, const BuildOptions& options,
                           std::string* reason) {
    return WriteFileAtomically(folder + "/" + BuildOptionsFileName, BuildOptionsText(options),
                               reason);
}

}  // namespace nerivane
