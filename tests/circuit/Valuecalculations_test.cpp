#include "circuit/Valuecalculations.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <complex>
#include <string>

#include "circuit/Circuitanalysis.h"
#include "numerics/MessageSink.h"

namespace nerivane {
namespace {

struct Design {
    int topology = 0;
    int family = Butterworth;
    int poles = 4;
    double f0 = 5000.0;
    double bandwidth = 2000.0;
    double gain = 1.0;
    double c1 = 1e-9;
    double c2 = 1e-8;
    ToleranceMode mode = ToleranceMode::Exact;
};

struct Built {
    ProtoSections prototype{};
    SectionComponents parts{};
    SectionPanelHints hints;
    ComponentSettings settings;
    int sections = 0;
    double cornerScale = 1.0;
};

int SectionsOf(const Design& d) {
    return d.topology >= 4 ? d.poles : (d.poles + 1) / 2;
}

Built Build(const Design& d, int selected = 0) {
    Built b;
    b.settings.mode = d.mode;
    b.cornerScale = BuildPrototype(d.family, d.poles, 0.5, -0.7, b.prototype).cornerScale;
    b.sections = SectionsOf(d);
    std::array<double, MaxSections> c1, c2;
    c1.fill(d.c1);
    c2.fill(d.c2);
    ComponentInputs inputs;
    inputs.topology = d.topology;
    inputs.numSections = b.sections;
    inputs.selectedSection = selected;
    inputs.f0 = d.f0;
    inputs.bandwidth = d.bandwidth;
    inputs.gain = d.gain;
    inputs.sectionC1 = c1.data();
    inputs.sectionC2 = c2.data();
    CalculateComponents(inputs, b.prototype, b.settings, b.parts, b.hints);
    return b;
}

// The cascade's magnitude at f with a near-ideal op amp.
double Magnitude(const Built& b, int topology, double f) {
    std::array<double, 1> frequency{f};
    std::array<Complex, 1> response{Complex{1.0, 0.0}};
    for (int s = 0; s < b.sections; ++s)
        SimulateSectionAtGain(topology, b.parts.Section(s), 1e9, 0.0, frequency, response);
    return std::hypot(response[0].re, response[0].im);
}

TEST(CalculateComponents, UnityGainVcvsStagesAreFollowers) {
    // clang-format off
    const struct { int topology; double gain; bool follower; } cases[] = {
        {0, 1.0, true}, {0, 1.001, true}, {0, 1.0011, false},
        {2, 1.0, true}, {2, 1.001, true}, {2, 1.0011, false}, {0, 2.0, false},
    };
    // clang-format on
    for (const auto& c : cases) {
        Design d;
        d.topology = c.topology;
        d.gain = c.gain;
        d.poles = 3;
        const Built b = Build(d);
        for (int s = 0; s < b.sections; ++s) {
            if (c.follower) {
                EXPECT_EQ(b.parts.R3[s], OpenMarker) << c.topology << " " << c.gain;
                EXPECT_EQ(b.parts.R4[s], 0.0);
            } else {
                EXPECT_LT(b.parts.R3[s], 1e9) << c.topology << " " << c.gain;
                EXPECT_GT(b.parts.R4[s], 0.0);
                EXPECT_NEAR(1.0 + b.parts.R4[s] / b.parts.R3[s], c.gain, 1e-12);
            }
        }
    }
}

TEST(CalculateComponents, OddLowPassGetsAFirstOrderSection) {
    Design d;
    d.poles = 5;
    const Built vcvs = Build(d);
    EXPECT_EQ(vcvs.parts.R2[0], 0.0);
    EXPECT_EQ(vcvs.parts.C2[0], OpenMarker);
    d.topology = 1;
    const Built mfb = Build(d);
    EXPECT_EQ(mfb.parts.R3[0], 0.0);
    EXPECT_EQ(mfb.parts.C2[0], 0.0);
    EXPECT_EQ(mfb.parts.R4[0], AbsentMarker);
}

TEST(CalculateComponents, VcvsHighPassUsesEqualCapacitors) {
    Design d;
    d.topology = 2;
    d.c1 = 4.7e-9;
    d.c2 = 22e-9;  // typed, but the circuit needs C2 = C1
    const Built b = Build(d);
    for (int s = 0; s < b.sections; ++s) EXPECT_EQ(b.parts.C2[s], 4.7e-9);
    EXPECT_FALSE(b.hints.c2PanelVisible);
}

TEST(CalculateComponents, SuggestsTenMicrosecondsOverF0) {
    Design d;
    d.f0 = 1000.0;
    EXPECT_EQ(Build(d).hints.suggestedC2Text, "~ 10.0 nF");
}

// A C1 too large for the low-pass square root is stepped down the series until it fits, and
// the panel says so.
TEST(CalculateComponents, OversizedC1IsPushedDownBelowItsLimit) {
    for (int topology : {0, 1}) {
        Design d;
        d.topology = topology;
        d.c1 = 1e-6;
        d.c2 = 1e-9;
        const Built b = Build(d, 1);
        EXPECT_LT(b.parts.C1[1], 1e-9) << topology;
        EXPECT_TRUE(b.hints.c1PushedDown);
        EXPECT_EQ(b.hints.c1LimitText.rfind("Set < ", 0), 0u) << b.hints.c1LimitText;
        for (int s = 0; s < b.sections; ++s) {
            EXPECT_LT(b.parts.R1[s], FailMarker) << topology;
            EXPECT_GT(b.parts.R1[s], 0.0);
        }
    }
    Design fits;
    fits.c1 = 1e-10;
    EXPECT_FALSE(Build(fits).hints.c1PushedDown);
}

TEST(CalculateComponents, StandardModeRoundsEveryResistorToTheSeries) {
    for (int topology = 0; topology <= 6; ++topology) {
        Design d;
        d.topology = topology;
        d.mode = ToleranceMode::Standard;
        d.gain = topology == 1 || topology == 3 ? 2.0 : 1.5;
        const Built b = Build(d);
        for (int s = 0; s < b.sections; ++s) {
            for (double r : {b.parts.R1[s], b.parts.R2[s], b.parts.R3[s], b.parts.R4[s]})
                EXPECT_EQ(b.settings.ResistorStd(r), r) << topology << " " << r;
        }
    }
}

class BandPassFailure : public ::testing::Test {
  protected:
    void SetUp() override { InstallMessageSink(&sink); }
    void TearDown() override { InstallMessageSink(nullptr); }
    RecordingMessageSink sink;
};

TEST_F(BandPassFailure, ImpossibleSplitReportsAndKeepsThePreviousValues) {
    ProtoSections prototype;
    ResetSections(prototype);
    prototype.DenS2[0] = 1.0;
    prototype.DenS1[0] = 10.0;  // far too damped to split at Q = 1
    prototype.DenS0[0] = 1.0;
    SectionComponents parts{};
    parts.R1[0] = 123.0;
    std::array<double, MaxSections> c{};
    c.fill(1e-9);
    ComponentInputs inputs;
    inputs.topology = 4;
    inputs.numSections = 2;
    inputs.f0 = 1000.0;
    inputs.bandwidth = 1000.0;
    inputs.sectionC1 = c.data();
    inputs.sectionC2 = c.data();
    SectionPanelHints hints;
    CalculateComponents(inputs, prototype, ComponentSettings{}, parts, hints);
    ASSERT_EQ(sink.messages.size(), 2u);
    EXPECT_EQ(sink.messages[0].text, "E_a calc fails");
    EXPECT_EQ(sink.messages[0].caption, "Error");
    EXPECT_EQ(parts.R1[0], 123.0);
}

// Ideal designs meet their targets: low and high pass cascades are 3 dB down at F0 to within
// the corner grid, band passes peak at F0, a notch is deep at F0.
struct TargetCase {
    int family;
    int poles;
};

// clang-format off
const TargetCase Targets[] = {
    {Butterworth, 2}, {Butterworth, 5}, {Chebyshev, 4}, {Bessel, 3}, {Bessel, 8},
    {Papoulis, 6}, {Gaussian, 4}, {AdjustableGauss, 7}, {AdjustableGauss, 10},
};
// clang-format on

// Where the magnitude crosses level, by bisection between two frequencies that bracket it.
double Crossing(const Built& b, int topology, double level, double low, double high) {
    const bool fallsWithFrequency = Magnitude(b, topology, low) > level;
    for (int i = 0; i < 100; ++i) {
        const double mid = std::sqrt(low * high);
        ((Magnitude(b, topology, mid) > level) == fallsWithFrequency ? low : high) = mid;
    }
    return std::sqrt(low * high);
}

TEST(IdealDesigns, LowAndHighPassCascadesAreThreeDbDownAtF0) {
    for (int topology = 0; topology <= 3; ++topology) {
        for (const TargetCase& t : Targets) {
            for (double gain : {1.0, 2.0}) {
                Design d;
                d.topology = topology;
                d.family = t.family;
                d.poles = t.poles;
                d.gain = gain;
                d.c1 = topology <= 1 ? 1e-10 : 1e-8;
                d.c2 = 1e-8;
                const Built b = Build(d);
                const bool lowPass = topology <= 1;
                const double passBand = Magnitude(b, topology, lowPass ? 1e-3 * d.f0 : 1e3 * d.f0);
                // Butterworth is exact at 1/sqrt(2); the others are searched down to 0.7071.
                const double level = (t.family == Butterworth ? M_SQRT1_2 : 0.7071) * passBand;
                const double corner = Crossing(b, topology, level, 0.2 * d.f0, 5.0 * d.f0);
                // The prototype's corner lies on a grid of 1/512 of its unscaled corner.
                const double grid = b.cornerScale / 512.0;
                const std::string what =
                    std::to_string(topology) + " family " + std::to_string(t.family) +
                    " N=" + std::to_string(t.poles) + " K=" + std::to_string(gain);
                if (lowPass) {
                    EXPECT_LE(corner, d.f0 * (1.0 + 1e-6)) << what;
                    EXPECT_GE(corner, d.f0 * (1.0 - grid - 1e-6)) << what;
                } else {
                    EXPECT_GE(corner, d.f0 * (1.0 - 1e-6)) << what;
                    EXPECT_LE(corner, d.f0 / (1.0 - grid) * (1.0 + 1e-6)) << what;
                }
            }
        }
    }
}

TEST(IdealDesigns, BandPassCascadesPeakAtF0) {
    for (int topology : {4, 5}) {
        for (const TargetCase& t : Targets) {
            Design d;
            d.topology = topology;
            d.family = t.family == Chebyshev ? Butterworth : t.family;  // no ripple to confuse
            d.poles = std::min(t.poles, 10);
            d.c1 = 1e-8;
            d.c2 = 1e-8;
            const Built b = Build(d);
            double bestF = 0.0, best = 0.0;
            for (double f = 0.5 * d.f0; f <= 2.0 * d.f0; f *= 1.0005) {
                const double m = Magnitude(b, topology, f);
                if (m > best) best = m, bestF = f;
            }
            // The peak of an arithmetically symmetric design sits at the geometric centre.
            EXPECT_NEAR(bestF / d.f0, 1.0, 0.01) << topology << " " << t.family << " " << t.poles;
        }
    }
}

TEST(IdealDesigns, NotchIsAtLeastSixtyDbDownAtF0) {
    for (int poles : {1, 2, 5}) {
        Design d;
        d.topology = 6;
        d.poles = poles;
        const Built b = Build(d);
        EXPECT_LT(20.0 * std::log10(Magnitude(b, 6, d.f0)), -60.0) << poles;
        EXPECT_NEAR(Magnitude(b, 6, 1e-3 * d.f0), 1.0, 1e-3);
    }
}

}  // namespace
}  // namespace nerivane
