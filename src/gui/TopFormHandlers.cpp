// What the main window's selections, buttons, check boxes, spinners and typed capacitors do:
// each handler stores the choice in the design record through the core and recalculates or
// redraws. The menus' other actions are in TopFormActions.cpp.
#include <QGuiApplication>
#include <algorithm>
#include <tuple>

#include "app/CapacitorEntry.h"
#include "gui/BoxStepping.h"
#include "gui/CompSelectForm.h"
#include "gui/PlotPanel.h"
#include "gui/TopForm.h"
#include "gui/TopFormWidgets.h"

namespace nerivane {
namespace {

// Ctrl held during a click makes the real-valued steps coarser.
Step SpinnerStep(bool up) {
    const bool coarse = QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier);
    return {up ? StepDirection::Up : StepDirection::Down, coarse};
}

}  // namespace

void TTopForm::ConnectHandlers() {
    TopFormWidgets& w = *widgets_;
    // A circuit, family or sweep item stores its choice; every selection then goes through the
    // one handler that reads the check boxes and buttons and recalculates.
    for (const Topology topology : Topologies)
        connect(w.circuitItems[Index(topology)], &QAction::triggered, this, [this, topology] {
            state_.TopologyIndex = topology;
            FilterMenuClick();
        });
    for (std::size_t i = 0; i < w.responseItems.size(); ++i)
        connect(w.responseItems[i], &QAction::triggered, this, [this, i] {
            state_.ResponseIndex = static_cast<Response>(i);
            FilterMenuClick();
        });
    for (std::size_t i = 0; i < w.sweepItems.size(); ++i) {
        if (w.sweepItems[i] == nullptr) continue;
        connect(w.sweepItems[i], &QAction::triggered, this, [this, i] {
            state_.SweepIndex = static_cast<Sweep>(i);
            FilterMenuClick();
        });
    }
    for (QAbstractButton* button : std::initializer_list<QAbstractButton*>{
             w.plotGDBox, w.plotPhaseBox, w.plotMagBox, w.plotPulseBox, w.plotMag1dBBox,
             w.plotReferenceBox, w.idealOpAmpCheckBox, w.testBox, w.exactButton, w.stdButton,
             w.worstButton})
        connect(button, &QAbstractButton::clicked, this, &TTopForm::FilterMenuClick);

    connect(w.calcButton, &QPushButton::clicked, this, &TTopForm::CalcButtonClick);
    connect(w.autoScaleCheckBox, &QCheckBox::clicked, this, &TTopForm::CalcButtonClick);

    ConnectMenuActions();
    connect(w.setReferenceButton, &QPushButton::clicked, this, &TTopForm::SetReferenceButtonClick);
    connect(w.exchangeRefButton, &QPushButton::clicked, this, &TTopForm::ExchangeRefButtonClick);

    // Each adjusted box's spinner, also clicked by the wheel over the box.
    using Click = void (TTopForm::*)(Step);
    const std::tuple<UpDownButtons*, QLineEdit*, Click> spinners[] = {
        {w.numPolesUpDown, w.numPolesBox, &TTopForm::NumPolesUpDownClick},
        {w.rippleUpDown, w.rippleBox, &TTopForm::RippleUpDownClick},
        {w.f0UpDown, w.f0Box, &TTopForm::F0UpDownClick},
        {w.bandWidthUpDown, w.bandWidthBox, &TTopForm::BandWidthUpDownClick},
        {w.gainUpDown, w.filterGainBox, &TTopForm::GainUpDownClick},
        {w.gammaUpDown, w.gammaBox, &TTopForm::GammaUpDownClick},
        {w.sectionUpDown, w.sectionBox, &TTopForm::SectionUpDownClick},
        {w.testUpDown, w.upDownBox, &TTopForm::TestUpDownClick},
    };
    for (const auto& [spinner, box, click] : spinners) {
        connect(spinner, &UpDownButtons::Clicked, this,
                [this, click](bool up) { (this->*click)(SpinnerStep(up)); });
        stepping_->Add(box, [this, click](bool up, bool coarse) {
            (this->*click)({up ? StepDirection::Up : StepDirection::Down, coarse});
        });
    }
    for (const auto& [spinner, box, which] :
         {std::tuple{w.c1UpDown, w.c1ValueBox, Capacitor::C1},
          std::tuple{w.c2UpDown, w.c2ValueBox, Capacitor::C2}}) {
        connect(spinner, &UpDownButtons::Clicked, this,
                [this, which](bool up) { C1C2UpDownClick(which, up); });
        stepping_->Add(box, [this, which](bool up, bool) { C1C2UpDownClick(which, up); });
    }

    for (QLineEdit* box : {w.numPolesBox, w.rippleBox, w.gammaBox, w.f0Box, w.bandWidthBox,
                           w.filterGainBox, w.sectionBox, w.upDownBox, w.scaleBox})
        connect(box, &QLineEdit::returnPressed, this, &TTopForm::CalcButtonClick);
    connect(w.c1ValueBox, &QLineEdit::returnPressed, this,
            [this] { CapacitorEntered(Capacitor::C1); });
    connect(w.c2ValueBox, &QLineEdit::returnPressed, this,
            [this] { CapacitorEntered(Capacitor::C2); });

    connect(w.bitMap, &PlotBox::PointerMoved, this, [this](QPoint position) {
        plot_->SetPointer(position);
        ShowReadout();
    });
    connect(w.bitMap, &PlotBox::PointerLeft, this, [this] {
        plot_->SetPointer(std::nullopt);
        ShowReadout();
    });
}

