// The main window's side of the requirement: its own file, read at start and written whenever
// the dialog changes it, and an order chosen in the dialog put into the design.
#include "gui/MessageSink.h"
#include "gui/RequirementForm.h"
#include "gui/TopForm.h"

namespace nerivane {

void TTopForm::ReadRequirementFile() {
    if (directories_.userFilesDir.empty() || dialogs_.requirement == nullptr) return;
    Requirement requirement;
    for (const std::string& message :
         nerivane::ReadRequirementFile(directories_.userFilesDir, requirement))
        WindowMessages().ShowMessage(message, "Error");
    writtenRequirement_ = requirement;
    dialogs_.requirement->ShowRequirement(requirement);
}

void TTopForm::WriteRequirementFile() {
    if (directories_.userFilesDir.empty() || dialogs_.requirement == nullptr) return;
    const Requirement& requirement = dialogs_.requirement->Held();
    if (requirement == writtenRequirement_) return;
    // Said once, not on every keystroke: what could not be written counts as written.
    writtenRequirement_ = requirement;
    std::string reason;
    if (!nerivane::WriteRequirementFile(directories_.userFilesDir, requirement, &reason))
        WindowMessages().ShowMessage(std::string("The requirement could not be saved in \"") +
                                         RequirementFileName + "\": " + reason,
                                     "Error");
}

void TTopForm::ApplyOrderRowClick(const OrderRow& row, MaskKind kind) {
    ApplyOrderRow(row, kind, state_, Parameters());
    FilterMenuClick();
}

}  // namespace nerivane
