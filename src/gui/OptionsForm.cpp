#include "gui/OptionsForm.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShowEvent>
#include <QVBoxLayout>
#include <cmath>

#include "gui/LineEditBox.h"
#include "gui/NamedWidget.h"
#include "gui/WindowPlacement.h"
#include "numerics/Sivalue.h"

namespace nerivane {

struct TOptionsForm::Widgets {
    LineEditBox threshold;
    QComboBox* opAmpModel;
    QLineEdit* minOhms;
    QLineEdit* maxOhms;
    QLineEdit* amplitude;
    QCheckBox* notchIndependent;
    QCheckBox* bestStandard;
};

namespace {

QString EngineeringText(double value, const char* unit) {
    return QString::fromStdString(SiText(value, 6, unit));
}

// A positive value in the box's unit, SI prefixes allowed; the box shows current again when
// it holds anything else.
double ReadPositive(QLineEdit* box, const char* unit, double current, const char* what,
                    Messages& messages) {
    const std::optional<double> value = ParseTypedValue(box->text().toStdString(), unit);
    if (value && *value > 0.0 && std::isfinite(*value)) return *value;
    messages.push_back({"\"" + box->text().toStdString() + "\" is not a " + what + "; it stays " +
                            SiText(current, 6, unit) + ".",
                        "Options"});
    box->setText(EngineeringText(current, unit));
    return current;
}

}  // namespace

TOptionsForm::TOptionsForm(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("OptionsForm"));
    setWindowTitle(CaptionOf(BoxId::PhaseThreshold));
    setModal(false);

    auto* explanation = NewNamed<QLabel>(
        "Label2",
        QStringLiteral("Cutoff for Phase and Group delay plots. (dB) Stops the phase and GD "
                       "plots in the stop band."),
        this);
    explanation->setWordWrap(true);
    auto* thresholdBox = NewParameterBox(BoxId::PhaseThreshold, this);
    auto* applyButton = NewNamed<QPushButton>("ApplyButton", QStringLiteral("Apply"), this);
    auto* closeButton = NewNamed<QPushButton>("CloseButton", QStringLiteral("Close"), this);
    // Enter in the box applies what was typed.
    applyButton->setDefault(true);
    connect(applyButton, &QPushButton::clicked, this, &TOptionsForm::Applied);
    connect(closeButton, &QPushButton::clicked, this, &QDialog::hide);

    auto* build =
        NewNamed<QGroupBox>("BuildOptionsGroup", QStringLiteral("The circuit as built"), this);
    auto* opAmpModel = new QComboBox(build);
    opAmpModel->setObjectName(QStringLiteral("OpAmpModelBox"));
    opAmpModel->addItem(QStringLiteral("Magnitude only (gain GBW / f)"));
    opAmpModel->addItem(QStringLiteral("Single pole with phase"));
    auto* minOhms = NewNamed<QLineEdit>("MinResistanceBox", QString(), build);
    auto* maxOhms = NewNamed<QLineEdit>("MaxResistanceBox", QString(), build);
    auto* amplitude = NewNamed<QLineEdit>("InputAmplitudeBox", QString(), build);
    auto* notchIndependent =
        NewNamed<QCheckBox>("NotchIndependentBox",
                            QStringLiteral("Worst case varies each notch part on its own"), build);
    auto* bestStandard = NewNamed<QCheckBox>(
        "BestStandardBox",
        QStringLiteral("Standard resistors: search each section's neighbours for f0 and Q"), build);
    bestStandard->setToolTip(QStringLiteral(
        "Instead of rounding each resistor alone, try the standard values below and above each "
        "resistor together and keep the ones that keep the section's f0 and Q nearest the exact "
        "design"));
    auto* form = new QFormLayout(build);
    form->addRow(QStringLiteral("Op-amp model"), opAmpModel);
    auto* range = new QHBoxLayout;
    range->addWidget(minOhms);
    range->addWidget(new QLabel(QStringLiteral("to"), build));
    range->addWidget(maxOhms);
    form->addRow(QStringLiteral("Practical resistors"), range);
    form->addRow(QStringLiteral("Input amplitude (V peak)"), amplitude);
    form->addRow(notchIndependent);
    form->addRow(bestStandard);

    auto* thresholdLayout = new QHBoxLayout;
    thresholdLayout->addWidget(thresholdBox);
    thresholdLayout->addStretch(1);
    auto* buttonLayout = new QHBoxLayout;
    buttonLayout->addStretch(1);
    buttonLayout->addWidget(applyButton);
    buttonLayout->addWidget(closeButton);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(explanation);
    layout->addLayout(thresholdLayout);
    layout->addWidget(build);
    layout->addLayout(buttonLayout);
    // Wide enough for the explanation to wrap onto two lines rather than a narrow column.
    setMinimumWidth(360);

    widgets_ =
        std::make_unique<Widgets>(Widgets{LineEditBox(thresholdBox), opAmpModel, minOhms, maxOhms,
                                          amplitude, notchIndependent, bestStandard});
    ShowBuildOptions({});
    // The model and the check box take effect at once, as the tolerance buttons do.
    connect(opAmpModel, &QComboBox::activated, this, &TOptionsForm::Applied);
    connect(notchIndependent, &QCheckBox::clicked, this, &TOptionsForm::Applied);
    connect(bestStandard, &QCheckBox::clicked, this, &TOptionsForm::Applied);
}

TOptionsForm::~TOptionsForm() = default;

EditBox& TOptionsForm::ThresholdBox() {
    return widgets_->threshold;
}

BuildOptions TOptionsForm::ReadBuildOptions(const BuildOptions& current, Messages& messages) {
    const Widgets& w = *widgets_;
    BuildOptions options = current;
    options.opAmpModel =
        w.opAmpModel->currentIndex() == 1 ? OpAmpModel::SinglePole : OpAmpModel::Magnitude;
    const double low =
        ReadPositive(w.minOhms, "\u03A9", current.minPracticalOhms, "resistance in ohms", messages);
    const double high =
        ReadPositive(w.maxOhms, "\u03A9", current.maxPracticalOhms, "resistance in ohms", messages);
    if (low < high) {
        options.minPracticalOhms = low, options.maxPracticalOhms = high;
    } else {
        messages.push_back(
            {"The practical range needs its first resistance below the second; "
             "it stays as it was.",
             "Options"});
        ShowBuildOptions(current);
    }
    options.inputAmplitudeVolts =
        ReadPositive(w.amplitude, "V", current.inputAmplitudeVolts, "voltage", messages);
    options.notchPartsIndependent = w.notchIndependent->isChecked();
    options.bestStandardValues = w.bestStandard->isChecked();
    return options;
}

void TOptionsForm::ShowBuildOptions(const BuildOptions& options) {
    const Widgets& w = *widgets_;
    w.opAmpModel->setCurrentIndex(options.opAmpModel == OpAmpModel::SinglePole ? 1 : 0);
    w.minOhms->setText(EngineeringText(options.minPracticalOhms, "\u03A9"));
    w.maxOhms->setText(EngineeringText(options.maxPracticalOhms, "\u03A9"));
    w.amplitude->setText(EngineeringText(options.inputAmplitudeVolts, "V"));
    w.notchIndependent->setChecked(options.notchPartsIndependent);
    w.bestStandard->setChecked(options.bestStandardValues);
}

void TOptionsForm::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // A spontaneous show is the window system restoring the dialog: it stays where it was.
    if (!event->spontaneous()) CentreOnParent(*this);
}

}  // namespace nerivane
