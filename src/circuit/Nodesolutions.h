// The exact node solutions of the section circuits as built, for the op-amp model with
// phase: where the plain simulation keeps fixed coefficient forms (the MFB low pass, the
// second-order VCVS high pass) or designs the notch's shunt capacitor as exactly 2 C1, these
// solve the circuit itself, with the parts as listed. Like the plain forms they are linear in
// the op amp's gain A, so a complex A can be put in afterwards.
#pragma once

#include "circuit/Components.h"
#include "circuit/Sectionresponses.h"

namespace nerivane {

SectionPolynomials ExactMfbLowPassPolynomials(const WorkingComponents& c, double A, double Ro);
SectionPolynomials ExactVcvsHighPassPolynomials(const WorkingComponents& c, double A, double Ro);
// The twin T with its stored shunt C2 and, when set, a second series capacitor of its own.
SectionPolynomials BuiltNotchPolynomials(const WorkingComponents& c, double A, double Ro);

// The node solution of a topology's circuit as built.
SectionPolynomialsFunction NodeSolutionFor(Topology topology);

// The single-pole op amp of a gain-bandwidth product: the same magnitude as the plain model
// (flat at GBW * 0.01 below 100 Hz, never above 1e5) with the phase of its pole.
struct SinglePoleOpAmp {
    double dcGain;
    double poleHz;
};
SinglePoleOpAmp SinglePoleOf(double gainBandwidth);

}  // namespace nerivane
