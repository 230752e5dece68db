#include "circuit/Nodesolutions.h"

#include <algorithm>

namespace nerivane {

SectionPolynomials ExactMfbLowPassPolynomials(const WorkingComponents& c, double A, double Ro) {
    // A first-order section has R3 = 0 (a wire) and C2 = 0 (left out): the same solution.
    const double R1 = c.R1, R2 = c.R2, R3 = c.R3, C1 = c.C1, C2 = c.C2;
    const double n1 = C1 * Ro * (R2 + R3);
    const double n0 = Ro - A * R2;
    const double d2 = C1 * C2 * R1 * ((A + 1.0) * R2 * R3 + (R2 + R3) * Ro);
    const double d1 =
        C1 * ((A + 1.0) * (R1 * R2 + R1 * R3 + R2 * R3) + (R2 + R3) * Ro) + C2 * R1 * (R2 + Ro);
    const double d0 = (A + 1.0) * R1 + R2 + Ro;
    return {{n0, n1, 0.0, 0.0}, {d0, d1, d2, 0.0}};
}

SectionPolynomials ExactVcvsHighPassPolynomials(const WorkingComponents& c, double A, double Ro) {
    SectionPolynomials p = VcvsHighPassPolynomials(c, A, Ro);
    if (c.R1 > NotUsedThreshold) return p;  // the first-order form is the solution already
    // Only the s^2 term of the denominator departs: R1 * Ro where the fixed form has R1 * R1.
    const double R1 = c.R1, R2 = c.R2, R4 = c.R4, C1 = c.C1, C2 = c.C2;
    const double R3 = SimulatedR3(c, Ro);
    const double R34 = R3 + R4;
    p.d[2] = C1 * C2 * R2 * (R34 * Ro + ((A + 1.0) * R3 + R4 + Ro) * R1);
    return p;
}

SectionPolynomials BuiltNotchPolynomials(const WorkingComponents& c, double A, double Ro) {
    const double R1 = c.R1, R2 = c.R2, R3 = c.R3;
    const double Ca = c.C1, Cb = c.SecondC1 > 0.0 ? c.SecondC1 : c.C1, Cc = c.C2;
    const double driven = A * R3 + Ro;
    const double n3 = Ca * Cb * Cc * R1 * R2 * driven;
    const double n2 = Ca * (Cb * (R1 + R2) * driven + Cc * R1 * Ro);
    const double n1 = (Ca + Cb) * driven;
    const double d3 = Ca * Cb * Cc * R1 * R2 * (driven + R3);
    const double d2 = (A + 1.0) * R3 * (Ca * Cb * (R1 + R2) + (Ca + Cb) * Cc * R1) +
                      Ro * (Ca * Cb * (R1 + R2) + Ca * Cc * R1 + Cb * Cc * R1) + Cb * Cc * R1 * R2;
    const double d1 = (A + 1.0) * ((Ca + Cb) * R3 + Cc * R1) + (Ca + Cb) * Ro + Cb * (R1 + R2);
    return {{A, n1, n2, n3}, {A + 1.0, d1, d2, d3}};
}

SectionPolynomialsFunction NodeSolutionFor(Topology topology) {
    switch (topology) {
        case Topology::MfbLowPass: return ExactMfbLowPassPolynomials;
        case Topology::VcvsHighPass: return ExactVcvsHighPassPolynomials;
        case Topology::VcvsNotch: return BuiltNotchPolynomials;
        default: return SectionPolynomialsFor(topology);
    }
}

SinglePoleOpAmp SinglePoleOf(double gainBandwidth) {
    const double dcGain = std::min(gainBandwidth * 0.01, 1e5);
    return {dcGain, gainBandwidth / dcGain};
}

}  // namespace nerivane
