// Part values: the section panel's limits and hints, a band-pass split that fails, capacitor
// steps and standard values on their series, and ideal designs that meet their targets.
#include "circuit/Valuecalculations.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "circuit/Circuitanalysis.h"
#include "circuit/Standardvalues.h"

namespace nerivane {
namespace {

struct Design {
    Topology topology = Topology::VcvsLowPass;
    Response family = Response::Butterworth;
    int poles = 4;
    double gain = 1.0;
    double c1 = 1e-9;
    double c2 = 1e-8;
    int selected = 0;
};

constexpr double F0 = 5000.0;

struct Built {
    Design design;
    SectionComponents parts{};
    SectionPanelHints hints;
    ComponentSettings settings;
    int sections = 0;
    double cornerScale = 1.0;

    // The cascade's magnitude at f with a near-ideal op amp.
    double Magnitude(double f) const {
        std::array<double, 1> frequency{f};
        std::array<Complex, 1> response{Complex{1.0, 0.0}};
        for (int s = 0; s < sections; ++s)
            SimulateSectionAtGain(design.topology, parts.Section(s), 1e9, 0.0, frequency, response);
        return std::hypot(response[0].re, response[0].im);
    }
};

Built Build(const Design& d) {
    Built b;
    b.design = d;
    ProtoSections prototype{};
    b.cornerScale = BuildPrototype(d.family, d.poles, 0.5, -0.7, prototype).cornerScale;
    b.sections = d.topology >= Topology::VcvsBandPass ? d.poles : (d.poles + 1) / 2;
    std::vector<double> c1(MaxSections, d.c1), c2(MaxSections, d.c2);
    const ComponentInputs inputs{d.topology, b.sections, d.selected, F0,
                                 2000.0,     d.gain,     c1.data(),  c2.data()};
    Messages messages;
    CalculateComponents(inputs, prototype, b.settings, b.parts, b.hints, messages);
    return b;
}

// A C1 too large for the low-pass square root is stepped down the series until it fits, and
// the panel says so. C2 is suggested at 10 µs / F0 (2 nF), on the capacitor series.
TEST(SectionPanel, PushesAnOversizedC1BelowItsLimitAndSuggestsC2) {
    for (const Topology topology : {Topology::VcvsLowPass, Topology::MfbLowPass}) {
        const Built b = Build({.topology = topology, .c1 = 1e-6, .c2 = 1e-9, .selected = 1});
        EXPECT_LT(b.parts.C1[1], 1e-9) << Index(topology);
        EXPECT_TRUE(b.hints.c1PushedDown);
        EXPECT_TRUE(b.hints.c1LimitText.starts_with("Set < ")) << b.hints.c1LimitText;
        EXPECT_EQ(b.hints.suggestedC2Text, "~ 2.20 nF");
        for (int s = 0; s < b.sections; ++s)
            EXPECT_TRUE(b.parts.R1[s] > 0.0 && b.parts.R1[s] < FailMarker) << Index(topology);
    }
    EXPECT_FALSE(Build({.c1 = 1e-10}).hints.c1PushedDown);
}

TEST(CalculateComponents, ImpossibleBandPassSplitReportsAndKeepsThePreviousValues) {
    Messages messages;
    ProtoSections prototype;
    ResetSections(prototype);
    prototype.DenS2[0] = 1.0;
    prototype.DenS1[0] = 10.0;  // far too damped to split at Q = 1
    prototype.DenS0[0] = 1.0;
    SectionComponents parts{};
    parts.R1[0] = 123.0;
    std::vector<double> c(MaxSections, 1e-9);
    const ComponentInputs inputs{
        Topology::VcvsBandPass, 2, 0, 1000.0, 1000.0, 1.0, c.data(), c.data()};
    SectionPanelHints hints;
    CalculateComponents(inputs, prototype, ComponentSettings{}, parts, hints, messages);
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0].text, "E_a calc fails");
    EXPECT_EQ(messages[0].caption, "Error");
    EXPECT_EQ(parts.R1[0], 123.0);
}

