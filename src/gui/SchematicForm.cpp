#include "gui/SchematicForm.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QScrollArea>
#include <QShowEvent>
#include <QTabWidget>
#include <QVBoxLayout>
#include <stdexcept>

#include "app/Picturefiles.h"
#include "gui/MessageSink.h"
#include "gui/NamedWidget.h"
#include "gui/WindowPlacement.h"
#include "render/QtRaster.h"
#include "render/SchematicImage.h"

namespace nerivane {
namespace {

constexpr int ViewWidth = 900;
constexpr int ViewHeight = 600;

QLabel* NewDrawing(const char* name, QTabWidget& tabs, const QString& caption) {
    auto* scroll = new QScrollArea(&tabs);
    auto* drawing = NewNamed<QLabel>(name, QString(), scroll);
    drawing->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    scroll->setWidget(drawing);
    scroll->setWidgetResizable(true);
    tabs.addTab(scroll, caption);
    return drawing;
}

void Show(QLabel& label, const Schematic& schematic, qreal ratio) {
    label.setPixmap(QPixmap::fromImage(RenderSchematic(schematic, ratio)));
}

}  // namespace

TSchematicForm::TSchematicForm(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("SchematicForm"));
    setWindowTitle(QStringLiteral("Schematic"));
    setModal(false);
    tabs_ = new QTabWidget(this);
    tabs_->setObjectName(QStringLiteral("SchematicTabs"));
    section_ = NewDrawing("SectionSchematic", *tabs_, QStringLiteral("Section"));
    cascade_ = NewDrawing("CascadeSchematic", *tabs_, QStringLiteral("Whole Filter"));
    auto* saveButton =
        NewNamed<QPushButton>("SaveSchematicButton", QStringLiteral("Save As"), this);
    auto* closeButton = NewNamed<QPushButton>("CloseButton", QStringLiteral("Close"), this);
    connect(saveButton, &QPushButton::clicked, this, &TSchematicForm::SaveAs);
    connect(closeButton, &QPushButton::clicked, this, &QDialog::hide);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(saveButton);
    buttons->addWidget(closeButton);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs_, 1);
    layout->addLayout(buttons);
    resize(ViewWidth, ViewHeight);
}

void TSchematicForm::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous()) return;
    CentreOnParent(*this);
    emit Opened();
}

void TSchematicForm::ShowDesign(const Schematic& section, const std::string& sectionCaption,
                                const Schematic& cascade) {
    const qreal ratio = devicePixelRatioF();
    Show(*section_, section, ratio);
    Show(*cascade_, cascade, ratio);
    tabs_->setTabText(0, QString::fromStdString(sectionCaption));
    shownCascade_ = cascade;
}

bool TSchematicForm::SaveCascadeTo(const std::string& path) {
    try {
        SaveSchematic(shownCascade_, path, MakeQtRaster);
        return true;
    } catch (const std::exception& e) {
        WindowMessages().ShowMessage(e.what(), "Error");
        return false;
    }
}

void TSchematicForm::SaveAs() {
    QString filter;
    const QString path = QFileDialog::getSaveFileName(
        this, QStringLiteral("Save Schematic to File:"), QString::fromStdString(startFolder_),
        QStringLiteral("SVG Drawing (*.svg);;PNG Image (*.png)"), &filter);
    if (path.isEmpty()) return;
    // A name typed without an ending takes the chosen type's.
    const bool png = filter.contains(QStringLiteral("png"));
    std::string named = path.toStdString();
    if (!IsSchematicFileName(named)) named += png ? ".png" : ".svg";
    SaveCascadeTo(named);
}

}  // namespace nerivane
