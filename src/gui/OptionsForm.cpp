#include "gui/OptionsForm.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShowEvent>
#include <QVBoxLayout>

#include "gui/LineEditBox.h"
#include "gui/NamedWidget.h"
#include "gui/WindowPlacement.h"

namespace nerivane {

struct TOptionsForm::Widgets {
    LineEditBox threshold;
};

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

    auto* buttonLayout = new QHBoxLayout;
    buttonLayout->addWidget(thresholdBox);
    buttonLayout->addStretch(1);
    buttonLayout->addWidget(applyButton);
    buttonLayout->addWidget(closeButton);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(explanation);
    layout->addLayout(buttonLayout);
    // Wide enough for the explanation to wrap onto two lines rather than a narrow column.
    setMinimumWidth(360);

    widgets_ = std::make_unique<Widgets>(LineEditBox(thresholdBox));
}

TOptionsForm::~TOptionsForm() = default;

EditBox& TOptionsForm::ThresholdBox() {
    return widgets_->threshold;
}

void TOptionsForm::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // A spontaneous show is the window system restoring the dialog: it stays where it was.
    if (!event->spontaneous()) CentreOnParent(*this);
}

}  // namespace nerivane
