#include "files/Settinglines.h"

#include <sstream>

#include "files/Regularfiles.h"

namespace nerivane {
namespace {

// Each of these files holds a few lines; anything much larger is not one.
constexpr std::size_t MaxSettingLinesBytes = 1 << 16;

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::string IgnoredLine(const char* fileName, int number, std::string_view content) {
    return std::string(fileName) + ", line " + std::to_string(number) + ": \"" +
           std::string(content) + "\" is not a setting this program takes; it is ignored.";
}

}  // namespace

std::vector<std::string> ApplySettingLines(const std::string& text, const char* fileName,
                                           const SettingLine& apply) {
    std::vector<std::string> messages;
    std::istringstream lines(text);
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        const std::string_view content = Trimmed(line);
        if (content.empty() || content.front() == '#') continue;
        const std::size_t equals = content.find('=');
        const bool used =
            equals != std::string_view::npos &&
            apply(Trimmed(content.substr(0, equals)), Trimmed(content.substr(equals + 1)), number);
        if (!used) messages.push_back(IgnoredLine(fileName, number, content));
    }
    return messages;
}

std::optional<std::string> ReadSettingLinesFile(const std::string& folder, const char* fileName,
                                                std::vector<std::string>& messages) {
    const std::string path = folder + "/" + fileName;
    FileContents file = ReadRegularFile(path, MaxSettingLinesBytes);
    if (file.status == ReadStatus::Missing) return std::nullopt;
    if (file.status != ReadStatus::Read) {
        messages.push_back("\"" + path + "\" cannot be read (" + file.reason +
                           "); the defaults stand.");
        return std::nullopt;
    }
    return std::move(file.bytes);
}

std::optional<bool> ReadYesNo(std::string_view text) {
    if (text == "yes") return true;
    if (text == "no") return false;
    return std::nullopt;
}

const char* YesNoText(bool yes) {
    return yes ? "yes" : "no";
}

}  // namespace nerivane
