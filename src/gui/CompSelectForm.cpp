#include "gui/CompSelectForm.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QShowEvent>
#include <QVBoxLayout>
#include <array>
#include <cstddef>
#include <string>

#include "gui/LineEditBox.h"
#include "gui/NamedWidget.h"
#include "gui/WindowPlacement.h"

namespace nerivane {

namespace {

// One button per tolerance class, in the order of ToleranceClasses: 20 % first, which is the
// order in which the checked class is looked for.
using ClassButtons = std::array<QRadioButton*, ToleranceClasses.size()>;

// The name stems of the buttons, in the order of ToleranceClasses.
constexpr std::array<const char*, ToleranceClasses.size()> ClassNames = {
    "TwentyPercent", "TenPercent", "FivePercent", "TwoPercent", "OnePercent"};

struct ClassGroup {
    QGroupBox* box;
    ClassButtons buttons;
};

// A group of class buttons named <stem><series>Button ("OnePercentResistorButton"), listed
// from 1 % down to 20 %; each click asks for a recalculation.
ClassGroup NewClassGroup(TCompSelectForm& form, const QString& title, const char* series) {
    ClassGroup group{new QGroupBox(title, &form), {}};
    auto* layout = new QVBoxLayout(group.box);
    for (std::size_t i = group.buttons.size(); i-- > 0;) {
        const std::string name = std::string(ClassNames[i]) + series + "Button";
        QRadioButton* button = NewNamed<QRadioButton>(
            name.c_str(), QString::fromStdString(ToleranceCaption(ToleranceClasses[i])), group.box);
        layout->addWidget(button);
        QObject::connect(button, &QRadioButton::clicked, &form, &TCompSelectForm::ComponentChanged);
        group.buttons[i] = button;
    }
    return group;
}

const ToleranceClass* CheckedClass(const ClassButtons& buttons) {
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        if (buttons[i]->isChecked()) return &ToleranceClasses[i];
    }
    return nullptr;
}

// setChecked emits no clicked signal, so checking a class from here recalculates nothing.
void CheckClass(const ClassButtons& buttons, int percent) {
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        if (ToleranceClasses[i].percent == percent) buttons[i]->setChecked(true);
    }
}

}  // namespace

struct TCompSelectForm::Widgets {
    ClassButtons resistors;
    ClassButtons capacitors;
    LineEditBox gainBandwidth;
    LineEditBox outputResistance;
    LineEditBox worstCaseRuns;
    QComboBox* resistorSeries;
};

TCompSelectForm::TCompSelectForm(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("CompSelectForm"));
    setWindowTitle(QStringLiteral("Component Selection"));
    setModal(false);

    const ClassGroup resistors = NewClassGroup(*this, QStringLiteral("Resistors"), "Resistor");
    const ClassGroup capacitors = NewClassGroup(*this, QStringLiteral("Capacitors"), "Capacitor");

    // The tolerance class's series stays the default; the decade series are what shops stock.
    auto* seriesBox = new QComboBox(this);
    seriesBox->setObjectName(QStringLiteral("ResistorSeriesBox"));
    seriesBox->addItem(QStringLiteral("Series of the tolerance class"));
    for (const char* name : {"E48", "E96", "E192"}) seriesBox->addItem(QString::fromLatin1(name));
    connect(seriesBox, &QComboBox::activated, this, &TCompSelectForm::ComponentChanged);
    auto* seriesLayout = new QHBoxLayout;
    seriesLayout->addWidget(new QLabel(QStringLiteral("Standard resistors"), this));
    seriesLayout->addWidget(seriesBox, 1);

    auto* worstCaseBox = NewParameterBox(BoxId::WorstCaseRuns, this);
    auto* worstCaseLabel = new QLabel(CaptionOf(BoxId::WorstCaseRuns), this);
    worstCaseLabel->setBuddy(worstCaseBox);

    auto* opAmpGroup = new QGroupBox(QStringLiteral("Op Amp"), this);
    auto* gainBandwidthBox = NewParameterBox(BoxId::GainBandwidth, opAmpGroup);
    auto* outputZBox = NewParameterBox(BoxId::OutputResistance, opAmpGroup);
    auto* opAmpLayout = new QGridLayout(opAmpGroup);
    opAmpLayout->addWidget(gainBandwidthBox, 0, 0);
    opAmpLayout->addWidget(new QLabel(CaptionOf(BoxId::GainBandwidth), opAmpGroup), 0, 1);
    opAmpLayout->addWidget(outputZBox, 1, 0);
    opAmpLayout->addWidget(new QLabel(CaptionOf(BoxId::OutputResistance), opAmpGroup), 1, 1);

    auto* applyButton = NewNamed<QPushButton>("Button1", QStringLiteral("Apply"), this);
    auto* closeButton = NewNamed<QPushButton>("CloseButton", QStringLiteral("Close"), this);
    // Enter in a box applies what was typed.
    applyButton->setDefault(true);
    connect(applyButton, &QPushButton::clicked, this, &TCompSelectForm::ComponentChanged);
    connect(closeButton, &QPushButton::clicked, this, &QDialog::hide);

    auto* classLayout = new QHBoxLayout;
    classLayout->addWidget(resistors.box);
    classLayout->addWidget(capacitors.box);
    auto* worstCaseLayout = new QHBoxLayout;
    worstCaseLayout->addWidget(worstCaseBox);
    worstCaseLayout->addWidget(worstCaseLabel, 1);
    auto* buttonLayout = new QHBoxLayout;
    buttonLayout->addStretch(1);
    buttonLayout->addWidget(applyButton);
    buttonLayout->addWidget(closeButton);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(classLayout);
    layout->addLayout(seriesLayout);
    layout->addLayout(worstCaseLayout);
    layout->addWidget(opAmpGroup);
    layout->addLayout(buttonLayout);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    widgets_ = std::make_unique<Widgets>(resistors.buttons, capacitors.buttons,
                                         LineEditBox(gainBandwidthBox), LineEditBox(outputZBox),
                                         LineEditBox(worstCaseBox), seriesBox);
    // The dialog opens on the classes a new design starts with.
    const ComponentSettings defaults;
    SelectClasses(defaults.capacitorClass.percent, defaults.resistorClass.percent);
}

TCompSelectForm::~TCompSelectForm() = default;

EditBox& TCompSelectForm::GainBandwidthBox() {
    return widgets_->gainBandwidth;
}

EditBox& TCompSelectForm::OutputResistanceBox() {
    return widgets_->outputResistance;
}

EditBox& TCompSelectForm::WorstCaseRunsBox() {
    return widgets_->worstCaseRuns;
}

void TCompSelectForm::ReadClasses(ComponentSettings& settings) const {
    if (const ToleranceClass* c = CheckedClass(widgets_->capacitors)) settings.capacitorClass = *c;
    if (const ToleranceClass* c = CheckedClass(widgets_->resistors)) settings.resistorClass = *c;
    settings.build.resistorSeries =
        static_cast<ResistorSeries>(widgets_->resistorSeries->currentIndex());
}

void TCompSelectForm::SelectSeries(ResistorSeries series) {
    widgets_->resistorSeries->setCurrentIndex(static_cast<int>(series));
}

void TCompSelectForm::SelectClasses(int capacitorPercent, int resistorPercent) {
    CheckClass(widgets_->capacitors, capacitorPercent);
    CheckClass(widgets_->resistors, resistorPercent);
}

void TCompSelectForm::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // A spontaneous show is the window system restoring the dialog: it stays where it was.
    if (!event->spontaneous()) CentreOnParent(*this);
}

}  // namespace nerivane
