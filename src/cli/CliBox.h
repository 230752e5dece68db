// The command line's parameter boxes: the text an option gave (or the box's start text), and a
// record of the repair when the adjuster had to replace it, reported as a warning.
#pragma once

#include <string>

#include "app/Parameterboxes.h"

namespace nerivane::cli {

class CliBox : public TextBox {
  public:
    explicit CliBox(const BoxRule& rule)
        : TextBox(rule.startText), rule_(&rule), typed_(rule.startText) {}
    // What the user typed; the adjuster may rewrite the text afterwards.
    void Type(const std::string& text) { Type(text, text); }
    // A value given in another unit: the box holds it converted, a warning quotes it as given.
    void Type(const std::string& typed, const std::string& boxText) {
        typed_ = typed;
        SetText(boxText);
    }
    const BoxRule& Rule() const { return *rule_; }
    const std::string& Typed() const { return typed_; }

  private:
    const BoxRule* rule_;
    std::string typed_;
};

using CliBoxes = BoxSet<CliBox>;

}  // namespace nerivane::cli