void TTopForm::ApplyControlStates() {
    TopFormWidgets& w = *widgets_;
    for (QWidget* control :
         {static_cast<QWidget*>(w.bandWidthBox), static_cast<QWidget*>(w.bandWidthUpDown),
          static_cast<QWidget*>(w.bandWidthLabel)})
        control->setEnabled(controls_.bandWidthEnabled);
    for (QWidget* control :
         {static_cast<QWidget*>(w.rippleBox), static_cast<QWidget*>(w.rippleUpDown),
          static_cast<QWidget*>(w.rippleLabel)})
        control->setEnabled(controls_.rippleEnabled);
    for (QWidget* control :
         {static_cast<QWidget*>(w.gammaBox), static_cast<QWidget*>(w.gammaUpDown),
          static_cast<QWidget*>(w.gammaLabel)})
        control->setEnabled(controls_.gammaEnabled);

    w.hilbertPhaseMenu->setEnabled(controls_.hilbertPhaseMenuEnabled);
    w.hilbertPhaseMenu->setChecked(controls_.hilbertPhaseChecked);
    w.phaseMenu->setChecked(!controls_.hilbertPhaseChecked);
    w.plotPhaseBox->setText(QString::fromStdString(controls_.plotPhaseCaption));
    w.plotPulseBox->setEnabled(controls_.pulseBoxEnabled);
    w.plotMagBox->setEnabled(controls_.plotMagEnabled);
    w.linearMagMenu->setChecked(controls_.linearMagChecked);
    w.dBMagMenu->setChecked(!controls_.linearMagChecked);
    w.plotMag1dBBox->setText(QString::fromStdString(controls_.plotMag1dBCaption));

    // The record is what the boxes show; setChecked does not count as a click.
    w.plotMagBox->setChecked(state_.PlotMag != 0);
    w.plotMag1dBBox->setChecked(state_.PlotMag1dB != 0);
    w.plotPhaseBox->setChecked(state_.PlotPhase != 0);
    w.plotGDBox->setChecked(state_.PlotGroupDelay != 0);
    w.plotPulseBox->setChecked(state_.PlotPulse != 0);
    w.plotReferenceBox->setChecked(state_.PlotReference != 0);
    w.idealOpAmpCheckBox->setChecked(state_.IdealOpAmp != 0);
    w.autoScaleCheckBox->setChecked(state_.AutoScale != 0);
    w.exactButton->setChecked(state_.Tolerance == ToleranceMode::Exact);
    w.stdButton->setChecked(state_.Tolerance == ToleranceMode::Standard);
    w.worstButton->setChecked(state_.Tolerance == ToleranceMode::WorstCase);
    const bool atPosition = state_.ReadOut == ReadOutMode::GraphPosition;
    w.graphPositionReadOutMenu->setChecked(atPosition);
    w.valueAtFrquencyReadOutMenu->setChecked(!atPosition);
}