// Each spinner click moves a capacitor by at least one value of its series, onto the series.
TEST(StepCapacitor, MovesAtLeastOneSeriesValue) {
    for (const ToleranceClass& tolerance : ToleranceClasses) {
        ComponentSettings settings;
        settings.capacitorClass = tolerance;
        double value = 1e-9;
        for (int click = 0; click < 90; ++click) {
            const bool up = click < 30;
            const double next = StepCapacitor(settings, value, up);
            EXPECT_TRUE(up ? next > value : next < value) << tolerance.percent << " " << value;
            EXPECT_EQ(settings.CapacitorStd(next), next) << tolerance.percent;
            value = next;
        }
    }
    ComponentSettings e6;
    e6.capacitorClass = *ToleranceClassOf(20);
    EXPECT_NEAR(StepCapacitor(e6, 1e-9, true), 1.5e-9, 1e-24);
    EXPECT_NEAR(StepCapacitor(e6, 1e-9, false), 0.68e-9, 1e-24);
}

// Ideal designs meet their targets: low and high pass cascades are 3 dB down at F0 to within
// the corner grid, band passes peak at F0, a notch is deep at F0.
// clang-format off
const std::pair<Response, int> Targets[] = {  // family, poles
    {Response::Butterworth, 2}, {Response::Butterworth, 5}, {Response::Chebyshev, 4}, {Response::Bessel, 3}, {Response::Bessel, 8},
    {Response::Papoulis, 6}, {Response::Gaussian, 4}, {Response::AdjustableGauss, 7}, {Response::AdjustableGauss, 10},
};
// clang-format on

TEST(IdealDesigns, LowAndHighPassCascadesAreThreeDbDownAtF0) {
    for (const Topology topology : std::span(Topologies).first(4))
        for (const auto& [family, poles] : Targets)
            for (double gain : {1.0, 2.0}) {
                const bool lowPass = topology <= Topology::MfbLowPass;
                const Built b = Build({.topology = topology,
                                       .family = family,
                                       .poles = poles,
                                       .gain = gain,
                                       .c1 = lowPass ? 1e-10 : 1e-8});
                const double passBand = b.Magnitude(lowPass ? 1e-3 * F0 : 1e3 * F0);
                // Butterworth is exact at 1/sqrt(2); the others are searched down to 0.7071.
                const double level =
                    (family == Response::Butterworth ? M_SQRT1_2 : 0.7071) * passBand;
                // The crossing by bisection between 0.2 and 5 F0.
                double low = 0.2 * F0, high = 5.0 * F0;
                for (int i = 0; i < 100; ++i) {
                    const double mid = std::sqrt(low * high);
                    ((b.Magnitude(mid) > level) == lowPass ? low : high) = mid;
                }
                const double corner = std::sqrt(low * high) / F0;
                // The prototype's corner lies on a grid of 1/512 of its unscaled corner.
                const double grid = b.cornerScale / 512.0;
                const double lowest = lowPass ? 1.0 - grid : 1.0;
                const double highest = lowPass ? 1.0 : 1.0 / (1.0 - grid);
                EXPECT_TRUE(corner >= lowest - 1e-6 && corner <= highest + 1e-6)
                    << Index(topology) << " family " << Index(family) << " N=" << poles
                    << " K=" << gain << ": corner at " << corner << " F0";
            }
}

TEST(IdealDesigns, BandPassCascadesPeakAtF0) {
    for (const Topology topology : {Topology::VcvsBandPass, Topology::MfbBandPass})
        for (const auto& [target, poles] : Targets) {
            // No ripple to confuse the search.
            const Response family = target == Response::Chebyshev ? Response::Butterworth : target;
            const Built b =
                Build({.topology = topology, .family = family, .poles = poles, .c1 = 1e-8});
            double bestF = 0.0, best = 0.0;
            for (double f = 0.5 * F0; f <= 2.0 * F0; f *= 1.0005)
                if (const double m = b.Magnitude(f); m > best) best = m, bestF = f;
            // The peak of an arithmetically symmetric design sits at the geometric centre.
            EXPECT_NEAR(bestF / F0, 1.0, 0.01)
                << Index(topology) << " " << Index(family) << " " << poles;
        }
}

TEST(IdealDesigns, NotchIsAtLeastSixtyDbDownAtF0AndFlatBelow) {
    for (int poles : {1, 2, 5}) {
        const Built b = Build({.topology = Topology::VcvsNotch, .poles = poles});
        EXPECT_LT(20.0 * std::log10(b.Magnitude(F0)), -60.0) << poles;
        EXPECT_NEAR(b.Magnitude(1e-3 * F0), 1.0, 1e-3) << poles;
    }
}

