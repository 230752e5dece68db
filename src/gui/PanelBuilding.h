// The pieces the main window's panels are built from: named boxes of the standard widths, labels,
// titled panels, their grids, and a box with its spinner as one row.
#pragma once

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>

#include "app/Parameterboxes.h"
#include "gui/UpDownButtons.h"

namespace nerivane {

inline constexpr int NumberBoxWidth = 48;
inline constexpr int CapacitorBoxWidth = 72;

QLineEdit* NewBox(const char* name, const char* text, int width, QWidget* parent);
// A parameter box as its row of the box table names and starts it.
QLineEdit* NewBox(BoxId id, int width, QWidget* parent);
QLabel* NewLabel(const char* name, const QString& text, QWidget* parent);
QGroupBox* NewPanel(const char* name, const QString& title, QWidget* parent);
QGridLayout* NewGrid(QWidget* panel);
// A labelled box with its spinner as one row of a grid.
void AddBoxRow(QGridLayout& grid, int row, QLabel* label, QLineEdit* box, UpDownButtons* spinner);

}  // namespace nerivane
