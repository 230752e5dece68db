// The about box: the program's name, version and purpose, sized to its text.
#pragma once

#include <QDialog>

class QLabel;

namespace nerivane {

class TAboutForm : public QDialog {
    Q_OBJECT

  public:
    explicit TAboutForm(QWidget* parent = nullptr);

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    QLabel* aboutLabel_;
};

}  // namespace nerivane
