#include "files/Settingsfile.h"

#include <sstream>

namespace nerivane {
namespace {

constexpr const char* Separator = " , ";

std::string Line(int identifier, const std::string& value, const char* description) {
    return std::to_string(identifier) + Separator + value + Separator + description + "\n";
}

std::string FileNameOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

struct SettingsLine {
    bool complete = false;
    std::string identifier;
    std::string value;
};

// "12 , 20 , Plot Threshold": the value is what stands between the first and the last
// separator, so a value may itself hold " , " (a folder name can).
SettingsLine Split(const std::string& line) {
    SettingsLine parts;
    const std::size_t first = line.find(Separator);
    const std::size_t last = line.rfind(Separator);
    if (first == std::string::npos || last == first) return parts;
    parts.complete = true;
    parts.identifier = line.substr(0, first);
    parts.value = line.substr(first + 3, last - first - 3);
    return parts;
}

}  // namespace

std::string SettingsText(const ProgramSettings& settings) {
    std::string text = Line(1, settings.versionText, "Version String");
    text += Line(10, settings.samplingFrequencyText, "Sampling Frequency");
    text += Line(12, settings.thresholdText, "Plot Threshold");
    text += Line(30, settings.readOutMode == 0 ? "0" : "1", "Mouse Read Out Menu");
    for (const std::string& path : settings.recentFiles) text += Line(50, path, "Previous File");
    return text;
}

std::vector<std::string> ApplySettingsText(
    const std::string& text, ProgramSettings& settings,
    const std::function<bool(const std::string&)>& fileExists) {
    std::vector<std::string> messages;
    std::istringstream lines(text);
    std::string line;
    int read = 0;
    int recent = 0;
    std::array<std::string, RecentFileCount> recentFiles;
    while (std::getline(lines, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty()) continue;
        const SettingsLine parts = Split(line);
        if (!parts.complete) break;
        ++read;
        if (parts.identifier == "1") continue;  // the writer's version is not applied
        if (parts.identifier == "10") {
            settings.samplingFrequencyText = parts.value;
        } else if (parts.identifier == "12") {
            settings.thresholdText = parts.value;
        } else if (parts.identifier == "30") {
            settings.readOutMode = parts.value == "0" ? 0 : 1;
        } else if (parts.identifier == "50") {
            if (!parts.value.empty() && recent < RecentFileCount && fileExists(parts.value))
                recentFiles[recent++] = parts.value;
        } else {
            messages.emplace_back(InvalidIdentifierMessage);
        }
    }
    constexpr int WrittenLines = 4 + RecentFileCount;
    if (read < WrittenLines) messages.emplace_back(IncompleteSettingsMessage);
    settings.recentFiles = recentFiles;
    return messages;
}

void AddRecentFile(std::array<std::string, RecentFileCount>& recent, const std::string& path) {
    const std::string name = FileNameOf(path);
    for (int i = 0; i < RecentFileCount; ++i) {
        if (!recent[i].empty() && FileNameOf(recent[i]) == name) {
            for (int j = i; j + 1 < RecentFileCount; ++j) recent[j] = recent[j + 1];
            recent[RecentFileCount - 1].clear();
            break;
        }
    }
    for (int i = RecentFileCount - 1; i > 0; --i) recent[i] = recent[i - 1];
    recent[0] = path;
}

void RemoveRecentFile(std::array<std::string, RecentFileCount>& recent, const std::string& path) {
    for (int i = 0; i < RecentFileCount; ++i) {
        if (recent[i] != path) continue;
        for (int j = i; j + 1 < RecentFileCount; ++j) recent[j] = recent[j + 1];
        recent[RecentFileCount - 1].clear();
        return;
    }
}

std::string UnreadableSettingsMessage(const std::string& path, const std::string& reason) {
    return "The settings file \"" + path + "\" cannot be read (" + reason +
           "); the program starts with its defaults.";
}

}  // namespace nerivane
