// A parameter box over a QLineEdit: the core reads and rewrites its text and paints it silver
// when the entry had to be replaced, white again when it was fine.
#pragma once

#include <QLineEdit>
#include <QPalette>
#include <QStyle>
#include <string>

#include "numerics/EditBox.h"

namespace nerivane {

inline const QColor RepairedBoxColour(192, 192, 192);

class LineEditBox final : public EditBox {
  public:
    explicit LineEditBox(QLineEdit* edit) : edit_(edit) {}
    std::string Text() const override { return edit_->text().toStdString(); }
    void SetText(const std::string& text) override {
        const QString value = QString::fromStdString(text);
        // Rewriting an unchanged text would move the caret while the user types.
        if (edit_->text() != value) edit_->setText(value);
    }
    void SetRepaired(bool repaired) override {
        QPalette palette = edit_->palette();
        palette.setColor(
            QPalette::Base,
            repaired ? RepairedBoxColour : edit_->style()->standardPalette().color(QPalette::Base));
        edit_->setPalette(palette);
    }
    QLineEdit* Edit() const { return edit_; }

  private:
    QLineEdit* edit_;
};

}  // namespace nerivane
