// The requirement's own settings file, "Requirement.txt" beside the settings file: the mask the
// design is held to ("mask = fp=1k,fs=3k,ap=1,as=40") and whether each calculation checks it
// ("check = yes"). Written whenever the requirement changes; no file, no requirement.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "response/Requirementmask.h"

namespace nerivane {

inline constexpr const char* RequirementFileName = "Requirement.txt";

struct Requirement {
    std::optional<RequirementMask> mask;  // only ever a valid one
    bool check = false;

    friend bool operator==(const Requirement&, const Requirement&) = default;
};

std::string RequirementText(const Requirement& requirement);

// Applies the lines of the file over requirement; returns a message for each line it ignored.
std::vector<std::string> ApplyRequirementText(const std::string& text, Requirement& requirement);

// The file in folder: read over requirement (a missing file leaves it as it is), written.
std::vector<std::string> ReadRequirementFile(const std::string& folder, Requirement& requirement);
bool WriteRequirementFile(const std::string& folder, const Requirement& requirement,
                          std::string* reason = nullptr);

}  // namespace nerivane
