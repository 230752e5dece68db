// What the main window keeps its secondary windows showing: the circuit pictures loaded at
// start, the help viewer following the circuit, the schematic view, the requirement's orders
// and the parts list of the design as last calculated.
#include <QImage>
#include <QString>
#include <algorithm>

#include "app/Buildoutputs.h"
#include "files/Atomicwrite.h"
#include "files/Filesaveread.h"
#include "gui/HelpForm.h"
#include "gui/MessageSink.h"
#include "gui/RequirementForm.h"
#include "gui/SchematicForm.h"
#include "gui/TopForm.h"

namespace nerivane {

void TTopForm::LoadRunTimeFiles() {
    if (dialogs_.help != nullptr) dialogs_.help->SetRunTimeFilesDir(directories_.runTimeFilesDir);
    if (dialogs_.schematic != nullptr) dialogs_.schematic->SetStartFolder(directories_.currentDir);
    for (const Topology topology : Topologies) {
        const std::string path =
            directories_.runTimeFilesDir + "/" + CircuitOf(topology).pictureName;
        // A picture that cannot be read stays empty.
        circuitPictures_[Index(topology)] = QImage(QString::fromStdString(path));
    }
}

const QImage& TTopForm::CircuitPictureOf(Topology topology) const {
    return circuitPictures_[std::clamp(Index(topology), 0, TopologyCount - 1)];
}

void TTopForm::UpdateAuxiliaryWindows() {
    if (dialogs_.help != nullptr)
        dialogs_.help->CircuitChanged(state_.TopologyIndex, CircuitPictureOf(state_.TopologyIndex));
    if (dialogs_.schematic != nullptr && dialogs_.schematic->isVisible()) ShowSchematics();
    if (dialogs_.requirement != nullptr) dialogs_.requirement->FollowDesign(state_);
}

void TTopForm::ShowSchematics() {
    if (!calculated_ || dialogs_.schematic == nullptr) return;
    const int section = std::clamp(state_.SelectedSection, 0, std::max(0, state_.NumSections - 1));
    dialogs_.schematic->ShowDesign(SelectedSectionSchematic(state_, *results_),
                                   "Section " + std::to_string(section),
                                   DesignSchematic(state_, *results_, ProposedFileName(state_)));
}

bool TTopForm::SavePartsListTo(const std::string& path) {
    const std::string text = PartsListCsv(DesignPartsList(state_, *results_, settings_));
    std::string reason;
    if (WriteFileAtomically(path, text, &reason)) return true;
    WindowMessages().ShowMessage(SaveFailedText(path, reason), SaveFailedCaption);
    return false;
}

}  // namespace nerivane
