// The program's windows, created in their start-up order: the main window first, then the
// secondary windows as its children, wired to it.
#pragma once

#include <memory>

#include "gui/TopForm.h"

namespace nerivane {

struct ProgramWindows {
    std::unique_ptr<TTopForm> topForm;
    TTopForm::Dialogs dialogs;  // owned by topForm
};

ProgramWindows CreateProgramWindows();

}  // namespace nerivane
