// The settings file of the circuit-as-built options, "Build Options.txt" beside the settings
// file: one "name = value" line per option, written whenever an option changes and read at
// start. A line that cannot be used is named in a message and its option keeps its value.
#pragma once

#include <string>
#include <vector>

#include "circuit/Buildoptions.h"

namespace nerivane {

inline constexpr const char* BuildOptionsFileName = "Build Options.txt";

std::string BuildOptionsText(const BuildOptions& options);

// Applies the lines of the file over options; returns a message for each line it ignored.
std::vector<std::string> ApplyBuildOptionsText(const std::string& text, BuildOptions& options);

// The file in folder: read over options (a missing file leaves them as they are), written.
std::vector<std::string> ReadBuildOptionsFile(const std::string& folder, BuildOptions& options);
bool WriteBuildOptionsFile(const std::string& folder, const BuildOptions& options,
                           std::string* reason = nullptr);

}  // namespace nerivane
