#include "gui/ProgramWindows.h"

#include "gui/AboutForm.h"
#include "gui/CompSelectForm.h"
#include "gui/DCBiasForm.h"
#include "gui/HelpForm.h"
#include "gui/MathErrForm.h"
#include "gui/OptionsForm.h"
#include "gui/RequirementForm.h"
#include "gui/SchematicForm.h"

namespace nerivane {

ProgramWindows CreateProgramWindows() {
    ProgramWindows windows;
    windows.topForm = std::make_unique<TTopForm>();
    TTopForm* top = windows.topForm.get();
    windows.dialogs.compSelect = new TCompSelectForm(top);
    windows.dialogs.help = new THelpForm(top);
    windows.dialogs.mathErr = new TMathErrForm(top);
    windows.dialogs.dcBias = new TDCBiasForm(top);
    windows.dialogs.options = new TOptionsForm(top);
    windows.dialogs.about = new TAboutForm(top);
    windows.dialogs.schematic = new TSchematicForm(top);
    windows.dialogs.requirement = new TRequirementForm(top);
    top->AttachDialogs(windows.dialogs);
    return windows;
}

}  // namespace nerivane
