// The "DC Bias Tool" window: the resistor divider that biases a single-supply op amp, plain
// and with a decoupling capacitor at its tap. The box left empty is solved from the others;
// the results show the divider current, R1 || R2 and the parts of the chosen series.
#pragma once

#include <QDialog>
#include <memory>

class QComboBox;

namespace nerivane {

class TDCBiasForm : public QDialog {
    Q_OBJECT

  public:
    explicit TDCBiasForm(QWidget* parent = nullptr);
    ~TDCBiasForm() override;

  protected:
    // Centres the window on the main window each time it is opened.
    void showEvent(QShowEvent* event) override;

  private:
    struct Circuit;
    void Solve(Circuit& circuit);
    // Rounds the last solved design of each circuit to the newly chosen series.
    void SeriesChanged();

    std::unique_ptr<Circuit> divider_;
    std::unique_ptr<Circuit> decoupled_;
    QComboBox* series_;
};

}  // namespace nerivane
