#include "files/Requirementfile.h"

#include "files/Atomicwrite.h"
#include "files/Settinglines.h"

namespace nerivane {

std::string RequirementText(const Requirement& requirement) {
    std::string text = "# The requirement the design is checked against.\n";
    if (requirement.mask) text += "mask = " + MaskText(*requirement.mask) + "\n";
    text += "check = " + std::string(YesNoText(requirement.check)) + "\n";
    return text;
}

std::vector<std::string> ApplyRequirementText(const std::string& text, Requirement& requirement) {
    return ApplySettingLines(text, RequirementFileName,
                             [&](std::string_view name, std::string_view value, int) {
                                 if (name == "mask") {
                                     const ParsedMask parsed = ParseMask(value);
                                     if (parsed.mask) requirement.mask = parsed.mask;
                                     return parsed.mask.has_value();
                                 }
                                 const std::optional<bool> yes = ReadYesNo(value);
                                 if (name != "check" || !yes) return false;
                                 requirement.check = *yes;
                                 return true;
                             });
}

std::vector<std::string> ReadRequirementFile(const std::string& folder, Requirement& requirement) {
    std::vector<std::string> messages;
    const std::optional<std::string> text =
        ReadSettingLinesFile(folder, RequirementFileName, messages);
    return text ? ApplyRequirementText(*text, requirement) : messages;
}

bool WriteRequirementFile(const std::string& folder, const Requirement& requirement,
                          std::string* reason) {
    return WriteFileAtomically(folder + "/" + RequirementFileName, RequirementText(requirement),
                               reason);
}

}  // namespace nerivane
