#include "gui/MathErrForm.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShowEvent>
#include <QVBoxLayout>

#include "gui/NamedWidget.h"
#include "gui/WindowPlacement.h"

namespace nerivane {

TMathErrForm::TMathErrForm(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("MathErrForm"));
    setWindowTitle(QStringLiteral("Math Err"));
    setModal(false);

    auto* request = NewNamed<QLabel>(
        "Label2",
        QStringLiteral("If permissable, please save your circuit file and email it to Kestrune "
                       "so that the problem that caused this window to appear can be replicated. "
                       "Thank you."),
        this);
    request->setWordWrap(true);
    mathErrMemo_ = new QPlainTextEdit(this);
    mathErrMemo_->setObjectName(QStringLiteral("MathErrMemo"));
    mathErrMemo_->setReadOnly(true);
    mathErrMemo_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    // A line holds a function name and two arguments; wrapping would split one report in two.
    mathErrMemo_->setLineWrapMode(QPlainTextEdit::NoWrap);
    auto* closeButton = NewNamed<QPushButton>("Button1", QStringLiteral("Close"), this);
    connect(closeButton, &QPushButton::clicked, this, &QDialog::hide);

    auto* buttonLayout = new QHBoxLayout;
    buttonLayout->addStretch(1);
    buttonLayout->addWidget(closeButton);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(request);
    layout->addWidget(mathErrMemo_, 1);
    layout->addLayout(buttonLayout);
    resize(520, 320);
}

void TMathErrForm::AppendLine(const std::string& line) {
    // Each error brings the window up, even after the user has closed it.
    show();
    raise();
    mathErrMemo_->appendPlainText(QString::fromStdString(line));
}

QString TMathErrForm::MemoText() const {
    return mathErrMemo_->toPlainText();
}

void TMathErrForm::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // A spontaneous show is the window system restoring the window: it stays where it was.
    if (!event->spontaneous()) CentreOnParent(*this);
}

}  // namespace nerivane
