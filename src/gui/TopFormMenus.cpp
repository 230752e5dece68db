// The menu bar: captions as the program has always shown them, trailing blanks included, and
// each item named so the handlers and the tests can tell them apart.
#include <QMenu>
#include <QMenuBar>

#include "gui/TopForm.h"
#include "gui/TopFormWidgets.h"

namespace nerivane {
namespace {

QAction* NewItem(QMenu& menu, const char* name, const char* caption) {
    QAction* item = menu.addAction(QString::fromLatin1(caption));
    item->setObjectName(QString::fromLatin1(name));
    return item;
}

QAction* NewCheckItem(QMenu& menu, const char* name, const char* caption, bool checked) {
    QAction* item = NewItem(menu, name, caption);
    item->setCheckable(true);
    item->setChecked(checked);
    return item;
}

QMenu* NewMenu(QMenuBar& bar, const char* name, const char* caption) {
    QMenu* menu = bar.addMenu(QString::fromLatin1(caption));
    menu->setObjectName(QString::fromLatin1(name));
    return menu;
}

void BuildFileMenu(QMenuBar& bar, TopFormWidgets& w) {
    QMenu& menu = *NewMenu(bar, "FileMenu", "File  ");
    w.fileOpenMenu = NewItem(menu, "FileOpenMenu", "Open Design File");
    w.fileSaveMenu = NewItem(menu, "FileSaveMenu", "Save Design File");
    w.fileSaveAsMenu = NewItem(menu, "FileSaveAsMenu", "Save As  Design File");
    w.saveCircuitValuesMenu = NewItem(menu, "SaveCircuitValuesMenu", "Save Circuit Values");
    w.savePartsListMenu = NewItem(menu, "SavePartsListMenu", "Save Parts List");
    w.saveReportPdfMenu = NewItem(menu, "SaveReportPdfMenu", "Save Report PDF");
    w.saveSpiceNetlistMenu = NewItem(menu, "SaveSpiceNetlistMenu", "Save SPICE Netlist");
    menu.addSeparator();
    w.savePlotBitmapMenu = NewItem(menu, "SavePlotBitmapMenu", "Save Plot Bitmap");
    w.savePlotSvgMenu = NewItem(menu, "SavePlotSvgMenu", "Save Plot SVG");
    w.savePlotPdfMenu = NewItem(menu, "SavePlotPdfMenu", "Save Plot PDF");
    w.printScreenMenu = NewItem(menu, "PrintScreenMenu", "Print Screen");
    menu.addSeparator();
    // The recent files: shown once they have a caption.
    const char* recentNames[] = {"PrevFile0Menu", "PrevFile1Menu", "PrevFile2Menu",
                                 "PrevFile3Menu"};
    for (std::size_t i = 0; i < w.prevFileMenus.size(); ++i) {
        w.prevFileMenus[i] = NewItem(menu, recentNames[i], "");
        w.prevFileMenus[i]->setVisible(false);
    }
    menu.addSeparator();
    w.exitMenu = NewItem(menu, "ExitMenu", "Exit");
}

void BuildSelectionMenus(QMenuBar& bar, TopFormWidgets& w) {
    QMenu& circuit = *NewMenu(bar, "CircuitMenu", "Circuit  ");
    w.circuitItems[Index(Topology::VcvsLowPass)] = NewItem(circuit, "VCVSLowPass", "VCVS Low Pass");
    w.circuitItems[Index(Topology::MfbLowPass)] = NewItem(circuit, "MFBLowPass", "MFB Low Pass");
    w.circuitItems[Index(Topology::VcvsHighPass)] =
        NewItem(circuit, "VCVSHighPass", "VCVS High Pass");
    w.circuitItems[Index(Topology::MfbHighPass)] = NewItem(circuit, "MFBHighPass", "MFB High Pass");
    w.circuitItems[Index(Topology::VcvsBandPass)] =
        NewItem(circuit, "VCVSBandPass", "VCVS Band Pass");
    w.circuitItems[Index(Topology::MfbBandPass)] = NewItem(circuit, "MFBBandPass", "MFB Band Pass");
    w.circuitItems[Index(Topology::VcvsNotch)] = NewItem(circuit, "VCVSNotch", "VCVS Notch");

    QMenu& response = *NewMenu(bar, "ResponseMenu", "Response F5  ");
    w.responseItems[Index(Response::AdjustableGauss)] =
        NewItem(response, "AdjustableMenu", "Adjustable Gauss");
    w.responseItems[Index(Response::Butterworth)] =
        NewItem(response, "ButterworthMenu", "Butterworth");
    w.responseItems[Index(Response::Chebyshev)] = NewItem(response, "ChebyshevMenu", "Chebyshev");
    w.responseItems[Index(Response::Gaussian)] = NewItem(response, "GaussMenu", "Gaussian");
    w.responseItems[Index(Response::Bessel)] = NewItem(response, "BesselMenu", "Bessel");
    response.addSeparator();
    w.responseItems[Index(Response::Papoulis)] = NewItem(response, "PapoulisMenu", "Papoulis");

    QMenu& sweep = *NewMenu(bar, "SweepMenu", "Sweep F7 ");
    w.sweepItems[0] = NewItem(sweep, "LinearSweep", "Linear");
    w.sweepItems[1] = nullptr;  // half to double octave: F7 only
    w.sweepItems[2] = NewItem(sweep, "TwoOctaveSweep", "Two Octaves");
    w.sweepItems[3] = NewItem(sweep, "ThreeOctaveSweep", "Three Octaves");
    w.sweepItems[4] = NewItem(sweep, "OneDecadeSweep", "One Decade");
    w.sweepItems[5] = NewItem(sweep, "TwoDecadeSweep", "Two Decades");
}

void BuildToolMenus(QMenuBar& bar, TopFormWidgets& w) {
    QMenu& parts = *NewMenu(bar, "PartsMenu", "Parts  ");
    w.componentsMenu = NewItem(parts, "ComponentsMenu", "Components");
    w.dcBiasToolMenu = NewItem(parts, "DCBiasToolMenu", "DC Bias Tool");
    w.schematicMenu = NewItem(parts, "SchematicMenu", "Schematic");
    w.chooseCapacitorsMenu = NewItem(parts, "ChooseCapacitorsMenu", "Choose Capacitors");
    w.requirementMenu = NewItem(parts, "RequirementMenu", "Requirement");

    QMenu& plot = *NewMenu(bar, "PlotOptionsMenu", "Plot Options");
    w.graphPositionReadOutMenu =
        NewCheckItem(plot, "GraphPositionReadOutMenu", "Graph Position Read Out", true);
    w.valueAtFrquencyReadOutMenu =
        NewCheckItem(plot, "ValueAtFrquencyReadOutMenu", "Value at Frequency Read Out", false);
    plot.addSeparator();
    w.dBMagMenu = NewCheckItem(plot, "dBMagMenu", "dB Mag", true);
    w.linearMagMenu = NewCheckItem(plot, "LinearMagMenu", "Linear Mag", false);
    plot.addSeparator();
    w.phaseMenu = NewCheckItem(plot, "PhaseMenu", "Phase", true);
    w.hilbertPhaseMenu = NewCheckItem(plot, "HilbertPhaseMenu", "Hilbert Phase", false);
    plot.addSeparator();
    w.thresholdMenu = NewItem(plot, "ThresholdMenu", "Phase Plot Threshold");

    QMenu& help = *NewMenu(bar, "HelpMenu", "Help  ");
    w.circuitInfoMenu = NewItem(help, "CircuitInfoMenu", "Circuit Info");
    w.programInfoMenu = NewItem(help, "ProgramInfoMenu", "Program Info");
    w.aboutMenu = NewItem(help, "AboutMenu", "About");
}

}  // namespace

void TTopForm::BuildMenus() {
    QMenuBar& bar = *menuBar();
    BuildFileMenu(bar, *widgets_);
    BuildSelectionMenus(bar, *widgets_);
    BuildToolMenus(bar, *widgets_);
}

}  // namespace nerivane
