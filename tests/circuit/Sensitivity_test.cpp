// Each part's pull on its section's f0 and Q against a node solve of the circuit as drawn: the
// section's denominator read off the solved response at two frequencies, with the part 1 %
// larger and without.
#include "circuit/Sensitivity.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>

#include "NodalSection.h"
#include "app/DesignState.h"
#include "support/ChebyshevDesign.h"

namespace nerivane {
namespace {

// For a numerator K s^m, (j w)^m / H(j w) = (a0 + a1 j w + a2 (j w)^2) / K: its real part at two
// frequencies gives a0 and a2, its imaginary part a1. A first-order section lacks a2 (low pass)
// or a0 (high pass, whose numerator has one s fewer). Returns f0 and Q (NaN for first order).
std::pair<double, double> NodalFigures(Topology t, const WorkingComponents& parts, double f0Hz) {
    const int m = t == Topology::VcvsHighPass || t == Topology::MfbHighPass   ? 2
                  : t == Topology::VcvsBandPass || t == Topology::MfbBandPass ? 1
                                                                              : 0;
    const auto g = [&](double w) {
        return std::pow(std::complex<double>(0.0, w), m) /
               NodalCircuit(t, parts, INFINITY, 0.0, false).Transfer("in", "out", w);
    };
    const double w1 = 0.5 * TwoPi * f0Hz, w2 = 2.0 * TwoPi * f0Hz;
    const std::complex<double> g1 = g(w1), g2 = g(w2);
    const double a2 = (g1.real() - g2.real()) / (w2 * w2 - w1 * w1);
    const double a0 = g1.real() + a2 * w1 * w1, a1 = g1.imag() / w1;
    if (std::fabs(a2) * w1 * w2 < 1e-9 * std::fabs(a0)) return {std::fabs(a0 / a1) / TwoPi, NAN};
    if (std::fabs(a0) < 1e-9 * std::fabs(a2) * w1 * w2) return {std::fabs(a1 / a2) / TwoPi, NAN};
    return {std::sqrt(a0 / a2) / TwoPi, std::fabs(std::sqrt(a0 * a2) / a1)};
}

// Every circuit but the notch (a cubic), first- and second-order sections, unity gain and more;
// a unity-gain VCVS low pass moves f0 by 1 / sqrt(1.01) - 1 with each of its four parts.
TEST(Sensitivity, EachPartInTheCircuitMovesF0AndQAsTheNodeSolveSays) {
    for (const Topology t : Topologies)
        for (const double gainDb : {0.0, 6.0})
            for (int s = 0; s < SectionsForPoles(t, 3) && t != Topology::VcvsNotch; ++s) {
                SCOPED_TRACE(std::to_string(Index(t)) + " " + std::to_string(gainDb) + " " +
                             std::to_string(s));
                const WorkingComponents parts = ChebyshevDesign(t, 3, gainDb).Section(s);
                const SectionFigures figures = FiguresOf(t, IdealOf(t, parts));
                const std::vector<PartSensitivity> found = SensitivitiesOf(t, parts, figures);
                const auto [f0, q] = NodalFigures(t, parts, figures.f0Hz);
                // One entry per part the drawing places, in the order R1 .. C2.
                EXPECT_EQ(found.size(), std::ranges::count_if(CircuitOf(t).Parts(), [&](auto& p) {
                              return !IsSecondPart(p) &&
                                     ConditionOf(p, parts).state == PartState::Placed;
                          }));
                for (const PartSensitivity& got : found) {
                    const auto part = std::ranges::find_if(
                        SectionParts, [&](auto& p) { return std::string(p.name) == got.part; });
                    WorkingComponents moved = parts;
                    moved.*(part->value) *= 1.01;
                    const auto [movedF0, movedQ] = NodalFigures(t, moved, figures.f0Hz);
                    EXPECT_NEAR(got.f0Percent, 100.0 * (movedF0 / f0 - 1.0), 1e-7) << got.part;
                    const double dq = 100.0 * (movedQ / q - 1.0);
                    EXPECT_TRUE(std::isnan(dq) ? std::isnan(got.qPercent)
                                               : std::fabs(got.qPercent - dq) < 1e-7)
                        << got.part << " " << got.qPercent << " " << dq;
                    if (t == Topology::VcvsLowPass && gainDb == 0.0 && !std::isnan(q)) {
                        EXPECT_NEAR(got.f0Percent, 100.0 * (1.0 / std::sqrt(1.01) - 1.0), 1e-9);
                    }
                }
            }
}

}  // namespace
}  // namespace nerivane
