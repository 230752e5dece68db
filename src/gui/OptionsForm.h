// The "Phase Plot Threshold" dialog: the level below which the phase and group-delay traces
// are not drawn, typed as a positive number of dB; "Apply" recalculates.
#pragma once

#include <QDialog>
#include <memory>

#include "numerics/EditBox.h"

namespace nerivane {

class TOptionsForm : public QDialog {
    Q_OBJECT

  public:
    explicit TOptionsForm(QWidget* parent = nullptr);
    ~TOptionsForm() override;

    // GDPhaseThresholdBox, read on every calculation.
    EditBox& ThresholdBox();

  signals:
    void Applied();

  protected:
    // Centres the dialog on the main window each time it is opened.
    void showEvent(QShowEvent* event) override;

  private:
    struct Widgets;
    std::unique_ptr<Widgets> widgets_;
};

}  // namespace nerivane