TEST(NearestStdValue, RoundsToTheSeriesOfTheClassInAnyDecade) {
    // clang-format off
    const struct { int percent; double x, expected; } cases[] = {
        {10, 9.9,    10.0},   // the top of the grid
        {20, 9.6,    10.0},   // closer to 10 than to 6.8
        {10, 2.0,    1.8},    // 2.0 - 1.8 is a hair smaller than 2.2 - 2.0 in doubles
        {20, 1.25,   1.0},    // an exact tie goes to the smaller value
        {1,  1.0124, 1.0},
        {1,  1.0126, 1.025},
        {2,  1.03,   1.05},   // 1.025 is not in the 2 % series
        {10, 4.6e-9, 4.7e-9},
        {10, 1e50,   1e50},
        {20, 0.0,    0.0},
        {20, -1e50,  -1e50},
        {10, NAN,    NAN},
        {10, INFINITY, INFINITY},
    };
    // clang-format on
    for (const auto& c : cases) {
        const double got = NearestStdValue(ToleranceClassOf(c.percent)->stride, c.x);
        EXPECT_TRUE(got == c.expected || (std::isnan(got) && std::isnan(c.expected)) ||
                    std::abs(got - c.expected) <= 1e-15 * std::abs(c.expected))
            << c.percent << "% " << c.x << " gave " << got;
    }
}

// Property: the result is always a series member and no member is nearer.
TEST(NearestStdValue, NoSeriesMemberIsNearer) {
    for (const ToleranceClass& tolerance : ToleranceClasses)
        for (double x = 1.0; x < 10.0; x += 0.0137) {
            const double nearest = NearestStdValue(tolerance.stride, x);
            for (int k = 0; k < StdValueGridSize; k += tolerance.stride)
                ASSERT_LE(std::fabs(x - nearest), std::fabs(x - StdValueGrid[k])) << x;
        }
}

// The values either side of x hold the nearest, on which the standard-value search starts.
TEST(StdValueNeighbours, BracketTheValueAndHoldTheNearest) {
    using S = ResistorSeries;
    // clang-format off
    const struct { S series; int stride; double x, below, above; } cases[] = {
        {S::ToleranceClass, 1, 1.01, 1.0, 1.025}, {S::ToleranceClass, 16, 9.6, 6.8, 10.0},
        {S::ToleranceClass, 1, 5.0, 5.0, 5.0},    {S::E48, 0, 9.9e3, 9.53e3, 10e3},
        {S::E192, 0, 0.5, 0.499, 0.505},          {S::E96, 0, 1.5e6, 1.5e6, 1.5e6},
    };
    // clang-format on
    for (const auto& c : cases) {
        const StdNeighbours n =
            c.stride ? StdValueNeighbours(c.stride, c.x) : DecadeSeriesNeighbours(c.series, c.x);
        EXPECT_TRUE(std::fabs(n.below / c.below - 1) + std::fabs(n.above / c.above - 1) < 1e-12)
            << c.x << ": " << n.below << " " << n.above;
    }
    for (double x = 0.9e3; x < 11e3; x *= 1.00731) {
        for (const auto& [n, nearest] :
             {std::pair{StdValueNeighbours(2, x), NearestStdValue(2, x)},
              std::pair{StdValueNeighbours(16, x), NearestStdValue(16, x)},
              std::pair{DecadeSeriesNeighbours(S::E96, x), NearestDecadeSeriesValue(S::E96, x)}})
            ASSERT_TRUE(n.below <= x && x <= n.above && (nearest == n.below || nearest == n.above));
    }
}

// The published E6 and E12 series, and E24 with the 10 that closes the decade.
TEST(StdValueGrid, StridesGiveTheNamedSeries) {
    const auto series = [](int stride) {
        std::set<double> values;
        for (int k = 0; k < StdValueGridSize; k += stride) values.insert(StdValueGrid[k]);
        return values;
    };
    EXPECT_EQ(series(16), (std::set<double>{1.0, 1.5, 2.2, 3.3, 4.7, 6.8, 10.0}));
    EXPECT_EQ(series(8),
              (std::set<double>{1.0, 1.2, 1.5, 1.8, 2.2, 2.7, 3.3, 3.9, 4.7, 5.6, 6.8, 8.2, 10.0}));
    EXPECT_EQ(series(4).size(), 25u);
    for (int k = 1; k < StdValueGridSize; ++k) EXPECT_GE(StdValueGrid[k], StdValueGrid[k - 1]);
}

}  // namespace
}  // namespace nerivane
