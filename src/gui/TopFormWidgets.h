// The main window's controls, shared by the files that build the window and those that handle
// its events. Every control carries its name as its object name.
#pragma once

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <array>

#include "gui/LineEditBox.h"
#include "gui/PlotBox.h"
#include "gui/UpDownButtons.h"

namespace nerivane {

struct TopFormWidgets {
    // Parameter boxes and their spinners.
    QLineEdit* numPolesBox;
    UpDownButtons* numPolesUpDown;
    QLineEdit* rippleBox;
    UpDownButtons* rippleUpDown;
    QLabel* rippleLabel;
    QLineEdit* gammaBox;
    UpDownButtons* gammaUpDown;
    QLabel* gammaLabel;
    QLineEdit* f0Box;
    UpDownButtons* f0UpDown;
    QLineEdit* bandWidthBox;
    UpDownButtons* bandWidthUpDown;
    QLabel* bandWidthLabel;
    QLineEdit* filterGainBox;
    UpDownButtons* gainUpDown;

    // The section and capacitor panel.
    QWidget* basePanel;
    QLineEdit* sectionBox;
    UpDownButtons* sectionUpDown;
    QLabel* label3;
    QLineEdit* c1ValueBox;
    UpDownButtons* c1UpDown;
    QLabel* c1ValueLabel;
    QWidget* c2Panel;
    QLineEdit* c2ValueBox;
    UpDownButtons* c2UpDown;
    QLabel* c2Label;

    // Op amp and tolerances.
    QPushButton* calcButton;
    QCheckBox* idealOpAmpCheckBox;
    QLabel* opAmpBWLabel;
    QLabel* opAmpRoLabel;
    QRadioButton* exactButton;
    QRadioButton* stdButton;
    QRadioButton* worstButton;
    QLabel* rcToleranceLabel;
    QPushButton* toleranceButton;

    // Traces, reference and scale.
    QCheckBox* plotMagBox;
    QCheckBox* plotMag1dBBox;
    QCheckBox* plotPhaseBox;
    QCheckBox* plotGDBox;
    QCheckBox* plotPulseBox;
    QLabel* referenceLabel;
    QPushButton* setReferenceButton;
    QPushButton* exchangeRefButton;
    QCheckBox* plotReferenceBox;
    QCheckBox* autoScaleCheckBox;
    QLineEdit* scaleBox;

    // The hidden test panel and sampling box.
    QWidget* testPanel;
    QCheckBox* testBox;
    QLineEdit* upDownBox;
    UpDownButtons* testUpDown;
    QLineEdit* samplingFreqBox;

    QWidget* controlPanel;  // everything above the plot, left of the section panel
    QPlainTextEdit* memo;
    PlotBox* bitMap;
    // The status line: the design held, whether it meets the requirement, and the build
    // warnings of the last calculation.
    QLabel* designStatus;
    QLabel* requirementStatus;
    QLabel* warningsStatus;

    // Menu items. The selection items are indexed by the record value they select; the
    // sweep that only F7 reaches has none.
    std::array<QAction*, 7> circuitItems;
    std::array<QAction*, 6> responseItems;
    std::array<QAction*, 6> sweepItems;
    QAction* fileOpenMenu;
    QAction* fileSaveMenu;
    QAction* fileSaveAsMenu;
    QAction* saveCircuitValuesMenu;
    QAction* savePartsListMenu;
    QAction* savePlotBitmapMenu;
    QAction* savePlotSvgMenu;
    QAction* savePlotPdfMenu;
    QAction* saveReportPdfMenu;
    QAction* saveSpiceNetlistMenu;
    QAction* printScreenMenu;
    std::array<QAction*, 4> prevFileMenus;
    QAction* exitMenu;
    QAction* componentsMenu;
    QAction* dcBiasToolMenu;
    QAction* schematicMenu;
    QAction* chooseCapacitorsMenu;
    QAction* requirementMenu;
    QAction* graphPositionReadOutMenu;
    QAction* valueAtFrquencyReadOutMenu;
    QAction* dBMagMenu;
    QAction* linearMagMenu;
    QAction* phaseMenu;
    QAction* hilbertPhaseMenu;
    QAction* thresholdMenu;
    QAction* circuitInfoMenu;
    QAction* programInfoMenu;
    QAction* aboutMenu;
};

// Builds every control of the central widget (the menus are built by the window).
void BuildControls(QWidget& central, TopFormWidgets& widgets);
void BuildStatusLine(QStatusBar& bar, TopFormWidgets& widgets);
// The section panel, built into widgets.
QWidget* BuildBasePanel(QWidget& central, TopFormWidgets& widgets);

// The core's view of the parameter boxes.
struct TopFormBoxes {
    explicit TopFormBoxes(const TopFormWidgets& w)
        : numPoles(w.numPolesBox),
          ripple(w.rippleBox),
          f0(w.f0Box),
          bandWidth(w.bandWidthBox),
          gain(w.filterGainBox),
          gamma(w.gammaBox),
          section(w.sectionBox),
          testValue(w.upDownBox),
          c1Value(w.c1ValueBox),
          c2Value(w.c2ValueBox),
          scale(w.scaleBox) {}
    LineEditBox numPoles;
    LineEditBox ripple;
    LineEditBox f0;
    LineEditBox bandWidth;
    LineEditBox gain;
    LineEditBox gamma;
    LineEditBox section;
    LineEditBox testValue;
    LineEditBox c1Value;
    LineEditBox c2Value;
    LineEditBox scale;
};

}  // namespace nerivane
