#include "circuit/Sectionresponses.h"

#include <cmath>
#include <limits>

namespace nerivane {

namespace {

SectionPolynomials FirstOrderVcvsHighPassPolynomials(const WorkingComponents& c, double A,
                                                     double Ro) {
    const double R2 = c.R2, R4 = c.R4, C2 = c.C2;
    const double R3 = SimulatedR3(c, Ro);
    const double loop = A * R3 + Ro + R3 + R4;
    const double n1 = (R3 + R4) * C2 * R2 * A;
    return {{0.0, n1, 0.0, 0.0}, {loop, loop * C2 * R2, 0.0, 0.0}};
}

SectionPolynomials SecondOrderVcvsHighPassPolynomials(const WorkingComponents& c, double A,
                                                      double Ro) {
    const double R1 = c.R1, R2 = c.R2, R4 = c.R4, C1 = c.C1, C2 = c.C2;
    const double R3 = SimulatedR3(c, Ro);
    const double R34 = R3 + R4;
    const double n2 = (A * R1 + Ro) * R34 * C1 * R2 * C2;
    const double n1 = R34 * C1 * Ro;
    // The R1 * R1 term stands where the node solution has R1 * Ro; it fades as A grows.
    const double d2 = C1 * R2 * C2 * (R34 * Ro + (A * R3 + R3 + R4 + R1) * R1);
    const double d1 = ((R1 + R34) * C1 + (R1 + R2 + R34) * C2) * Ro +
                      (A * R1 * R3 + R1 * R4 + R1 * R3) * C1 +
                      ((R34 - A * R4) * R2 + (A * R3 + R34) * R1) * C2;
    const double d0 = A * R3 + Ro + R34;
    return {{0.0, n1, n2, 0.0}, {d0, d1, d2, 0.0}};
}

// First order: the second C1 is a wire (a and m one node) and R1 is open.
SectionPolynomials FirstOrderMfbHighPassPolynomials(const WorkingComponents& c, double A,
                                                    double Ro) {
    const double R2 = c.R2, C1 = c.C1, C2 = c.C2;
    const double n2 = C1 * C2 * R2 * Ro;
    const double n1 = C1 * (Ro - A * R2);
    const double d1 = C1 * (R2 + Ro) + C2 * R2 * (A + 1.0);
    return {{0.0, n1, n2, 0.0}, {A + 1.0, d1, n2, 0.0}};
}

// Both series capacitors are C1. The s^3 terms come from Ro: with Ro = 0 the output node is
// driven directly and the order drops to 2.
SectionPolynomials SecondOrderMfbHighPassPolynomials(const WorkingComponents& c, double A,
                                                     double Ro) {
    const double R1 = c.R1, R2 = c.R2, C1 = c.C1, C2 = c.C2;
    const double n3 = C1 * C1 * C2 * R1 * R2 * Ro;
    const double n2 = C1 * R1 * ((C1 + C2) * Ro - A * C1 * R2);
    const double d2 =
        C1 * (C1 * R1 * R2 + (A + 1.0) * C2 * R1 * R2 + C2 * R2 * Ro + (C1 + C2) * R1 * Ro);
    const double d1 = (A + 1.0) * (2.0 * C1 + C2) * R1 + C1 * R2 + (C1 + C2) * Ro;
    return {{0.0, 0.0, n2, n3}, {A + 1.0, d1, d2, n3}};
}

SectionPolynomials UnityPolynomials(const WorkingComponents&, double, double) {
    return {{1.0, 0.0, 0.0, 0.0}, {1.0, 0.0, 0.0, 0.0}};
}

}  // namespace

SectionPolynomials VcvsLowPassPolynomials(const WorkingComponents& c, double A, double Ro) {
    const double R1 = c.R1, R2 = c.R2, R4 = c.R4, C1 = c.C1;
    const double R3 = SimulatedR3(c, Ro);
    // A first-order section's C2 is open: no capacitor at all.
    const double C2 = c.C2 >= NotUsedThreshold ? 0.0 : c.C2;
    const double R34 = R3 + R4;
    const double n2 = C1 * C2 * Ro * R2 * R34;
    const double n1 = C2 * Ro * R34;
    const double n0 = R34 * A;
    const double p = (R3 + Ro + A * R3 + R4) * R2;
    const double q = R34 * Ro;
    const double d2 = ((p + q) * R1 + q * R2) * C1 * C2;
    const double d1 = (((1.0 - A) * R4 + R3 + Ro) * R1 + R34 * Ro) * C2 +
                      ((1.0 + A) * R3 + Ro + R4) * (R1 + R2) * C1;
    const double d0 = (A + 1.0) * R3 + R4 + Ro;
    return {{n0, n1, n2, 0.0}, {d0, d1, d2, 0.0}};
}

// A fixed form that tends to the node solution as A grows: of the solution's terms it keeps
// those carrying A or Ro and drops the rest, and its numerator's constant term has -Ro where
// the solution has +Ro. With Ro = 0 it is the ideal response whatever A is.
SectionPolynomials MfbLowPassPolynomials(const WorkingComponents& c, double A, double Ro) {
    const double R1 = c.R1, R2 = c.R2, R3 = c.R3, C1 = c.C1, C2 = c.C2;
    const double n1 = (R2 + R3) * Ro * C1;
    const double n0 = A * R2 + Ro;
    const double d2 = R1 * C1 * C2 * (Ro * R3 + R2 * Ro + R2 * R3 * A);
    const double d1 =
        Ro * R1 * C2 + A * R1 * R2 * C1 + (R2 + R3) * Ro * C1 + A * (R1 + R2) * R3 * C1;
    const double d0 = A * R1 + Ro;
    return {{-n0, n1, 0.0, 0.0}, {d0, d1, d2, 0.0}};
}

SectionPolynomials VcvsHighPassPolynomials(const WorkingComponents& c, double A, double Ro) {
    if (c.R1 > NotUsedThreshold) return FirstOrderVcvsHighPassPolynomials(c, A, Ro);
    return SecondOrderVcvsHighPassPolynomials(c, A, Ro);
}

SectionPolynomials MfbHighPassPolynomials(const WorkingComponents& c, double A, double Ro) {
    if (c.R1 > NotUsedThreshold) return FirstOrderMfbHighPassPolynomials(c, A, Ro);
    return SecondOrderMfbHighPassPolynomials(c, A, Ro);
}

// Both capacitors are C1 and both gain resistors R4, so the stage gain is 2.
SectionPolynomials VcvsBandPassPolynomials(const WorkingComponents& c, double A, double Ro) {
    const double R1 = c.R1, R2 = c.R2, R3 = c.R3, R4 = c.R4, C = c.C1;
    const double n1 = 2.0 * (A * R2 + Ro) * R3 * R4 * C;
    const double n0 = 2.0 * R4 * Ro;
    const double d2 = C * C * R1 * R3 * (Ro * R2 + (2.0 * Ro + 2.0 * R2 + A * R2) * R4);
    const double p =
        (2.0 * Ro + (A + 2.0) * R2 + (2.0 - A) * R3) * R1 + (2.0 * Ro + (A + 2.0) * R2) * R3;
    const double q = Ro * R1 * R3 + Ro * R1 * R2 + Ro * R2 * R3 + p * R4;
    const double d1 = q * C + (2.0 * Ro * R4 + Ro * R2 + (A + 2.0) * R2 * R4) * R1 * C;
    const double d0 = (2.0 * R4 + R2 + R1) * Ro + (A + 2.0) * (R1 + R2) * R4;
    return {{n0, n1, 0.0, 0.0}, {d0, d1, d2, 0.0}};
}

SectionPolynomials MfbBandPassPolynomials(const WorkingComponents& c, double A, double Ro) {
    const double R1 = c.R1, R2 = c.R2, R3 = c.R3, C1 = c.C1, C2 = c.C2;
    const double n2 = C1 * C2 * R2 * R3 * Ro;
    const double n1 = (C1 * Ro + C2 * Ro - A * C2 * R3) * R2;
    const double d2 = C1 * C2 * R3 * (Ro * R1 + Ro * R2 + A * R1 * R2 + R1 * R2);
    const double d1 = ((R1 + R2) * Ro + (A + 1.0) * R1 * R2) * C1 +
                      ((R1 + R2) * Ro + R2 * R3 + (A * R2 + R3 + R2) * R1) * C2;
    const double d0 = (R1 + R2) * (A + 1.0);
    return {{0.0, n1, n2, 0.0}, {d0, d1, d2, 0.0}};
}

// The shunt capacitor is taken as exactly 2 * C1, not the stored C2 (2 * C1 rounded to a
// standard value): the response shows the notch as designed, its zeros on the jw axis at any A
// when Ro = 0, rather than the shallower notch of the rounded part.
SectionPolynomials NotchPolynomials(const WorkingComponents& c, double A, double Ro) {
    const double R1 = c.R1, R2 = c.R2, R3 = c.R3, C1 = c.C1;
    const double c1sq = C1 * C1;
    const double c1cube = c1sq * C1;
    const double driven = A * R3 + Ro;
    const double loaded = (A + 1.0) * R3 + Ro;
    const double n3 = 2.0 * c1cube * R1 * R2 * driven;
    const double n2 = c1sq * (A * (R1 + R2) * R3 + (3.0 * R1 + R2) * Ro);
    const double n1 = 2.0 * C1 * driven;
    const double d3 = 2.0 * c1cube * R1 * R2 * loaded;
    const double d2 =
        c1sq * ((A + 1.0) * (5.0 * R1 + R2) * R3 + 2.0 * R1 * R2 + (5.0 * R1 + R2) * Ro);
    const double d1 = C1 * (2.0 * (A + 1.0) * (R1 + R3) + R1 + R2 + 2.0 * Ro);
    return {{A, n1, n2, n3}, {A + 1.0, d1, d2, d3}};
}

SectionPolynomialsFunction SectionPolynomialsFor(Topology topologyIndex) {
    switch (topologyIndex) {
        case Topology::VcvsLowPass: return VcvsLowPassPolynomials;
        case Topology::MfbLowPass: return MfbLowPassPolynomials;
        case Topology::VcvsHighPass: return VcvsHighPassPolynomials;
        case Topology::MfbHighPass: return MfbHighPassPolynomials;
        case Topology::VcvsBandPass: return VcvsBandPassPolynomials;
        case Topology::MfbBandPass: return MfbBandPassPolynomials;
        case Topology::VcvsNotch: return NotchPolynomials;
        // No circuit of that number: the section passes the signal unchanged.
        default: return UnityPolynomials;
    }
}

Complex SectionResponse(Topology topologyIndex, const WorkingComponents& c, double w, double A,
                        double Ro) {
    return EvaluateSection(SectionPolynomialsFor(topologyIndex)(c, A, Ro), w);
}

}  // namespace nerivane
