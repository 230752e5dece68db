// The parameter boxes as plain text, for calculations without a window (tests, benchmarks,
// fuzzing): each box starts with the text the window's box starts with.
#pragma once

#include "app/Calculationdriver.h"
#include "numerics/EditBox.h"

namespace nerivane {

struct TextParameterBoxes {
    TextBox numPoles{DefaultBoxTexts::NumPoles};
    TextBox ripple{DefaultBoxTexts::Ripple};
    TextBox f0{DefaultBoxTexts::F0};
    TextBox bandWidth{DefaultBoxTexts::BandWidth};
    TextBox gain{DefaultBoxTexts::Gain};
    TextBox gamma{DefaultBoxTexts::Gamma};
    TextBox section{DefaultBoxTexts::Section};
    TextBox testValue{DefaultBoxTexts::TestValue};
    TextBox c1Value{DefaultBoxTexts::C1Value};
    TextBox c2Value{DefaultBoxTexts::C2Value};
    TextBox threshold{DefaultBoxTexts::PhaseThreshold};
    TextBox gbw{DefaultBoxTexts::GainBandwidthMHz};
    TextBox ro{DefaultBoxTexts::OutputResistance};
    TextBox runs{DefaultBoxTexts::WorstCaseRuns};

    ParameterBoxes Parameters() {
        return {numPoles,  ripple,  f0,      bandWidth, gain, gamma, section,
                testValue, c1Value, c2Value, threshold, gbw,  ro,    runs};
    }
};

}  // namespace nerivane
