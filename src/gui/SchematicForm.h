// The schematic view: the selected section drawn with the values the design has now, and the
// whole cascade from input to output with its designators, redrawn at every calculation
// while the window is open, and saved as SVG or PNG.
#pragma once

#include <QDialog>
#include <string>

#include "response/Schematic.h"

class QLabel;
class QTabWidget;

namespace nerivane {

class TSchematicForm : public QDialog {
    Q_OBJECT

  public:
    explicit TSchematicForm(QWidget* parent = nullptr);

    void ShowDesign(const Schematic& section, const std::string& sectionCaption,
                    const Schematic& cascade);
    // Writes the cascade as SVG or PNG by the name's ending; false after the message.
    bool SaveCascadeTo(const std::string& path);

    void SetStartFolder(const std::string& folder) { startFolder_ = folder; }

  signals:
    // Asks the main window for the design on screen (the view is only drawn while open).
    void Opened();

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void SaveAs();

    QTabWidget* tabs_;
    QLabel* section_;
    QLabel* cascade_;
    Schematic shownCascade_;
    std::string startFolder_;
};

}  // namespace nerivane
