// The bias of an op amp on a single supply: a resistor divider from the supply sets the bias
// at its tap, and a capacitor from the tap to ground keeps supply noise off it. Each circuit
// solves the one quantity left out from the others and rounds its parts to a series.
#pragma once

#include <optional>
#include <string>

#include "circuit/Standardvalues.h"

namespace nerivane {

// What the user gave; an absent value is an unknown.
struct BiasInputs {
    std::optional<double> supply;       // Vs, volts
    std::optional<double> upper;        // R1, supply to tap, ohms
    std::optional<double> lower;        // R2, tap to ground, ohms
    std::optional<double> bias;         // Vb, volts
    std::optional<double> capacitance;  // C, tap to ground, farads
    std::optional<double> corner;       // fc, hertz
};

// The divider built from the nearest parts of the chosen series.
struct StandardBias {
    double upper = 0.0;
    double lower = 0.0;
    double capacitance = 0.0;  // 0 for the plain divider
    double bias = 0.0;
    double error = 0.0;         // bias minus the wanted bias, volts
    double errorPercent = 0.0;  // of the wanted bias
    double corner = 0.0;        // 0 for the plain divider
};

// Either a message saying what is wrong (every number then 0) or the whole circuit, every
// number finite.
struct BiasSolution {
    std::string error;
    double supply = 0.0;
    double upper = 0.0;
    double lower = 0.0;
    double bias = 0.0;
    double capacitance = 0.0;  // 0 for the plain divider
    double corner = 0.0;       // 0 for the plain divider
    double current = 0.0;      // through the divider, amperes
    double thevenin = 0.0;     // R1 parallel R2, ohms
    StandardBias standard;
};

// Vs, R1, R2, Vb: exactly one must be absent. The capacitor inputs are ignored.
BiasSolution SolveDivider(const BiasInputs& inputs, const ToleranceClass& series);

// Vs and Vb always given; of R1 (or R2, the other follows from the ratio), C and fc exactly
// one must be absent.
BiasSolution SolveDecoupledDivider(const BiasInputs& inputs, const ToleranceClass& series);

}  // namespace nerivane
