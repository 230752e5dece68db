// The controls of the main window's control panel (above the plot) and their arrangement;
// the section panel is built in TopFormSectionPanel.cpp. Where the panels sit in the window is
// FormResize's business.
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "app/Calculationdriver.h"
#include "app/Updownfunctions.h"
#include "gui/NamedWidget.h"
#include "gui/PanelBuilding.h"
#include "gui/TopFormWidgets.h"

namespace nerivane {
namespace {

constexpr int ScaleBoxWidth = 80;

// The trace colours on the captions of the plot boxes, so each box shows its trace's colour.
const QColor Mag1dBColour(128, 0, 0);
const QColor MagColour(255, 0, 0);
const QColor PhaseColour(0, 0, 255);
const QColor GroupDelayColour(0, 96, 0);
const QColor PulseColour(255, 128, 0);
const QColor MemoBackground(245, 245, 245);

QCheckBox* NewTraceBox(const char* name, const char* caption, const QColor& colour,
                       const char* hint, QWidget* parent) {
    QCheckBox* box = NewNamed<QCheckBox>(name, QString::fromLatin1(caption), parent);
    QPalette palette = box->palette();
    palette.setColor(QPalette::Active, QPalette::WindowText, colour);
    palette.setColor(QPalette::Inactive, QPalette::WindowText, colour);
    box->setPalette(palette);
    box->setToolTip(QString::fromLatin1(hint));
    return box;
}

QWidget* BuildPolynomialPanel(QWidget* parent, TopFormWidgets& w) {
    QGroupBox* panel = NewPanel("PolynomialPanel", QStringLiteral("Polynomial Arguments"), parent);
    w.numPolesBox = NewBox(BoxId::NumPoles, NumberBoxWidth, panel);
    w.numPolesUpDown = new UpDownButtons(QStringLiteral("NumPolesUpDown"), panel);
    w.rippleBox = NewBox(BoxId::Ripple, NumberBoxWidth, panel);
    w.rippleUpDown = new UpDownButtons(QStringLiteral("RippleUpDown"), panel);
    w.rippleLabel = NewLabel("RippleLabel", CaptionOf(BoxId::Ripple), panel);
    w.gammaBox = NewBox(BoxId::Gamma, NumberBoxWidth, panel);
    w.gammaUpDown = new UpDownButtons(QStringLiteral("GammaUpDown"), panel);
    w.gammaLabel = NewLabel("GammaLabel", CaptionOf(BoxId::Gamma), panel);
    // The label names the family gamma resembles; room for the longest name keeps the panels
    // from shifting as gamma changes.
    int widest = 0;
    for (const double gamma : {-1.0, -0.7, 0.0, 1.0}) {
        const QString name = QString::fromStdString(GammaLabelText(gamma, true));
        widest = std::max(widest, w.gammaLabel->fontMetrics().horizontalAdvance(name));
    }
    w.gammaLabel->setMinimumWidth(widest);
    QGridLayout* grid = NewGrid(panel);
    AddBoxRow(*grid, 0, NewLabel("NumPolesLabel", CaptionOf(BoxId::NumPoles), panel), w.numPolesBox,
              w.numPolesUpDown);
    AddBoxRow(*grid, 1, w.rippleLabel, w.rippleBox, w.rippleUpDown);
    AddBoxRow(*grid, 2, w.gammaLabel, w.gammaBox, w.gammaUpDown);
    grid->setRowStretch(3, 1);
    return panel;
}

QWidget* BuildFrequencyPanel(QWidget* parent, TopFormWidgets& w) {
    QGroupBox* panel = NewPanel("FrequencyPanel", QStringLiteral("Frequency"), parent);
    w.f0Box = NewBox(BoxId::F0, NumberBoxWidth, panel);
    w.f0UpDown = new UpDownButtons(QStringLiteral("F0UpDown"), panel);
    w.bandWidthBox = NewBox(BoxId::BandWidth, NumberBoxWidth, panel);
    w.bandWidthUpDown = new UpDownButtons(QStringLiteral("BandWidthUpDown"), panel);
    w.bandWidthLabel = NewLabel("BandWidthLabel", CaptionOf(BoxId::BandWidth), panel);
    w.filterGainBox = NewBox(BoxId::Gain, NumberBoxWidth, panel);
    w.gainUpDown = new UpDownButtons(QStringLiteral("GainUpDown"), panel);
    QGridLayout* grid = NewGrid(panel);
    AddBoxRow(*grid, 0, NewLabel("F0Label", CaptionOf(BoxId::F0), panel), w.f0Box, w.f0UpDown);
    AddBoxRow(*grid, 1, w.bandWidthLabel, w.bandWidthBox, w.bandWidthUpDown);
    AddBoxRow(*grid, 2, NewLabel("GainLabel", CaptionOf(BoxId::Gain), panel), w.filterGainBox,
              w.gainUpDown);
    grid->setRowStretch(3, 1);
    return panel;
}

// The parts: exact, standard or varied values, their tolerances and the op-amp model.
QWidget* BuildPartsPanel(QWidget* parent, TopFormWidgets& w) {
    QGroupBox* panel = NewPanel("PartsPanel", QStringLiteral("Components and Op Amp"), parent);
    w.exactButton = NewNamed<QRadioButton>("ExactButton", QStringLiteral("Exact R"), panel);
    w.exactButton->setChecked(true);
    w.stdButton = NewNamed<QRadioButton>("StdButton", QStringLiteral("Standard R"), panel);
    w.worstButton = NewNamed<QRadioButton>("WorstButton", QStringLiteral("Worst Case"), panel);
    w.rcToleranceLabel = NewLabel("RCToleranceLabel", QStringLiteral("C 20%   R 20%"), panel);
    w.toleranceButton =
        NewNamed<QPushButton>("ToleranceButton", QStringLiteral("Tolerances"), panel);
    w.idealOpAmpCheckBox =
        NewNamed<QCheckBox>("IdealOpAmpCheckBox", QStringLiteral("Ideal Op Amp"), panel);
    w.idealOpAmpCheckBox->setChecked(true);
    w.opAmpBWLabel = NewLabel("OpAmpBWLabel", QStringLiteral("OpAmpBW"), panel);
    w.opAmpRoLabel = NewLabel("OpAmpRoLabel", QStringLiteral("OpAmpRo"), panel);
    QGridLayout* grid = NewGrid(panel);
    grid->addWidget(w.exactButton, 0, 0);
    grid->addWidget(w.stdButton, 1, 0);
    grid->addWidget(w.worstButton, 2, 0);
    grid->addWidget(w.rcToleranceLabel, 3, 0);
    grid->addWidget(w.idealOpAmpCheckBox, 0, 1);
    grid->addWidget(w.opAmpBWLabel, 1, 1);
    grid->addWidget(w.opAmpRoLabel, 2, 1);
    grid->addWidget(w.toleranceButton, 3, 1);
    grid->setRowStretch(4, 1);
    return panel;
}

QLayout* BuildTraceRow(QWidget* parent, TopFormWidgets& w) {
    w.plotMagBox = NewTraceBox("PlotMagBox", "Mag 10 dB", MagColour,
                               "Displays 20 Log() of the magnitude of the response.", parent);
    w.plotMagBox->setChecked(true);
    w.plotMag1dBBox = NewTraceBox("PlotMag1dBBox", "Mag   1 dB", Mag1dBColour,
                                  "Displays 20 Log() of the magnitude of the response.", parent);
    w.plotPhaseBox = NewTraceBox("PlotPhaseBox", "Phase", PhaseColour,
                                 "Displays the Phase of the response.", parent);
    w.plotGDBox = NewTraceBox("PlotGDBox", "Group Delay", GroupDelayColour,
                              "Displays the Group Delay of the response.", parent);
    w.plotPulseBox = NewTraceBox(
        "PlotPulseBox", "Sq Pulse", PulseColour,
        "Displays the response to a square pulse input.\nThe input starts at t=0 and stops at  "
        "3/ 2  N_Taps except for Tap counts < 12.",
        parent);
    w.calcButton = NewNamed<QPushButton>("CalcButton", QStringLiteral("Calc"), parent);
    auto* row = new QHBoxLayout;
    for (QCheckBox* box :
         {w.plotMagBox, w.plotMag1dBBox, w.plotPhaseBox, w.plotGDBox, w.plotPulseBox})
        row->addWidget(box);
    row->addStretch(1);
    row->addWidget(w.calcButton);
    return row;
}

QLayout* BuildScaleAndReferenceRow(QWidget* parent, TopFormWidgets& w) {
    w.autoScaleCheckBox =
        NewNamed<QCheckBox>("AutoScaleCheckBox", QStringLiteral("Auto Scale"), parent);
    w.autoScaleCheckBox->setChecked(true);
    w.autoScaleCheckBox->setToolTip(
        QStringLiteral("Scales the group delay to the design; untick to type the scale."));
    w.scaleBox = NewBox("ScaleBox", "", ScaleBoxWidth, parent);
    w.scaleBox->setToolTip(QStringLiteral("Group delay at the top of the plot, in seconds."));
    w.referenceLabel = NewLabel("ReferenceLabel", QStringLiteral("Butterworth"), parent);
    w.referenceLabel->setToolTip(
        QStringLiteral("Displays the name of the filter stored as the reference."));
    w.setReferenceButton =
        NewNamed<QPushButton>("SetReferenceButton", QStringLiteral("Set Ref"), parent);
    w.setReferenceButton->setToolTip(
        QStringLiteral("Use Set Reference to compare two filter designs."));
    w.exchangeRefButton =
        NewNamed<QPushButton>("ExchangeRefButton", QStringLiteral("Exhange Ref"), parent);
    w.exchangeRefButton->setToolTip(
        QStringLiteral("Use Exchange Ref to switch the current filter design with the one "
                       "stored as the reference."));
    w.plotReferenceBox =
        NewNamed<QCheckBox>("PlotReferenceBox", QStringLiteral("Plot Ref"), parent);
    w.plotReferenceBox->setToolTip(
        QStringLiteral("Plot Reference plots the response of the filter stored as a reference."));
    // Nothing to exchange or plot until a reference has been set.
    w.exchangeRefButton->setEnabled(false);
    w.plotReferenceBox->setEnabled(false);

    auto* row = new QHBoxLayout;
    row->addWidget(w.autoScaleCheckBox);
    row->addWidget(w.scaleBox);
    row->addStretch(1);
    row->addWidget(w.referenceLabel);
    row->addWidget(w.setReferenceButton);
    row->addWidget(w.exchangeRefButton);
    row->addWidget(w.plotReferenceBox);
    return row;
}

// The test panel and the sampling box are kept for the design's hidden inputs; they are
// never shown.
QLayout* BuildHiddenInputs(QWidget* parent, TopFormWidgets& w) {
    w.testPanel = new QWidget(parent);
    w.testPanel->setObjectName(QStringLiteral("TestPanel"));
    w.testBox = NewNamed<QCheckBox>("TestBox", QStringLiteral("Test"), w.testPanel);
    w.upDownBox = NewBox(BoxId::TestValue, NumberBoxWidth, w.testPanel);
    w.testUpDown = new UpDownButtons(QStringLiteral("TestUpDown"), w.testPanel);
    auto* testRow = new QHBoxLayout(w.testPanel);
    testRow->addWidget(w.testBox);
    testRow->addWidget(w.upDownBox);
    testRow->addWidget(w.testUpDown);
    w.testPanel->hide();
    w.samplingFreqBox = NewBox("SamplingFreqBox", "", NumberBoxWidth, parent);
    w.samplingFreqBox->hide();
    auto* row = new QHBoxLayout;
    row->addWidget(w.testPanel);
    row->addWidget(w.samplingFreqBox);
    return row;
}

QWidget* BuildControlPanel(QWidget& central, TopFormWidgets& w) {
    auto* panel = new QWidget(&central);
    panel->setObjectName(QStringLiteral("ControlPanel"));
    auto* panels = new QHBoxLayout;
    panels->setSpacing(2);
    panels->addWidget(BuildPolynomialPanel(panel, w));
    panels->addWidget(BuildFrequencyPanel(panel, w));
    panels->addWidget(BuildPartsPanel(panel, w));
    panels->addStretch(1);
    auto* column = new QVBoxLayout(panel);
    column->setContentsMargins(2, 2, 2, 0);
    column->setSpacing(2);
    column->addLayout(panels);
    column->addLayout(BuildTraceRow(panel, w));
    column->addLayout(BuildScaleAndReferenceRow(panel, w));
    column->addLayout(BuildHiddenInputs(panel, w));
    return panel;
}

}  // namespace

void BuildStatusLine(QStatusBar& bar, TopFormWidgets& w) {
    w.designStatus = new QLabel(&bar);
    w.designStatus->setObjectName(QStringLiteral("DesignStatus"));
    w.requirementStatus = new QLabel(&bar);
    w.requirementStatus->setObjectName(QStringLiteral("RequirementStatus"));
    w.warningsStatus = new QLabel(&bar);
    w.warningsStatus->setObjectName(QStringLiteral("WarningsStatus"));
    QPalette palette = w.warningsStatus->palette();
    palette.setColor(QPalette::WindowText, QColor(160, 0, 0));
    w.warningsStatus->setPalette(palette);
    bar.addWidget(w.designStatus);
    bar.addWidget(w.requirementStatus);
    bar.addWidget(w.warningsStatus, 1);
}

void BuildControls(QWidget& central, TopFormWidgets& w) {
    w.controlPanel = BuildControlPanel(central, w);
    w.basePanel = BuildBasePanel(central, w);
    w.memo = new QPlainTextEdit(&central);
    w.memo->setObjectName(QStringLiteral("Memo"));
    w.memo->setReadOnly(true);
    w.memo->setLineWrapMode(QPlainTextEdit::NoWrap);
    QPalette palette = w.memo->palette();
    palette.setColor(QPalette::Base, MemoBackground);
    w.memo->setPalette(palette);
    w.bitMap = new PlotBox(&central);
}

}  // namespace nerivane
