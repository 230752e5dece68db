#include "gui/PanelBuilding.h"

#include <QHBoxLayout>

#include "gui/NamedWidget.h"

namespace nerivane {

QLineEdit* NewBox(const char* name, const char* text, int width, QWidget* parent) {
    QLineEdit* box = NewNamed<QLineEdit>(name, QString::fromLatin1(text), parent);
    box->setFixedWidth(width);
    return box;
}

QLineEdit* NewBox(BoxId id, int width, QWidget* parent) {
    QLineEdit* box = NewParameterBox(id, parent);
    box->setFixedWidth(width);
    return box;
}

QLabel* NewLabel(const char* name, const QString& text, QWidget* parent) {
    return NewNamed<QLabel>(name, text, parent);
}

void AddBoxRow(QGridLayout& grid, int row, QLabel* label, QLineEdit* box, UpDownButtons* spinner) {
    grid.addWidget(label, row, 0);
    auto* pair = new QHBoxLayout;
    pair->setSpacing(0);
    pair->addWidget(box);
    pair->addWidget(spinner);
    spinner->setFixedHeight(box->sizeHint().height());
    grid.addLayout(pair, row, 1);
}

QGroupBox* NewPanel(const char* name, const QString& title, QWidget* parent) {
    QGroupBox* panel = new QGroupBox(title, parent);
    panel->setObjectName(QString::fromLatin1(name));
    return panel;
}

QGridLayout* NewGrid(QWidget* panel) {
    auto* grid = new QGridLayout(panel);
    grid->setContentsMargins(4, 4, 4, 4);
    grid->setHorizontalSpacing(4);
    grid->setVerticalSpacing(3);
    return grid;
}

}  // namespace nerivane
