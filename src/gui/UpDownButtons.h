// The spinner beside a parameter box: an up and a down arrow that repeat while held. The box's
// text belongs to the design core, so the spinner holds no value; it only reports clicks.
#pragma once

#include <QWidget>

class QToolButton;

namespace nerivane {

class UpDownButtons final : public QWidget {
    Q_OBJECT

  public:
    UpDownButtons(const QString& name, QWidget* parent);

    QToolButton* UpButton() const { return up_; }
    QToolButton* DownButton() const { return down_; }

  signals:
    void Clicked(bool up);

  private:
    QToolButton* up_;
    QToolButton* down_;
};

}  // namespace nerivane
