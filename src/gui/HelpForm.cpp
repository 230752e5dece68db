#include "gui/HelpForm.h"

#include <QDesktopServices>
#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

#include "circuit/Sectioncircuits.h"
#include "env/Directories.h"
#include "gui/NamedWidget.h"
#include "gui/WindowPlacement.h"

namespace nerivane {
namespace {

constexpr int ViewerWidth = 720;
constexpr int ViewerHeight = 820;

}  // namespace

THelpForm::THelpForm(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("HelpForm"));
    setModal(false);
    picture_ = NewNamed<QLabel>("CircuitPicture", QString(), this);
    picture_->setAlignment(Qt::AlignCenter);
    text_ = new QTextBrowser(this);
    text_->setObjectName(QStringLiteral("HelpText"));
    text_->setOpenExternalLinks(true);
    status_ = NewNamed<QLabel>("HelpStatus", QString(), this);
    status_->setWordWrap(true);
    systemViewerButton_ =
        NewNamed<QPushButton>("SystemViewerButton", QStringLiteral("Open in System Viewer"), this);
    auto* closeButton = NewNamed<QPushButton>("CloseButton", QStringLiteral("Close"), this);
    connect(systemViewerButton_, &QPushButton::clicked, this, &THelpForm::OpenInSystemViewer);
    connect(closeButton, &QPushButton::clicked, this, &QDialog::hide);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(status_, 1);
    buttons->addWidget(systemViewerButton_);
    buttons->addWidget(closeButton);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(picture_);
    layout->addWidget(text_, 1);
    layout->addLayout(buttons);
    resize(ViewerWidth, ViewerHeight);
}

void THelpForm::SetRunTimeFilesDir(const std::string& folder) {
    runTimeFilesDir_ = folder;
}

void THelpForm::ShowCircuitInfo(Topology topology, const QImage& picture) {
    const SectionCircuit& circuit = CircuitOf(topology);
    shownTopology_ = topology;
    setWindowTitle(QStringLiteral("Circuit Info: ") + QString::fromUtf8(circuit.title));
    picture_->setPixmap(QPixmap::fromImage(picture));
    picture_->setVisible(!picture.isNull());
    Load(circuit.helpPage);
    Present();
}

void THelpForm::CircuitChanged(Topology topology, const QImage& picture) {
    if (isVisible() && shownTopology_ && topology != *shownTopology_)
        ShowCircuitInfo(topology, picture);
}

void THelpForm::ShowProgramInfo() {
    shownTopology_.reset();
    setWindowTitle(QStringLiteral("Program Info"));
    picture_->clear();
    picture_->hide();
    Load(ProgramHelpFile);
    Present();
}

void THelpForm::Present() {
    if (!isVisible()) CentreOnParent(*this);
    show();
    raise();
    activateWindow();
}

void THelpForm::Load(const std::string& file) {
    shownFile_ = runTimeFilesDir_ + "/" + HelpFilesFolder + "/" + file;
    status_->clear();
    QFile page(QString::fromStdString(shownFile_));
    if (!page.open(QIODevice::ReadOnly)) {
        text_->setPlainText(QStringLiteral("The help file \"") +
                            QString::fromStdString(shownFile_) +
                            QStringLiteral("\" cannot be read: ") + page.errorString() +
                            QStringLiteral(".\nThe program's run-time files may be incomplete; "
                                           "reinstalling the program restores them."));
        systemViewerButton_->setEnabled(false);
        return;
    }
    text_->setMarkdown(QString::fromUtf8(page.readAll()));
    systemViewerButton_->setEnabled(true);
}

void THelpForm::OpenInSystemViewer() {
    // A desktop without a viewer for the file type leaves the page where it is, in here.
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(shownFile_))))
        status_->setText(
            QStringLiteral("No viewer of this desktop opened the file; it stays "
                           "on show here."));
}

}  // namespace nerivane
