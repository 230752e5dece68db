// The command line's parameter boxes: the text an option gave (or the box's default), and a
// record of the repair when the adjuster had to replace it, reported as a warning.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "app/Calculationdriver.h"
#include "numerics/EditBox.h"

namespace nerivane::cli {

class CliBox : public TextBox {
  public:
    CliBox(std::string name, std::string text)
        : TextBox(text), name_(std::move(name)), typed_(std::move(text)) {}
    // What the user typed; the adjuster may rewrite the text afterwards.
    void Type(const std::string& text) { Type(text, text); }
    // A value given in another unit: the box holds it converted, a warning quotes it as given.
    void Type(const std::string& typed, const std::string& boxText) {
        typed_ = typed;
        SetText(boxText);
    }
    const std::string& Name() const { return name_; }
    const std::string& Typed() const { return typed_; }

  private:
    std::string name_;
    std::string typed_;
};

// The window's boxes, by their names.
struct CliBoxes {
    CliBox numPoles{"NumPolesBox", DefaultBoxTexts::NumPoles};
    CliBox ripple{"RippleBox", DefaultBoxTexts::Ripple};
    CliBox f0{"F0Box", DefaultBoxTexts::F0};
    CliBox bandWidth{"BandWidthBox", DefaultBoxTexts::BandWidth};
    CliBox gain{"FilterGainBox", DefaultBoxTexts::Gain};
    CliBox gamma{"GammaBox", DefaultBoxTexts::Gamma};
    CliBox section{"SectionBox", DefaultBoxTexts::Section};
    CliBox testValue{"UpDownBox", DefaultBoxTexts::TestValue};
    CliBox c1Value{"C1ValueBox", DefaultBoxTexts::C1Value};
    CliBox c2Value{"C2ValueBox", DefaultBoxTexts::C2Value};
    CliBox threshold{"GDPhaseThresholdBox", DefaultBoxTexts::PhaseThreshold};
    CliBox gainBandwidth{"GainBWBox", DefaultBoxTexts::GainBandwidthMHz};
    CliBox outputResistance{"OutputZBox", DefaultBoxTexts::OutputResistance};
    CliBox runs{"WorstCaseMaxBox", DefaultBoxTexts::WorstCaseRuns};

    ParameterBoxes Parameters() {
        return {numPoles,         ripple,    f0,      bandWidth, gain,      gamma,
                section,          testValue, c1Value, c2Value,   threshold, gainBandwidth,
                outputResistance, runs};
    }
    // The boxes a person types into (the capacitor boxes only display).
    std::vector<const CliBox*> Typed() const {
        return {&numPoles,
                &ripple,
                &f0,
                &bandWidth,
                &gain,
                &gamma,
                &section,
                &testValue,
                &threshold,
                &gainBandwidth,
                &outputResistance,
                &runs};
    }
};

}  // namespace nerivane::cli
