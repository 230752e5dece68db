// A parameter box as the number readers see it: its text and whether it shows as repaired.
// The window implements it over a line edit, the command line over a plain string that turns
// repairs into warnings, tests over a fake.
#pragma once

#include <string>

namespace nerivane {

class EditBox {
  public:
    virtual ~EditBox() = default;
    virtual std::string Text() const = 0;
    virtual void SetText(const std::string& text) = 0;
    // True paints the box silver (the entry was replaced); false restores the normal colour.
    virtual void SetRepaired(bool repaired) = 0;
};

// The simplest box: a string and a flag. Used where no widget exists (the command line's
// defaults, tests) and as the base of richer boxes.
class TextBox : public EditBox {
  public:
    TextBox() = default;
    explicit TextBox(std::string text) : text_(std::move(text)) {}
    std::string Text() const override { return text_; }
    void SetText(const std::string& text) override { text_ = text; }
    void SetRepaired(bool repaired) override { repaired_ = repaired; }
    bool Repaired() const { return repaired_; }

  private:
    std::string text_;
    bool repaired_ = false;
};

}  // namespace nerivane