void TTopForm::FilterMenuClick() {
    const TopFormWidgets& w = *widgets_;
    state_.PlotMag = w.plotMagBox->isChecked();
    state_.PlotMag1dB = w.plotMag1dBBox->isChecked();
    state_.PlotPhase = w.plotPhaseBox->isChecked();
    state_.PlotGroupDelay = w.plotGDBox->isChecked();
    state_.PlotPulse = w.plotPulseBox->isChecked();
    state_.PlotReference = w.plotReferenceBox->isChecked();
    state_.IdealOpAmp = w.idealOpAmpCheckBox->isChecked();
    state_.Tolerance = w.worstButton->isChecked() ? ToleranceMode::WorstCase
                       : w.stdButton->isChecked() ? ToleranceMode::Standard
                                                  : ToleranceMode::Exact;
    controls_ = UpdateControlStates(state_);
    ApplyControlStates();
    CalcButtonClick();
}

// A spinner click reads its box before stepping it; the calculation that follows reads every
// box again and says whatever there is to say, so the click's own messages are not shown.
void TTopForm::NumPolesUpDownClick(Step step) {
    Messages readAgainBelow;
    AdjustNumPoles(state_, boxes_->numPoles, readAgainBelow, step);
    CalcButtonClick();
}

void TTopForm::RippleUpDownClick(Step step) {
    Messages readAgainBelow;
    AdjustRipple(state_, boxes_->ripple, readAgainBelow, step);
    CalcButtonClick();
}

void TTopForm::F0UpDownClick(Step step) {
    Messages readAgainBelow;
    AdjustF0(state_, boxes_->f0, readAgainBelow, step);
    CalcButtonClick();
}

void TTopForm::BandWidthUpDownClick(Step step) {
    Messages readAgainBelow;
    AdjustBandWidth(state_, boxes_->bandWidth, readAgainBelow, step);
    CalcButtonClick();
}

void TTopForm::GainUpDownClick(Step step) {
    Messages readAgainBelow;
    AdjustGain(state_, boxes_->gain, readAgainBelow, step);
    CalcButtonClick();
}

void TTopForm::GammaUpDownClick(Step step) {
    Messages readAgainBelow;
    AdjustGamma(state_, boxes_->gamma, readAgainBelow, step);
    CalcButtonClick();
}

void TTopForm::TestUpDownClick(Step step) {
    Messages readAgainBelow;
    AdjustTestValue(state_, boxes_->testValue, readAgainBelow, step);
    CalcButtonClick();
}

// Stepping through the sections or their capacitors is done while watching the nominal
// curve, so it takes one simulation run even in a worst-case analysis.
void TTopForm::SectionUpDownClick(Step step) {
    Messages readAgainBelow;
    AdjustSection(state_, boxes_->section, {boxes_->c1Value, boxes_->c2Value}, readAgainBelow,
                  step);
    c1Rejected_ = false;
    c2Rejected_ = false;
    Calculate(true);
}

void TTopForm::C1C2UpDownClick(Capacitor which, bool up) {
    if (dialogs_.compSelect != nullptr) dialogs_.compSelect->ReadClasses(settings_);
    LineEditBox& box = which == Capacitor::C1 ? boxes_->c1Value : boxes_->c2Value;
    StepSectionCapacitor(state_, box, which, up, settings_);
    (which == Capacitor::C1 ? c1Rejected_ : c2Rejected_) = false;
    Calculate(true);
}

void TTopForm::CapacitorEntered(Capacitor which) {
    LineEditBox& box = which == Capacitor::C1 ? boxes_->c1Value : boxes_->c2Value;
    const int section = std::clamp(state_.SelectedSection, 0, MaxSections - 1);
    double& stored = which == Capacitor::C1 ? state_.SectionC1[section] : state_.SectionC2[section];
    bool& rejected = which == Capacitor::C1 ? c1Rejected_ : c2Rejected_;
    const std::optional<double> typed = ParseCapacitance(box.Text());
    rejected = !typed.has_value();
    if (rejected) {
        box.SetText(CapacitorBoxText(stored));
        ShowCapacitorBoxColours();
        return;
    }
    stored = *typed;
    box.SetText(CapacitorBoxText(stored));
    CalcButtonClick();
}

}  // namespace nerivane
