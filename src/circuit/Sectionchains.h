// The sections as two-ports, for the op-amp model with phase: each circuit's chain parameters
// (input voltage and current in terms of output voltage and current) from its own node
// equations, with the parts as listed. A cascade of them carries what the plain product of
// section responses leaves out: each stage's output resistance driving the next one's input.
#pragma once

#include <array>

#include "circuit/Components.h"
#include "circuit/Sectionresponses.h"

namespace nerivane {

// A polynomial in s whose coefficients are lines in the op amp's gain: at0 + A * slope.
struct GainLinear {
    std::array<double, 4> at0;
    std::array<double, 4> slope;
};

// [V1; I1] = [a b; c d] / common * [V2; I2]. The unloaded response is common / a; with Ro = 0
// b and d vanish and the stages do not load each other.
struct ChainPolynomials {
    GainLinear a, b, c, d, common;
};

// A section's chain parameters with its markers made circuit values, as the plain simulation
// makes them: a follower's open R3, a first-order low pass's open C2, a first-order high pass.
ChainPolynomials ChainOf(Topology topology, const WorkingComponents& parts, double Ro);

// The notch with its stored shunt capacitor and, when set, a second series capacitor of its
// own, in the plain form whose coefficients are lines in A.
SectionPolynomials BuiltNotchPolynomials(const WorkingComponents& c, double A, double Ro);

// The single-pole op amp of a gain-bandwidth product: the magnitude of the plain model (flat at
// GBW * 0.01, never above 1e5, falling as GBW / f) with the phase of its pole.
struct SinglePoleOpAmp {
    double dcGain;
    double poleHz;
};
SinglePoleOpAmp SinglePoleOf(double gainBandwidth);

// The single pole as the per-point loops want it: every chain polynomial is a line in A,
// at0 + A slope, and with A = A0 / (1 + s / wp) it becomes at0 (1 + s / wp) + A0 slope once the
// common factor 1 / (1 + s / wp) is dropped.
struct PhaseGain {
    double dcGain;
    double inversePole;  // 1 / wp, seconds
};
PhaseGain PhaseGainOf(double gainBandwidth);

inline Complex PolynomialAt(const std::array<double, 4>& c, double w) {
    return {c[0] - c[2] * w * w, w * (c[1] - c[3] * w * w)};
}

// g at s = jw with the single-pole gain; lag is 1 + jw / wp.
inline Complex GainLinearAt(const GainLinear& g, double w, Complex lag, double dcGain) {
    return PolynomialAt(g.at0, w) * lag + PolynomialAt(g.slope, w) * dcGain;
}

}  // namespace nerivane
