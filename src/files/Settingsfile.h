// The settings file, "Settings.txt" in the user's folder: the version that wrote it, the texts
// of the sampling-frequency and phase-threshold boxes, the read-out mode and the four most
// recent design files, one "identifier , value , description" line each.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "app/Parameterboxes.h"

namespace nerivane {

inline constexpr const char* SettingsFileName = "Settings.txt";
inline constexpr int RecentFileCount = 4;

struct ProgramSettings {
    std::string versionText;
    std::string samplingFrequencyText;
    std::string thresholdText = RuleOf(BoxId::PhaseThreshold).startText;
    int readOutMode = 0;                                   // 0 graph position, 1 value at frequency
    std::array<std::string, RecentFileCount> recentFiles;  // full paths, most recent first
};

std::string SettingsText(const ProgramSettings& settings);

// Applies the lines of a settings file over settings. Recent files that no longer exist
// (fileExists says) are dropped. Returns the messages a bad file raises, in order.
std::vector<std::string> ApplySettingsText(
    const std::string& text, ProgramSettings& settings,
    const std::function<bool(const std::string&)>& fileExists);

inline constexpr const char* InvalidIdentifierMessage =
    "Error on INI File Read function. \nHave an invalid identifier.";
inline constexpr const char* IncompleteSettingsMessage = "Incomplete ini File";
// A settings file is a few hundred bytes; anything much larger is not one.
inline constexpr std::size_t MaxSettingsFileBytes = 1 << 20;

// A settings file that is there but cannot be read (a folder, a pipe, no permission): the
// program starts with its defaults and says so once.
std::string UnreadableSettingsMessage(const std::string& path, const std::string& reason);

// A saved or opened design goes to the top; an entry with the same file name (in any folder)
// leaves the list first, so no title appears twice.
void AddRecentFile(std::array<std::string, RecentFileCount>& recent, const std::string& path);
void RemoveRecentFile(std::array<std::string, RecentFileCount>& recent, const std::string& path);

}  // namespace nerivane
