// The response of one op-amp section, for each of the seven circuits: the node solution of
// the circuit with the op amp as a voltage source A*(v+ - v-) behind its output resistance
// Ro, as numerator and denominator polynomials in s. Markers in the parts are turned into
// circuit values here (a unity-gain follower's open R3, an open C2, a first-order section's
// open R1). Every coefficient is linear in A, which the simulation uses to set a section up
// once and then evaluate it cheaply at every frequency.
#pragma once

#include <cmath>

#include "circuit/Components.h"
#include "numerics/Mathfunctions.h"

namespace nerivane {

// N(s) / D(s) with n[i], d[i] the coefficients of s^i.
struct SectionPolynomials {
    double n[4];
    double d[4];
};

// Scaled complex division n/d: dividing by the larger part of d first keeps |d|^2 from
// overflowing or underflowing. NaN in both parts when d is zero or not a number: a zero d
// makes the ratio 0/0, a NaN part fails the comparison into a NaN ratio, and the NaN carries
// through. Both orders of the parts are written as one formula over selected values, so the
// per-point loops compile without branches and vectorise.
inline Complex DivideScaled(Complex n, Complex d) {
    const bool realLarger = std::fabs(d.re) >= std::fabs(d.im);
    const double large = realLarger ? d.re : d.im;
    const double small = realLarger ? d.im : d.re;
    const double first = realLarger ? n.re : n.im;
    const double second = realLarger ? n.im : n.re;
    const double ratio = small / large;
    const double inverse = 1.0 / (large + small * ratio);
    const double imag = (second - first * ratio) * inverse;
    return {(first + second * ratio) * inverse, realLarger ? imag : -imag};
}

// c[0] + c[1] s + c[2] s^2 + c[3] s^3 at s = jw.
inline Complex PolynomialAt(const double (&c)[4], double w) {
    const double w2 = w * w;
    return {c[0] - c[2] * w2, w * (c[1] - c[3] * w2)};
}

// N(jw) / D(jw).
inline Complex EvaluateSection(const SectionPolynomials& p, double w) {
    return DivideScaled(PolynomialAt(p.n, w), PolynomialAt(p.d, w));
}

// A unity-gain VCVS stage stores its R3 as open and R4 as a wire. With R4 a wire any R3 still
// makes a follower; a finite one keeps the coefficients in range, and at (Ro + 1) * 10 kOhm it
// barely loads the output.
inline double SimulatedR3(const WorkingComponents& c, double Ro) {
    return c.R4 < 0.0001 ? (Ro + 1.0) * 10000.0 : c.R3;
}

// The polynomials of each circuit for op-amp gain A and output resistance Ro (ohms).
SectionPolynomials VcvsLowPassPolynomials(const WorkingComponents& c, double A, double Ro);
SectionPolynomials MfbLowPassPolynomials(const WorkingComponents& c, double A, double Ro);
SectionPolynomials VcvsHighPassPolynomials(const WorkingComponents& c, double A, double Ro);
SectionPolynomials MfbHighPassPolynomials(const WorkingComponents& c, double A, double Ro);
SectionPolynomials VcvsBandPassPolynomials(const WorkingComponents& c, double A, double Ro);
SectionPolynomials MfbBandPassPolynomials(const WorkingComponents& c, double A, double Ro);
SectionPolynomials NotchPolynomials(const WorkingComponents& c, double A, double Ro);

using SectionPolynomialsFunction = SectionPolynomials (*)(const WorkingComponents&, double, double);
// The polynomials of a topology (0 VCVS low pass ... 6 notch).
SectionPolynomialsFunction SectionPolynomialsFor(Topology topologyIndex);

// One section's response at w rad/s.
Complex SectionResponse(Topology topologyIndex, const WorkingComponents& c, double w, double A,
                        double Ro);

using SectionResponseFunction = Complex (*)(const WorkingComponents&, double, double, double);

template <SectionPolynomialsFunction Polynomials>
Complex ResponseOf(const WorkingComponents& c, double w, double A, double Ro) {
    return EvaluateSection(Polynomials(c, A, Ro), w);
}

inline constexpr SectionResponseFunction VcvsLowPassResponse = ResponseOf<VcvsLowPassPolynomials>;
inline constexpr SectionResponseFunction MfbLowPassResponse = ResponseOf<MfbLowPassPolynomials>;
inline constexpr SectionResponseFunction VcvsHighPassResponse = ResponseOf<VcvsHighPassPolynomials>;
inline constexpr SectionResponseFunction MfbHighPassResponse = ResponseOf<MfbHighPassPolynomials>;
inline constexpr SectionResponseFunction VcvsBandPassResponse = ResponseOf<VcvsBandPassPolynomials>;
inline constexpr SectionResponseFunction MfbBandPassResponse = ResponseOf<MfbBandPassPolynomials>;
inline constexpr SectionResponseFunction NotchResponse = ResponseOf<NotchPolynomials>;

}  // namespace nerivane
