// The parameter adjusters: each reads its box with its limits and default, repairs and
// rewrites it in its standard format and stores the value in the design record. Their
// limits depend on the design (the pole limit on the topology, the ripple limit on the
// family and order), which is why they live beside the record and not in the boxes.
#pragma once

#include <string>

#include "app/DesignState.h"
#include "numerics/EditBox.h"

namespace nerivane {

// Number of poles: 1 to 20, or 10 for band pass and notch; stores NumPoles and NumSections.
void ReadNumPoles(DesignState& state, EditBox& box);

// The largest ripple the family and order allow: 2 dB, less for high-order Chebyshev.
double RippleMaximum(std::int32_t responseIndex, std::int32_t numPoles);
// Ripple in dB; the stored value never goes below 0.001 dB, so a box showing 0 still designs.
void ReadRipple(DesignState& state, EditBox& box);

// F0 and band width, typed in kHz and stored in Hz.
void ReadF0(DesignState& state, EditBox& box);
void ReadBandWidth(DesignState& state, EditBox& box);

// Section gain in dB: -20 to 20 for the inverting (MFB low and high pass) stages, 0 to 20 for
// the others. Stores the ratio and the top of the magnitude scale that the gain needs.
void ReadGain(DesignState& state, EditBox& box);
// The top of the magnitude scale for a section gain in dB: 10 dB above the cascade's gain
// plus 7, rounded down to a multiple of 10.
double PlotTopForGain(std::int32_t numSections, double gainDb);

// The selected section, 0 to NumSections - 1.
void ReadSection(DesignState& state, EditBox& box);

// Adjustable Gauss argument, -1 to 1.
void ReadGamma(DesignState& state, EditBox& box);
// The caption of the gamma label: which family the argument makes the response resemble.
std::string GammaLabelText(double gamma, bool gammaEnabled);

// The phase plot threshold of the options dialog, stored as a negative number of dB.
void ReadPhaseThreshold(DesignState& state, EditBox& box);

}  // namespace nerivane
