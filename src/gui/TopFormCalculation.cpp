// One calculation as the window runs it: the core reads the boxes and computes the design,
// each simulation run is painted into the plot image as it finishes, and the report, labels
// and section hints show what the calculation left.
#include <QGuiApplication>
#include <QScrollBar>

#include "app/Plotview.h"
#include "app/Statusline.h"
#include "gui/CompSelectForm.h"
#include "gui/MessageSink.h"
#include "gui/OptionsForm.h"
#include "gui/PlotPanel.h"
#include "gui/RequirementForm.h"
#include "gui/TopForm.h"
#include "gui/TopFormWidgets.h"
#include "numerics/Formatfunctions.h"

namespace nerivane {
namespace {

const QColor PushedDownColour(255, 255, 0);

QString Lines(const std::vector<std::string>& notes, const std::vector<std::string>& report) {
    QString text;
    for (const auto* lines : {&notes, &report}) {
        for (const std::string& line : *lines) {
            text += QString::fromStdString(line);
            text += QLatin1Char('\n');
        }
    }
    return text;
}

}  // namespace

void TTopForm::CalcButtonClick() {
    Calculate(false);
}

ParameterBoxes TTopForm::Parameters() {
    TopFormBoxes& b = *boxes_;
    static_assert(BoxCount == 14, "one box here per row of the box table, in its order");
    return ParameterBoxes(
        {&b.numPoles, &b.ripple, &b.f0, &b.bandWidth, &b.gain, &b.gamma, &b.section, &b.testValue,
         &b.c1Value, &b.c2Value, &dialogs_.options->ThresholdBox(),
         &dialogs_.compSelect->GainBandwidthBox(), &dialogs_.compSelect->OutputResistanceBox(),
         &dialogs_.compSelect->WorstCaseRunsBox()});
}

void TTopForm::Calculate(bool singlePass) {
    if (dialogs_.compSelect == nullptr || dialogs_.options == nullptr) return;
    if (keyedInput_) {
        // A full calculation asked for by any of the keys wins over single passes.
        keyedSinglePass_ = keyedSinglePass_ && singlePass;
        keyedCalculation_.start();
        return;
    }
    keyedCalculation_.stop();
    keyedSinglePass_ = true;
    worstCaseRedraw_.stop();
    TopFormWidgets& w = *widgets_;
    state_.IdealOpAmp = w.idealOpAmpCheckBox->isChecked();
    state_.AutoScale = w.autoScaleCheckBox->isChecked();
    Messages optionMessages;
    settings_.build = dialogs_.options->ReadBuildOptions(settings_.build, optionMessages);
    dialogs_.compSelect->ReadClasses(settings_);
    ShowMessages(optionMessages);
    WriteBuildOptionsFile();
    CalculationOptions options;
    options.singlePass = singlePass;
    if (dialogs_.requirement != nullptr) options.mask = dialogs_.requirement->MaskToCheck();
    bool painted = false;
    options.perRun = [this, &painted](int run, const Traces& traces) {
        PaintRun(run, traces);
        painted = true;
    };
    const bool longRun = state_.Tolerance == ToleranceMode::WorstCase && !singlePass;
    if (longRun) QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    // The same draws every time, so an unchanged design redraws the same picture.
    ToleranceRandom random;
    nerivane::Calculate(state_, Parameters(), settings_, *results_, random, options);
    ShowMessages(results_->messages);
    calculated_ = true;
    if (!painted) PaintRun(0, results_->traces);
    if (results_->runs > 1) plot_->PaintEnvelope(results_->envelope);
    plot_->Show();
    ShowResults();
    ShowReadout();
    UpdateAuxiliaryWindows();
    if (longRun) QGuiApplication::restoreOverrideCursor();
}

PlotView TTopForm::CurrentPlotView() {
    const TopFormWidgets& w = *widgets_;
    PlotView view = PlotViewFor(state_, controls_, *results_, std::max(1, w.bitMap->width()),
                                std::max(1, w.bitMap->height()));
    Messages scaleMessages;
    view.groupDelayScale = ReadGroupDelayScale(boxes_->scale, results_->traces.groupDelayScale,
                                               state_.AutoScale != 0, scaleMessages);
    ShowMessages(scaleMessages);
    state_.GroupDelayScale = view.groupDelayScale;
    return view;
}

void TTopForm::PaintRun(int run, const Traces& traces) {
    // The reference is drawn over the nominal picture only, simulated again over this sweep.
    const bool withReference = run == 0 && reference_.isSet && state_.PlotReference;
    if (withReference) ReSimulateReference(reference_, state_, settings_.build.opAmpModel);
    plot_->PaintRun(run, run == 0 ? CurrentPlotView() : plot_->View(), traces,
                    withReference ? reference_.traces.get() : nullptr);
}

void TTopForm::Redraw() {
    if (!calculated_) return;
    PaintRun(0, results_->traces);
    plot_->Show();
    ShowReadout();
}

void TTopForm::RedrawPlot() {
    // The runs of a worst-case analysis are not kept; the same draws bring them back.
    if (state_.Tolerance == ToleranceMode::WorstCase && results_->runs > 1)
        CalcButtonClick();
    else
        Redraw();
}

void TTopForm::ShowResults() {
    TopFormWidgets& w = *widgets_;
    const DesignResults& results = *results_;
    // Stepping a part keeps the report where the user scrolled it.
    QScrollBar* scroll = w.memo->verticalScrollBar();
    const int scrolled = scroll->value();
    w.memo->setPlainText(Lines(results.reportNotes, results.report));
    scroll->setValue(scrolled);

    w.opAmpBWLabel->setText(QString::fromStdString(results.opAmpLabels.bandwidth));
    w.opAmpRoLabel->setText(QString::fromStdString(results.opAmpLabels.outputResistance));
    w.rcToleranceLabel->setText(QString::fromStdString(results.toleranceLabel));
    w.gammaLabel->setText(QString::fromStdString(results.gammaLabel));
    w.c1ValueLabel->setText(QString::fromStdString(results.hints.c1LimitText));
    w.c1ValueLabel->setVisible(results.hints.c1LimitVisible);
    w.c2Label->setText(QString::fromStdString(results.hints.suggestedC2Text));
    w.c2Panel->setVisible(results.hints.c2PanelVisible);
    ShowCapacitorBoxColours();
    ShowStatusLine();
}

void TTopForm::ShowStatusLine() {
    const TopFormWidgets& w = *widgets_;
    w.designStatus->setText(QString::fromStdString(DesignSummaryText(state_)));
    const RequirementCheck& check = results_->requirement;
    w.requirementStatus->setText(QString::fromStdString(
        RequirementSummaryText(check, state_.Tolerance == ToleranceMode::WorstCase)));
    QPalette palette = w.requirementStatus->palette();
    palette.setColor(QPalette::WindowText,
                     check.nominal.Meets() ? QColor(0, 110, 0) : QColor(160, 0, 0));
    w.requirementStatus->setPalette(palette);
    const std::vector<std::string>& warnings = results_->checks.warnings;
    w.warningsStatus->setText(QString::fromStdString(WarningsSummaryText(warnings)));
    QString all;
    for (const std::string& warning : warnings) all += QString::fromStdString(warning) + '\n';
    w.warningsStatus->setToolTip(all.trimmed());
}

void TTopForm::ShowCapacitorBoxColours() {
    boxes_->c1Value.SetRepaired(c1Rejected_);
    boxes_->c2Value.SetRepaired(c2Rejected_);
    // Yellow: the design had to use a smaller C1 than the one typed.
    if (!c1Rejected_ && calculated_ && results_->hints.c1PushedDown) {
        QLineEdit* box = widgets_->c1ValueBox;
        QPalette palette = box->palette();
        palette.setColor(QPalette::Base, PushedDownColour);
        box->setPalette(palette);
    }
}

void TTopForm::ShowReadout() {
    plot_->ShowReadout(calculated_ ? &results_->traces : nullptr, state_.ReadOut);
}

}  // namespace nerivane
