// The parameter adjusters: each reads its box against its row of the box table, repairs and
// rewrites it in its standard format and stores the value in the design record; given a step
// it first moves the value by one step (ten times coarser with Ctrl) within the limits. A
// limit the box table gets wrong is added to messages.
#pragma once

#include <cstdint>
#include <string>

#include "app/DesignState.h"
#include "app/Parameterboxes.h"
#include "circuit/Componentsettings.h"
#include "numerics/EditBox.h"
#include "numerics/Message.h"

namespace nerivane {

// A spinner click: which half, and whether Ctrl was held (coarser steps).
enum class StepDirection { None, Up, Down };
struct Step {
    StepDirection direction = StepDirection::None;
    bool coarse = false;
};
inline constexpr Step ReadOnly{};

// Number of poles: 1 to 20, or 10 for band pass and notch; stores NumPoles and NumSections.
void AdjustNumPoles(DesignState& state, EditBox& box, Messages& messages, Step step = ReadOnly);

// The largest ripple the family and order allow: 2 dB, less for high-order Chebyshev.
double RippleMaximum(Response responseIndex, std::int32_t numPoles);
// Ripple in dB; the stored value never goes below 0.001 dB, so a box showing 0 still designs.
void AdjustRipple(DesignState& state, EditBox& box, Messages& messages, Step step = ReadOnly);

// F0 and band width, typed in kHz and stored in Hz.
void AdjustF0(DesignState& state, EditBox& box, Messages& messages, Step step = ReadOnly);
void AdjustBandWidth(DesignState& state, EditBox& box, Messages& messages, Step step = ReadOnly);

// Section gain in dB: -20 to 20 for the inverting (MFB low and high pass) stages, 0 to 20 for
// the others. Stores the ratio and the top of the magnitude scale that the gain needs.
void AdjustGain(DesignState& state, EditBox& box, Messages& messages, Step step = ReadOnly);
// The top of the magnitude scale for a section gain in dB: 10 dB above the cascade's gain
// plus 7, rounded down to a multiple of 10.
double PlotTopForGain(std::int32_t numSections, double gainDb);

// Adjustable Gauss argument, -1 to 1.
void AdjustGamma(DesignState& state, EditBox& box, Messages& messages, Step step = ReadOnly);
// The caption of the gamma label: which family the argument makes the response resemble.
std::string GammaLabelText(double gamma, bool gammaEnabled);

// The selected section, 0 to NumSections - 1; the capacitor boxes then show its C1 and C2.
struct CapacitorBoxes {
    EditBox& c1;
    EditBox& c2;
};
void AdjustSection(DesignState& state, EditBox& box, CapacitorBoxes capacitors, Messages& messages,
                   Step step = ReadOnly);

// The hidden test panel's value, -100 to 100 (its step is 0.01, or 1 with Ctrl).
void AdjustTestValue(DesignState& state, EditBox& box, Messages& messages, Step step = ReadOnly);

// The capacitor spinners: C1 or C2 of the selected section moves along its series by twice
// the capacitor tolerance per click (one or more standard values), and its box shows it.
enum class Capacitor { C1, C2 };
void StepSectionCapacitor(DesignState& state, EditBox& box, Capacitor which, bool up,
                          const ComponentSettings& settings);
// "100 pF": a capacitor as its box shows it.
std::string CapacitorBoxText(double farads);

// A box that is only read (it keeps its text unless repaired), against its row's limits.
double ReadBoxValue(const DesignState& state, EditBox& box, BoxId id, Messages& messages);
std::int32_t ReadBoxInteger(const DesignState& state, EditBox& box, BoxId id, Messages& messages);

// The phase plot threshold of the options dialog, stored as a negative number of dB.
void ReadPhaseThreshold(DesignState& state, EditBox& box, Messages& messages);

}  // namespace nerivane
