// The "Phase Plot Threshold" dialog: the level below which the phase and group-delay traces
// are not drawn, typed as a positive number of dB, and the options of the circuit as built
// (the op-amp model, the practical resistor range, the input amplitude, independent notch
// parts, searched standard resistors); "Apply" recalculates.
#pragma once

#include <QDialog>
#include <memory>

#include "circuit/Buildoptions.h"
#include "numerics/EditBox.h"
#include "numerics/Message.h"

namespace nerivane {

class TOptionsForm : public QDialog {
    Q_OBJECT

  public:
    explicit TOptionsForm(QWidget* parent = nullptr);
    ~TOptionsForm() override;

    // GDPhaseThresholdBox, read on every calculation.
    EditBox& ThresholdBox();
    // The build options as the dialog shows them over current: a box that cannot be read
    // goes back to current's value, with a message.
    BuildOptions ReadBuildOptions(const BuildOptions& current, Messages& messages);
    void ShowBuildOptions(const BuildOptions& options);

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
