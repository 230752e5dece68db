// The "Math Err" window: every math-library error the core met and what was done about it,
// with a request to send in the design file. It brings itself up when a line arrives.
#pragma once

#include <QDialog>

#include "numerics/Matherrmain.h"

class QPlainTextEdit;

namespace nerivane {

class TMathErrForm : public QDialog, public MathErrorLog {
    Q_OBJECT

  public:
    explicit TMathErrForm(QWidget* parent = nullptr);
    void AppendLine(const std::string& line) override;
    QString MemoText() const;

  protected:
    // Centres the window on the main window each time it comes up.
    void showEvent(QShowEvent* event) override;

  private:
    QPlainTextEdit* mathErrMemo_;
};

}  // namespace nerivane
