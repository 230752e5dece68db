// The lines of the program's own small settings files beside the settings file: "name = value"
// one a line, blank lines and "#" notes skipped. Every file names a line it cannot use in the
// same words, and reads "yes" and "no" alike.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nerivane {

// Sets what one line names; false when the name or the value is not one the file takes.
using SettingLine = std::function<bool(std::string_view name, std::string_view value, int line)>;

// Hands every line of text to apply; returns a message naming each line it could not use.
std::vector<std::string> ApplySettingLines(const std::string& text, const char* fileName,
                                           const SettingLine& apply);

// The file fileName in folder: its text, or nothing when it is missing (no message) or cannot
// be read (a message, and the defaults stand).
std::optional<std::string> ReadSettingLinesFile(const std::string& folder, const char* fileName,
                                                std::vector<std::string>& messages);

std::optional<bool> ReadYesNo(std::string_view text);
const char* YesNoText(bool yes);

}  // namespace nerivane
