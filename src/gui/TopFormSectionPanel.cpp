// The main window's section panel, top right: the selected section and its two capacitors,
// with the hints the calculation leaves beside them.
#include "gui/NamedWidget.h"
#include "gui/PanelBuilding.h"
#include "gui/TopFormWidgets.h"

namespace nerivane {
namespace {

constexpr int BasePanelWidth = 160;

}  // namespace

QWidget* BuildBasePanel(QWidget& central, TopFormWidgets& w) {
    QGroupBox* panel = NewPanel("BasePanel", QString(), &central);
    w.sectionBox = NewBox(BoxId::Section, NumberBoxWidth, panel);
    w.sectionUpDown = new UpDownButtons(QStringLiteral("SectionUpDown"), panel);
    w.label3 = NewLabel("Label3", QStringLiteral("Adj with F1 F2 or Arrows"), panel);
    w.c1ValueBox = NewBox(BoxId::C1Value, CapacitorBoxWidth, panel);
    w.c1ValueBox->setToolTip(QStringLiteral("C1 of the section; type a value such as 22n."));
    w.c1UpDown = new UpDownButtons(QStringLiteral("C1UpDown"), panel);
    w.c1ValueLabel = NewLabel("C1ValueLabel", QStringLiteral(" "), panel);

    w.c2Panel = new QWidget(panel);
    w.c2Panel->setObjectName(QStringLiteral("C2Panel"));
    w.c2ValueBox = NewBox(BoxId::C2Value, CapacitorBoxWidth, w.c2Panel);
    w.c2ValueBox->setToolTip(QStringLiteral("C2 of the section; type a value such as 22n."));
    w.c2UpDown = new UpDownButtons(QStringLiteral("C2UpDown"), w.c2Panel);
    w.c2Label = NewLabel("C2Label", QString(), w.c2Panel);
    QGridLayout* c2Grid = NewGrid(w.c2Panel);
    c2Grid->setContentsMargins(0, 0, 0, 0);
    AddBoxRow(*c2Grid, 0, NewLabel("C2Caption", CaptionOf(BoxId::C2Value), w.c2Panel), w.c2ValueBox,
              w.c2UpDown);
    c2Grid->addWidget(w.c2Label, 1, 1);

    QGridLayout* grid = NewGrid(panel);
    AddBoxRow(*grid, 0, NewLabel("SectionLabel", CaptionOf(BoxId::Section), panel), w.sectionBox,
              w.sectionUpDown);
    grid->addWidget(w.label3, 1, 0, 1, 2);
    AddBoxRow(*grid, 2, NewLabel("C1Caption", CaptionOf(BoxId::C1Value), panel), w.c1ValueBox,
              w.c1UpDown);
    grid->addWidget(w.c1ValueLabel, 3, 1);
    grid->addWidget(w.c2Panel, 4, 0, 1, 2);
    grid->setColumnStretch(1, 1);
    panel->setFixedWidth(BasePanelWidth);
    // The report below keeps its place when a circuit without C2 hides that row.
    panel->setFixedHeight(panel->sizeHint().height());
    return panel;
}

}  // namespace nerivane
