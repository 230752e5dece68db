// The main window: the parameter boxes with their spinners, the selections, the plot and the
// report. It owns the design record and the calculation's results; every handler reads its
// widgets, calls the core and shows what the core left, so the window holds no numeric rules.
#pragma once

#include <QMainWindow>
#include <QTimer>
#include <array>
#include <memory>
#include <string>

#include "app/Calculationdriver.h"
#include "app/Controlstates.h"
#include "app/DesignState.h"
#include "app/Referencedesign.h"
#include "app/Requirementorders.h"
#include "app/Updownfunctions.h"
#include "circuit/Componentsettings.h"
#include "circuit/Sectioncircuits.h"
#include "env/Directories.h"
#include "files/Requirementfile.h"
#include "files/Settingsfile.h"
#include "response/Plot.h"

class QKeyEvent;
class QPrinter;

namespace nerivane {

class BoxStepping;
class PlotPanel;
class QtMessageSink;
class RecentDesigns;
class TAboutForm;
class TCompSelectForm;
class TDCBiasForm;
class THelpForm;
class TMathErrForm;
class TOptionsForm;
class TRequirementForm;
class TSchematicForm;
struct TopFormBoxes;
struct TopFormWidgets;

class TTopForm final : public QMainWindow {
    Q_OBJECT

  public:
    explicit TTopForm(QWidget* parent = nullptr);
    ~TTopForm() override;

    // The secondary windows whose boxes and choices the calculation reads. They are created
    // after this window (as its children) and attached before it is shown.
    struct Dialogs {
        TCompSelectForm* compSelect = nullptr;
        TOptionsForm* options = nullptr;
        TAboutForm* about = nullptr;
        TMathErrForm* mathErr = nullptr;
        THelpForm* help = nullptr;
        TDCBiasForm* dcBias = nullptr;
        TSchematicForm* schematic = nullptr;
        TRequirementForm* requirement = nullptr;
    };
    void AttachDialogs(const Dialogs& dialogs);

    const DesignState& State() const { return state_; }
    const DesignResults& Results() const { return *results_; }

    // Start-up: defaults, control states, the first calculation, the final width.
    void FormShow();
    void FormClose();
    // Section panel top right, the report under it, the plot in the rest.
    void FormResize();
    // F1/Up and F2/Down step the box the last click chose; F5 and F7 cycle the family and
    // the sweep. The key is not consumed.
    void FormKeyDown(const QKeyEvent& event);
    // A press in the section box, C1 or C2 chooses what the keys step; other boxes, nothing.
    void MouseDownBoxSelect(QObject* sender);
    // After a circuit, response or sweep item has stored its choice, and for the check boxes
    // and the tolerance buttons: read the boxes and buttons, apply the control states,
    // recalculate.
    void FilterMenuClick();
    void CalcButtonClick();

    void NumPolesUpDownClick(Step step);
    void RippleUpDownClick(Step step);
    void F0UpDownClick(Step step);
    void BandWidthUpDownClick(Step step);
    void GainUpDownClick(Step step);
    void GammaUpDownClick(Step step);
    void SectionUpDownClick(Step step);
    void TestUpDownClick(Step step);
    void C1C2UpDownClick(Capacitor which, bool up);

