// The response of one op-amp section at one frequency, for each of the seven circuits: the
// node solution of the circuit with the op amp as a voltage source A*(v+ - v-) behind its
// output resistance Ro. Markers in the parts are turned into circuit values here (a unity-gain
// follower's open R3, an open C2, a first-order section's open R1).
#pragma once

#include "circuit/Components.h"
#include "numerics/Mathfunctions.h"

namespace nerivane {

// Scaled complex division n/d; NaN in both parts when d is zero or not a number.
Complex DivideScaled(Complex n, Complex d);

// w in rad/s, A the op amp's (real) open-loop gain at that frequency, Ro in ohms.
Complex VcvsLowPassResponse(const WorkingComponents& c, double w, double A, double Ro);
Complex MfbLowPassResponse(const WorkingComponents& c, double w, double A, double Ro);
Complex VcvsHighPassResponse(const WorkingComponents& c, double w, double A, double Ro);
Complex MfbHighPassResponse(const WorkingComponents& c, double w, double A, double Ro);
Complex VcvsBandPassResponse(const WorkingComponents& c, double w, double A, double Ro);
Complex MfbBandPassResponse(const WorkingComponents& c, double w, double A, double Ro);
Complex NotchResponse(const WorkingComponents& c, double w, double A, double Ro);

// The routine of a topology (0 VCVS low pass ... 6 notch).
using SectionResponseFunction = Complex (*)(const WorkingComponents&, double, double, double);
SectionResponseFunction SectionResponseFor(int topologyIndex);

}  // namespace nerivane
