// A parameter box of the command line: the text an option gave (or the box's default), and
// a record of the repair when the adjuster had to replace it, reported as a warning.
#pragma once

#include <string>
#include <utility>

#include "numerics/EditBox.h"

namespace nerivane::cli {

class CliBox : public TextBox {
  public:
    CliBox(std::string name, std::string text)
        : TextBox(text), name_(std::move(name)), typed_(std::move(text)) {}
    // What the user typed; the adjuster may rewrite the text afterwards.
    void Type(const std::string& text) {
        typed_ = text;
        SetText(text);
    }
    const std::string& Name() const { return name_; }
    const std::string& Typed() const { return typed_; }

  private:
    std::string name_;
    std::string typed_;
};

}  // namespace nerivane::cli