    // The folders settled at start-up and a design file named on the command line; set before
    // the window is shown. Without folders no settings file is read or written.
    void SetStartup(const ProgramDirectories& directories, const std::string& designFile);
    // Save, Save As and Open without their dialogs (the dialogs only choose the name).
    bool SaveDesignTo(const std::string& path);
    // Opens path, or asks for a file when it is empty or missing; false leaves the design as
    // it was.
    bool OpenDesignFile(std::string path);
    bool SaveCircuitValuesTo(const std::string& path);
    bool SavePartsListTo(const std::string& path);
    bool SavePlotBitmapTo(const std::string& path);
    // The plot as the window shows it, every run and the envelope included, as SVG or PDF by
    // the name's ending.
    bool SavePlotVectorTo(const std::string& path);
    // The report as the window shows it, on as many pages as it needs.
    bool SaveReportPdfTo(const std::string& path);
    // The netlist the command line's --spice writes for the same design.
    bool SaveSpiceNetlistTo(const std::string& path);
    void PrintWindow(QPrinter& printer);
    void SetReferenceButtonClick();
    void ExchangeRefButtonClick();
    const std::array<std::string, RecentFileCount>& RecentFiles() const;
    const std::string& DesignFile() const { return designFile_; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void BuildMenus();
    void ConnectHandlers();
    // The File, Parts, Plot Options and Help items and the Tolerances button, one slot each.
    void ConnectMenuActions();
    void FileOpenMenuClick();
    void FileSaveMenuClick();
    void PrevFileMenuClick(int index);
    void SaveCircuitValuesMenuClick();
    void SavePartsListMenuClick();
    void SavePlotBitmapMenuClick();
    // Asks for a file name with a save dialog, then saves with save.
    void SaveExport(const char* title, const char* filter, const char* suffix,
                    bool (TTopForm::*save)(const std::string&));
    // Draws the plot on screen again, every run of a worst-case analysis included.
    void DrawPlotOn(Canvas& canvas);
    void PrintScreenMenuClick();
    void CircuitInfoMenuClick();
    // Each section's capacitors from the series, its resistors nearest the practical range's
    // middle; the design is calculated again.
    void ChooseCapacitorsMenuClick();
    void ReadOutMenuClick(ReadOutMode mode);
    void PhaseMenuClick(PhaseMode mode);
    void MagnitudeMenuClick(MagnitudeMode mode);
    void ApplyControlStates();
    // The boxes of the box table: this window's and its dialogs'.
    ParameterBoxes Parameters();
    void Calculate(bool singlePass);
    PlotView CurrentPlotView();
    void PaintRun(int run, const Traces& traces);
    void Redraw();
    void RedrawPlot();
    void ShowResults();
    void ShowCapacitorBoxColours();
    // The circuit pictures, and the folders the help viewer and schematic view read from.
    void LoadRunTimeFiles();
    const QImage& CircuitPictureOf(Topology topology) const;
    // The help viewer follows the circuit; the schematic view shows the design as calculated.
    void UpdateAuxiliaryWindows();
    void ShowSchematics();
    void CapacitorEntered(Capacitor which);
    void ShowReadout();
    bool StepByWheel(QObject* box, int angleDelta, bool coarse);
    void ReadSettingsFile();
    void WriteSettingsFile();
    // The build options' own file: read at start, written whenever the options change.
    void ReadBuildOptionsFile();
    void WriteBuildOptionsFile();
    // The requirement's own file: read at start, written whenever the requirement changes.
    void ReadRequirementFile();
    void WriteRequirementFile();
    // An order chosen in the requirement dialog becomes the design, as a choice from the
    // Circuit and Response menus does.
    void ApplyOrderRowClick(const OrderRow& row, MaskKind kind);
    void ShowStatusLine();
    void LoadControlsFromRecord();
    void RememberDesignFile(const std::string& path);
    std::string DesignName() const;
    void SaveAs();

    std::unique_ptr<TopFormWidgets> widgets_;
    std::unique_ptr<TopFormBoxes> boxes_;
    std::unique_ptr<QtMessageSink> messageSink_;
    Dialogs dialogs_;

    DesignState state_;
    ComponentSettings settings_;
    BuildOptions writtenBuildOptions_;  // as the build options file holds them
    Requirement writtenRequirement_;    // as the requirement's file holds it
    ControlStates controls_;
    std::unique_ptr<DesignResults> results_;
    bool calculated_ = false;
    bool shown_ = false;

    std::unique_ptr<PlotPanel> plot_;
    std::unique_ptr<BoxStepping> stepping_;  // the wheel and the keys
    // A worst-case picture keeps its runs only until the plot changes size; they come back
    // by running the analysis again once resizing stops.
    QTimer worstCaseRedraw_;
    // Keys and the wheel come faster than a long calculation: the steps they make are stored at
    // once and one calculation follows the last of them.
    QTimer keyedCalculation_;
    bool keyedSinglePass_ = true;
    bool keyedInput_ = false;  // a key or the wheel is being handled

    // One picture per circuit, loaded at start; a missing file leaves its picture empty.
    std::array<QImage, TopologyCount> circuitPictures_;
    ProgramDirectories directories_;
    std::string startupDesign_;
    std::string designFile_;  // the current design's file, empty until saved or opened
    std::unique_ptr<RecentDesigns> recent_;
    ReferenceDesign reference_;

    bool c1Rejected_ = false;  // the last typed C1 or C2 was unreadable: silver until fixed
    bool c2Rejected_ = false;
};

}  // namespace nerivane
