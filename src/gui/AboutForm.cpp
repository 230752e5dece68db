#include "gui/AboutForm.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShowEvent>
#include <QVBoxLayout>

#include "files/Designrecord.h"
#include "gui/NamedWidget.h"
#include "gui/WindowPlacement.h"

namespace nerivane {

namespace {

constexpr const char* ReleaseDate = "2026-11-22";

QString AboutText() {
    return QStringLiteral("Nerivane\n") + QString::fromStdString(VersionText()) +
           QStringLiteral("\nRelease Date: ") + QString::fromLatin1(ReleaseDate) +
           QStringLiteral(
               "\nPolynomial roots by the Jenkins-Traub three-stage algorithm "
               "(ACM TOMS Algorithm 493).\nDesigns active op-amp filters: the poles of the "
               "response, the component values of each section and the response of the "
               "circuit.");
}

}  // namespace

TAboutForm::TAboutForm(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("AboutForm"));
    setWindowTitle(QStringLiteral("About"));
    setModal(false);

    aboutLabel_ = NewNamed<QLabel>("AboutLabel", QString(), this);
    aboutLabel_->setAlignment(Qt::AlignCenter);
    auto* closeButton = NewNamed<QPushButton>("CloseButton", QStringLiteral("Close"), this);
    closeButton->setDefault(true);
    connect(closeButton, &QPushButton::clicked, this, &QDialog::hide);

    auto* buttonLayout = new QHBoxLayout;
    buttonLayout->addStretch(1);
    buttonLayout->addWidget(closeButton);
    buttonLayout->addStretch(1);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(aboutLabel_);
    layout->addLayout(buttonLayout);
    // The box is as large as its text, whatever the text comes to.
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void TAboutForm::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous()) return;
    aboutLabel_->setText(AboutText());
    // The new text changes the box's size, which must be known before it can be centred.
    adjustSize();
    CentreOnParent(*this);
}

}  // namespace nerivane
