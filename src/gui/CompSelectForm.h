// The "Component Selection" dialog: the resistor and capacitor tolerance classes, the number
// of worst-case runs and the op-amp model. The calculation reads its boxes and classes; any
// change (a class button, "Apply") asks the main window to recalculate.
#pragma once

#include <QDialog>
#include <memory>

#include "circuit/Componentsettings.h"
#include "numerics/EditBox.h"

class QLineEdit;
class QRadioButton;

namespace nerivane {

class TCompSelectForm : public QDialog {
    Q_OBJECT

  public:
    explicit TCompSelectForm(QWidget* parent = nullptr);
    ~TCompSelectForm() override;

    // The boxes the calculation reads (GainBWBox in MHz, OutputZBox in ohms, WorstCaseMaxBox).
    EditBox& GainBandwidthBox();
    EditBox& OutputResistanceBox();
    EditBox& WorstCaseRunsBox();
    // The checked classes: the first checked of 20 %, 10 %, 5 %, 2 %, 1 % for each series, and
    // the resistor series.
    void ReadClasses(ComponentSettings& settings) const;
    // The resistor series chosen in the list, read with the classes; shown quietly.
    void SelectSeries(ResistorSeries series);
    // Checks the buttons of these classes quietly (no recalculation), as loading a design does.
    void SelectClasses(int capacitorPercent, int resistorPercent);

  signals:
    // A class button or "Apply" was clicked: the main window recalculates.
    void ComponentChanged();

  protected:
    // Centres the dialog on the main window each time it is opened.
    void showEvent(QShowEvent* event) override;

  private:
    struct Widgets;
    std::unique_ptr<Widgets> widgets_;
};

}  // namespace nerivane
