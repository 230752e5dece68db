#include "circuit/Dcbias.h"

#include <cmath>
#include <initializer_list>
#include <utility>

#include "circuit/Valuecalculations.h"
#include "numerics/Formatfunctions.h"

namespace nerivane {
namespace {

// Two given resistors must divide Vs to Vb this closely: values read back from the boxes
// carry a few digits of rounding, a different ratio is a different design.
constexpr double RatioTolerance = 1e-6;

constexpr const char* NothingToSolve =
    "Nothing left to solve: clear the box of the quantity to find.";

struct Named {
    const std::optional<double>& value;
    const char* name;
};

struct NamedResult {
    double value;
    const char* name;
};

BiasSolution Failed(std::string message) {
    BiasSolution solution;
    solution.error = std::move(message);
    return solution;
}

// The first given value that no circuit can have, as a message.
std::string FirstBadInput(std::initializer_list<Named> inputs) {
    for (const Named& input : inputs) {
        if (input.value && !(std::isfinite(*input.value) && *input.value > 0.0))
            return std::string(input.name) + " must be a positive, finite number.";
    }
    return {};
}

// Written as ratios, so that resistors near the largest double do not overflow in a sum.
double DividedVoltage(double supply, double upper, double lower) {
    return supply / (1.0 + upper / lower);
}

double Parallel(double a, double b) {
    return 1.0 / (1.0 / a + 1.0 / b);
}

double Corner(double capacitance, double resistance) {
    return 1.0 / (TwoPi * capacitance * resistance);
}

// The derived values and the standard parts; overflow and underflow anywhere become a
// message here instead of an infinity or a zero in a box.
BiasSolution Finish(BiasSolution s, const ToleranceClass& series, bool decoupled) {
    s.current = s.supply / (s.upper + s.lower);
    s.thevenin = Parallel(s.upper, s.lower);
    StandardBias& standard = s.standard;
    standard.upper = NearestStdValue(series.stride, s.upper);
    standard.lower = NearestStdValue(series.stride, s.lower);
    standard.bias = DividedVoltage(s.supply, standard.upper, standard.lower);
    standard.error = standard.bias - s.bias;
    standard.errorPercent = 100.0 * standard.error / s.bias;
    if (decoupled) {
        standard.capacitance = NearestStdValue(series.stride, s.capacitance);
        standard.corner = Corner(standard.capacitance, Parallel(standard.upper, standard.lower));
    }
    const NamedResult results[] = {
        {s.supply, "Vs"},
        {s.upper, "R1"},
        {s.lower, "R2"},
        {s.bias, "Vb"},
        {decoupled ? s.capacitance : 1.0, "C"},
        {decoupled ? s.corner : 1.0, "fc"},
        {s.current, "The divider current"},
        {s.thevenin, "The Thevenin resistance"},
        {standard.upper, "The standard R1"},
        {standard.lower, "The standard R2"},
        {decoupled ? standard.capacitance : 1.0, "The standard C"},
        {standard.bias, "The bias from standard parts"},
        {decoupled ? standard.corner : 1.0, "The corner from standard parts"},
        // The error may be zero or negative; only its size can fail.
        {std::isfinite(standard.errorPercent) ? 1.0 : 0.0, "The bias error"},
    };
    for (const NamedResult& result : results) {
        if (!(std::isfinite(result.value) && result.value > 0.0))
            return Failed(std::string(result.name) +
                          " is out of range with these values: check their sizes and prefixes.");
    }
    return s;
}

}  // namespace

BiasSolution SolveDivider(const BiasInputs& inputs, const ToleranceClass& series) {
    const std::string bad = FirstBadInput(
        {{inputs.supply, "Vs"}, {inputs.upper, "R1"}, {inputs.lower, "R2"}, {inputs.bias, "Vb"}});
    if (!bad.empty()) return Failed(bad);
    const int unknowns = !inputs.supply + !inputs.upper + !inputs.lower + !inputs.bias;
    if (unknowns == 0) return Failed(NothingToSolve);
    if (unknowns > 1)
        return Failed("Give all but one of Vs, R1, R2 and Vb: the one left empty is solved.");
    if (inputs.supply && inputs.bias && !(*inputs.bias < *inputs.supply))
        return Failed("Vb must be less than Vs: a divider only divides down.");

    BiasSolution s;
    s.supply = inputs.supply.value_or(0.0);
    s.upper = inputs.upper.value_or(0.0);
    s.lower = inputs.lower.value_or(0.0);
    s.bias = inputs.bias.value_or(0.0);
    if (!inputs.supply) {
        s.supply = s.bias * (1.0 + s.upper / s.lower);
    } else if (!inputs.bias) {
        s.bias = DividedVoltage(s.supply, s.upper, s.lower);
    } else if (!inputs.upper) {
        s.upper = s.lower * (s.supply - s.bias) / s.bias;
    } else {
        s.lower = s.upper * s.bias / (s.supply - s.bias);
    }
    return Finish(s, series, false);
}

BiasSolution SolveDecoupledDivider(const BiasInputs& inputs, const ToleranceClass& series) {
    const std::string bad = FirstBadInput({{inputs.supply, "Vs"},
                                           {inputs.upper, "R1"},
                                           {inputs.lower, "R2"},
                                           {inputs.bias, "Vb"},
                                           {inputs.capacitance, "C"},
                                           {inputs.corner, "fc"}});
    if (!bad.empty()) return Failed(bad);
    if (!inputs.supply || !inputs.bias)
        return Failed("Give both Vs and Vb: R1, R2, C or fc is solved around them.");
    const double supply = *inputs.supply;
    const double bias = *inputs.bias;
    if (!(bias < supply)) return Failed("Vb must be less than Vs: a divider only divides down.");
    // R1 and R2 are one unknown: the bias fixes their ratio, so either gives the other.
    const bool resistors = inputs.upper || inputs.lower;
    const int unknowns = !resistors + !inputs.capacitance + !inputs.corner;
    if (unknowns == 0) return Failed(NothingToSolve);
    if (unknowns > 1)
        return Failed(
            "Give two of R1 (or R2), C and fc besides Vs and Vb: the one left empty is solved.");
    if (inputs.upper && inputs.lower) {
        const double divided = DividedVoltage(supply, *inputs.upper, *inputs.lower);
        if (!(std::fabs(divided - bias) <= RatioTolerance * bias))
            return Failed("R1 and R2 divide Vs to " + FormatGeneral(divided, 5) +
                          " V, not Vb: clear one of them.");
    }

    BiasSolution s;
    s.supply = supply;
    s.bias = bias;
    const double drop = supply - bias;
    if (resistors) {
        s.upper = inputs.upper ? *inputs.upper : *inputs.lower * drop / bias;
        s.lower = inputs.lower ? *inputs.lower : *inputs.upper * bias / drop;
        const double thevenin = Parallel(s.upper, s.lower);
        s.capacitance =
            inputs.capacitance ? *inputs.capacitance : 1.0 / (TwoPi * thevenin * *inputs.corner);
        s.corner = inputs.corner ? *inputs.corner : Corner(s.capacitance, thevenin);
    } else {
        s.capacitance = *inputs.capacitance;
        s.corner = *inputs.corner;
        const double thevenin = 1.0 / (TwoPi * s.capacitance * s.corner);
        s.upper = thevenin * supply / bias;
        s.lower = thevenin * supply / drop;
    }
    return Finish(s, series, true);
}

}  // namespace nerivane
