// The figures of a built section, taken from its ideal response (the op amp's gain without
// limit, no output resistance, the parts as listed): f0, Q and pass-band gain, and how far the
// parts' tolerances can move its Q.
#pragma once

#include <array>

#include "circuit/Components.h"
#include "circuit/Componentsettings.h"
#include "circuit/Sectionchains.h"

namespace nerivane {

// The ideal response, N / D with both the lines' slopes: A without limit and Ro = 0.
struct IdealSection {
    ChainPolynomials chain;
    Complex At(double w) const {
        return DivideScaled(PolynomialAt(chain.common.slope, w), PolynomialAt(chain.a.slope, w));
    }
};

IdealSection IdealOf(Topology topology, const WorkingComponents& parts);

struct SectionFigures {
    double f0Hz;  // the corner of a first-order section
    double q;     // NaN for a first-order section
    double gain;  // at DC (low pass, notch), at infinity (high pass), at f0 (band pass)
};
SectionFigures FiguresOf(Topology topology, const IdealSection& ideal);

// A section's six values by name, in the order the report lists them.
struct SectionPart {
    const char* name;
    double WorkingComponents::*value;
    bool resistor;
};
inline constexpr std::array<SectionPart, 6> SectionParts = {{
    {"R1", &WorkingComponents::R1, true},
    {"R2", &WorkingComponents::R2, true},
    {"R3", &WorkingComponents::R3, true},
    {"R4", &WorkingComponents::R4, true},
    {"C1", &WorkingComponents::C1, false},
    {"C2", &WorkingComponents::C2, false},
}};

// A part the section is built with: a value, not zero (a wire or nothing) or a marker of an
// open or absent part.
bool IsFitted(double value);

// The sum over the parts of |dQ/Q / dx/x| times each part's tolerance: how far the tolerances
// can move Q, as a fraction.
double QSpread(Topology topology, const WorkingComponents& parts, double q,
               const ComponentSettings& settings);

}  // namespace nerivane
