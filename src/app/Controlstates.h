// Which controls a selection uses: the band width only for band pass and notch, the ripple
// for Chebyshev and Papoulis, gamma for Adjustable Gauss, the delay-free phase not for band
// passes, the square pulse not in a worst-case analysis. Computed from the record so the
// window only has to apply it.
#pragma once

#include <string>

#include "app/DesignState.h"

namespace nerivane {

struct ControlStates {
    bool bandWidthEnabled = false;  // BandWidthBox, BandWidthUpDown, BandWidthLabel
    bool rippleEnabled = false;     // RippleBox, RippleUpDown, RippleLabel
    bool gammaEnabled = false;      // GammaBox, GammaUpDown, GammaLabel
    bool hilbertPhaseMenuEnabled = true;
    bool hilbertPhaseChecked = false;  // else "Phase" is the checked phase item
    std::string plotPhaseCaption = "Phase";
    bool pulseBoxEnabled = true;
    bool plotMagEnabled = true;  // the 10 dB magnitude box, off for "Linear Mag"
    bool linearMagChecked = false;
    std::string plotMag1dBCaption = "Mag   1 dB";
};

// Applies the rules to the record (a band pass forces the plain phase) and returns what the
// controls show.
ControlStates UpdateControlStates(DesignState& state);

// The plot option menu items: the magnitude mode ("Linear Mag" unticks and disables the 10 dB
// box and ticks the 1 dB one, "dB Mag" the reverse) and the phase mode (either ticks the
// phase box).
void SelectMagnitudeMode(DesignState& state, MagnitudeMode mode);
void SelectPhaseMode(DesignState& state, PhaseMode mode);

}  // namespace nerivane
