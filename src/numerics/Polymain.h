// The normalised low-pass prototype as a cascade of first- and second-order sections: roots
// are paired into sections, the cascade is rescaled to be 3 dB down at 1 rad/s, and the
// sections are ordered from the highest damping to the lowest. Topology, F0 and band width
// play no part here; later stages map these sections onto circuits.
#pragma once

#include <span>

#include "numerics/Mathfunctions.h"
#include "numerics/Protofunctions.h"

namespace nerivane {

// Six parallel arrays, one slot per section: (NumS2 s^2 + NumS1 s + NumS0) /
// (DenS2 s^2 + DenS1 s + DenS0). Plain data, so it can live inside the design record.
struct ProtoSections {
    double DenS2[MaxSections];
    double DenS1[MaxSections];
    double DenS0[MaxSections];
    double NumS2[MaxSections];
    double NumS1[MaxSections];
    double NumS0[MaxSections];
};

// Every slot back to an all-pass unity section (0, 0, 1 over 0, 0, 1).
void ResetSections(ProtoSections& sections);

struct PrototypeResult {
    int sectionCount = 0;        // sections formed; fewer than ceil(N/2) if roots were lost
    const char* note = nullptr;  // the root finder's report note, if it stopped early
    double cornerScale = 1.0;    // factor the corner normalisation applied (1 if none)
};

PrototypeResult BuildPrototype(Response responseIndex, int numPoles, double ripple, double gamma,
                               ProtoSections& sections);

// Pairs conjugate roots on the imaginary axis and in the left half plane into second-order
// sections and negative real roots into first-order ones; returns the number of sections.
int RootsToSections(std::span<const Complex> roots, ProtoSections& sections);

// Rescales the sections so the cascade's magnitude first falls below 0.7071 at 1 rad/s (on
// a 1/512 rad/s grid); returns the scale factor.
double NormaliseCorner(int sectionCount, ProtoSections& sections);

// Orders the denominators by damping, highest first, and the numerators by their own key.
void OrderSections(int sectionCount, ProtoSections& sections);

// Damping of a section as the ordering sees it: 1 for a first-order section.
double SectionDamping(const ProtoSections& sections, int index);

}  // namespace nerivane
