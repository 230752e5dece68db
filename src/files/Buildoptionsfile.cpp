#include "files/Buildoptionsfile.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>
#include <utility>

#include "files/Atomicwrite.h"
#include "files/Settinglines.h"

namespace nerivane {
namespace {

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
        const std::optional<bool> yes = ReadYesNo(value);
        if (yes) options.*field = *yes;
        return yes.has_value();
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
        "notch-parts-independent = " + std::string(YesNoText(options.notchPartsIndependent)) + "\n";
    text += "best-standard-values = " + std::string(YesNoText(options.bestStandardValues)) + "\n";
    return text;
}

std::vector<std::string> ApplyBuildOptionsText(const std::string& text, BuildOptions& options) {
    RangeLines range;
    std::vector<std::string> messages = ApplySettingLines(
        text, BuildOptionsFileName, [&](std::string_view name, std::string_view value, int line) {
            return Apply(name, value, options, range, line);
        });
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
    std::vector<std::string> messages;
    const std::optional<std::string> text =
        ReadSettingLinesFile(folder, BuildOptionsFileName, messages);
    return text ? ApplyBuildOptionsText(*text, options) : messages;
}

bool WriteBuildOptionsFile(const std::string& folder, const BuildOptions& options,
                           std::string* reason) {
    return WriteFileAtomically(folder + "/" + BuildOptionsFileName, BuildOptionsText(options),
                               reason);
}

}  // namespace nerivane
