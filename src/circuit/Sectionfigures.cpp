#include "circuit/Sectionfigures.h"

#include <array>
#include <cmath>
#include <limits>

#include "circuit/Valuecalculations.h"
#include "numerics/Rootfinderfunctions.h"

namespace nerivane {
namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

int DegreeOf(const std::array<double, 4>& c) {
    int degree = 3;
    while (degree > 0 && c[degree] == 0.0) --degree;
    return degree;
}

// f0 and Q of the denominator's quadratic factor; a cubic (the notch) first loses its real
// root, the one it shares with the numerator.
struct PoleFigures {
    double f0Hz;
    double q;
};

PoleFigures PoleFiguresOf(const std::array<double, 4>& d) {
    const int degree = DegreeOf(d);
    if (degree == 0) return {NaN, NaN};
    if (degree == 1) return {d[0] / d[1] / TwoPi, NaN};
    if (degree == 2) return {std::sqrt(d[0] / d[2]) / TwoPi, std::sqrt(d[0] * d[2]) / d[1]};
    const double highestFirst[4] = {d[3], d[2], d[1], d[0]};
    double re[3], im[3];
    if (FindPolynomialRoots(highestFirst, 3, re, im).count != 3) return {NaN, NaN};
    int real = 0;
    for (int i = 1; i < 3; ++i)
        if (std::fabs(im[i]) < std::fabs(im[real])) real = i;
    const int i = (real + 1) % 3, j = (real + 2) % 3;
    const double product = re[i] * re[j] - im[i] * im[j];
    const double w0 = std::sqrt(std::fabs(product));
    return {w0 / TwoPi, w0 / -(re[i] + re[j])};
}

double PassBandGain(Topology topology, const IdealSection& ideal, double f0Hz) {
    const std::array<double, 4>&n = ideal.chain.common.slope, &d = ideal.chain.a.slope;
    switch (topology) {
        case Topology::VcvsHighPass:
        case Topology::MfbHighPass: {
            const int degree = DegreeOf(d);
            return std::fabs(n[degree] / d[degree]);
        }
        case Topology::VcvsBandPass:
        case Topology::MfbBandPass: return ComplexAbs(ideal.At(TwoPi * f0Hz));
        default: return std::fabs(n[0] / d[0]);
    }
}

}  // namespace

bool IsFitted(double value) {
    return value > 0.0 && value < NotUsedThreshold && std::isfinite(value);
}

IdealSection IdealOf(Topology topology, const WorkingComponents& parts) {
    return {ChainOf(topology, parts, 0.0)};
}

SectionFigures FiguresOf(Topology topology, const IdealSection& ideal) {
    const PoleFigures figures = PoleFiguresOf(ideal.chain.a.slope);
    return {figures.f0Hz, figures.q, PassBandGain(topology, ideal, figures.f0Hz)};
}

double QSpread(Topology topology, const WorkingComponents& parts, double q,
               const ComponentSettings& settings) {
    WorkingComponents moved = parts;
    double spread = 0.0;
    const auto add = [&](double WorkingComponents::*field, double tolerance) {
        if (!IsFitted(parts.*field)) return;
        constexpr double Step = 1e-4;
        moved.*field = parts.*field * (1.0 + Step);
        const double movedQ = PoleFiguresOf(IdealOf(topology, moved).chain.a.slope).q;
        moved.*field = parts.*field;
        spread += std::fabs((movedQ / q - 1.0) / Step) * tolerance;
    };
    for (const SectionPart& part : SectionParts)
        add(part.value,
            part.resistor ? settings.resistorClass.fraction : settings.capacitorClass.fraction);
    return spread;
}

}  // namespace nerivane
