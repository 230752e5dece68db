// The main window's File, Parts, Plot Options and Help menus and its Tolerances button: each
// item has a slot of its own; the ones that only bring up a window share a line each.
#include <QFileDialog>
#include <QPrintDialog>
#include <QPrinter>

#include "app/Capacitorchoice.h"
#include "files/Regularfiles.h"
#include "gui/AboutForm.h"
#include "gui/CompSelectForm.h"
#include "gui/DCBiasForm.h"
#include "gui/HelpForm.h"
#include "gui/OptionsForm.h"
#include "gui/RecentDesigns.h"
#include "gui/RequirementForm.h"
#include "gui/SchematicForm.h"
#include "gui/TopForm.h"
#include "gui/TopFormWidgets.h"

namespace nerivane {
namespace {

// A name typed without the extension gets it, as the dialogs' default extension does.
std::string WithSuffix(const QString& path, const char* suffix) {
    const QString ending = QStringLiteral(".") + QLatin1String(suffix);
    return (path.endsWith(ending) ? path : path + ending).toStdString();
}

// The name a save dialog chose, with its ending; empty when it was cancelled.
std::string AskSaveName(QWidget* parent, const char* title, const std::string& folder,
                        const char* filter, const char* suffix) {
    const QString path =
        QFileDialog::getSaveFileName(parent, QString::fromLatin1(title),
                                     QString::fromStdString(folder), QString::fromLatin1(filter));
    return path.isEmpty() ? std::string() : WithSuffix(path, suffix);
}

void ShowWindow(QWidget* window) {
    if (window == nullptr) return;
    window->show();
    window->raise();
    window->activateWindow();
}

}  // namespace

void TTopForm::ConnectMenuActions() {
    TopFormWidgets& w = *widgets_;
    const auto on = [this](QAction* item, auto slot) {
        connect(item, &QAction::triggered, this, slot);
    };
    on(w.fileOpenMenu, &TTopForm::FileOpenMenuClick);
    on(w.fileSaveMenu, &TTopForm::FileSaveMenuClick);
    on(w.fileSaveAsMenu, &TTopForm::SaveAs);
    for (int i = 0; i < RecentFileCount; ++i)
        on(w.prevFileMenus[i], [this, i] { PrevFileMenuClick(i); });
    on(w.saveCircuitValuesMenu, &TTopForm::SaveCircuitValuesMenuClick);
    on(w.savePartsListMenu, &TTopForm::SavePartsListMenuClick);
    on(w.savePlotBitmapMenu, &TTopForm::SavePlotBitmapMenuClick);
    on(w.savePlotSvgMenu, [this] {
        SaveExport("Save Plot to SVG File:", "SVG Drawing (*.svg)", "svg",
                   &TTopForm::SavePlotVectorTo);
    });
    on(w.savePlotPdfMenu, [this] {
        SaveExport("Save Plot to PDF File:", "PDF Document (*.pdf)", "pdf",
                   &TTopForm::SavePlotVectorTo);
    });
    on(w.saveReportPdfMenu, [this] {
        SaveExport("Save Report to PDF File:", "PDF Document (*.pdf)", "pdf",
                   &TTopForm::SaveReportPdfTo);
    });
    on(w.saveSpiceNetlistMenu, [this] {
        SaveExport("Save SPICE Netlist to File:", "SPICE Netlist (*.cir)", "cir",
                   &TTopForm::SaveSpiceNetlistTo);
    });
    on(w.printScreenMenu, &TTopForm::PrintScreenMenuClick);
    on(w.exitMenu, [this] { close(); });

    // The dialogs are attached after the menus are made: each is looked up when its item is
    // chosen.
    on(w.componentsMenu, [this] { ShowWindow(dialogs_.compSelect); });
    connect(w.toleranceButton, &QPushButton::clicked, this,
            [this] { ShowWindow(dialogs_.compSelect); });
    on(w.schematicMenu, [this] { ShowWindow(dialogs_.schematic); });
    on(w.dcBiasToolMenu, [this] { ShowWindow(dialogs_.dcBias); });
    on(w.chooseCapacitorsMenu, &TTopForm::ChooseCapacitorsMenuClick);
    on(w.requirementMenu, [this] { ShowWindow(dialogs_.requirement); });
    on(w.thresholdMenu, [this] { ShowWindow(dialogs_.options); });
    on(w.aboutMenu, [this] { ShowWindow(dialogs_.about); });

    on(w.graphPositionReadOutMenu, [this] { ReadOutMenuClick(ReadOutMode::GraphPosition); });
    on(w.valueAtFrquencyReadOutMenu, [this] { ReadOutMenuClick(ReadOutMode::ValueAtFrequency); });
    on(w.phaseMenu, [this] { PhaseMenuClick(PhaseMode::Plain); });
    on(w.hilbertPhaseMenu, [this] { PhaseMenuClick(PhaseMode::Hilbert); });
    on(w.dBMagMenu, [this] { MagnitudeMenuClick(MagnitudeMode::Db); });
    on(w.linearMagMenu, [this] { MagnitudeMenuClick(MagnitudeMode::Linear); });

    on(w.circuitInfoMenu, &TTopForm::CircuitInfoMenuClick);
    on(w.programInfoMenu, [this] {
        if (dialogs_.help != nullptr) dialogs_.help->ShowProgramInfo();
    });
}

void TTopForm::FileOpenMenuClick() {
    OpenDesignFile("");
}

void TTopForm::FileSaveMenuClick() {
    if (!IsMissing(designFile_))
        SaveDesignTo(designFile_);
    else
        SaveAs();
}

void TTopForm::PrevFileMenuClick(int index) {
    OpenDesignFile(recent_->Files()[static_cast<std::size_t>(index)]);
}

void TTopForm::SaveCircuitValuesMenuClick() {
    const std::string path = AskSaveName(
        this, "Save Coefficients to File:", directories_.currentDir, "Text Files (*.txt)", "txt");
    if (!path.empty()) SaveCircuitValuesTo(path);
}

void TTopForm::SavePartsListMenuClick() {
    const std::string path = AskSaveName(this, "Save Parts List to File:", directories_.currentDir,
                                         "CSV Files (*.csv)", "csv");
    if (!path.empty()) SavePartsListTo(path);
}

void TTopForm::SavePlotBitmapMenuClick() {
    const std::string path = AskSaveName(this, "Save Bitmap to File:", directories_.currentDir,
                                         "Bitmap File (*.bmp)", "bmp");
    if (!path.empty()) SavePlotBitmapTo(path);
}

void TTopForm::SaveExport(const char* title, const char* filter, const char* suffix,
                          bool (TTopForm::*save)(const std::string&)) {
    const std::string path = AskSaveName(this, title, directories_.currentDir, filter, suffix);
    if (!path.empty()) (this->*save)(path);
}

void TTopForm::PrintScreenMenuClick() {
    QPrinter printer;
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() == QDialog::Accepted) PrintWindow(printer);
}

void TTopForm::CircuitInfoMenuClick() {
    if (dialogs_.help != nullptr)
        dialogs_.help->ShowCircuitInfo(state_.TopologyIndex,
                                       CircuitPictureOf(state_.TopologyIndex));
}

void TTopForm::ChooseCapacitorsMenuClick() {
    // The prototype comes from the last calculation; the section panel's boxes follow the
    // chosen values when the design is calculated again.
    if (!calculated_) return;
    ChooseCapacitors(state_, settings_);
    CalcButtonClick();
}

void TTopForm::ReadOutMenuClick(ReadOutMode mode) {
    state_.ReadOut = mode;
    ApplyControlStates();
    ShowReadout();
}

void TTopForm::PhaseMenuClick(PhaseMode mode) {
    SelectPhaseMode(state_, mode);
    controls_ = UpdateControlStates(state_);
    ApplyControlStates();
    RedrawPlot();
}

void TTopForm::MagnitudeMenuClick(MagnitudeMode mode) {
    SelectMagnitudeMode(state_, mode);
    controls_ = UpdateControlStates(state_);
    ApplyControlStates();
    RedrawPlot();
}

}  // namespace nerivane
