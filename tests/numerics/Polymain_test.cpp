// The prototype cascade against the published Bessel 3 dB tables, and the edge rules of pairing
// and of the corner search. Every family's sections are checked against its poles and its 3 dB
// point in Protofunctions_test.cpp, beside the reference roots.
#include "numerics/Polymain.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace nerivane {
namespace {

constexpr double GridStep = 1.0 / 512.0;

double W0(const ProtoSections& s, int i) {
    return s.DenS2[i] == 0.0 ? s.DenS0[i] : std::sqrt(s.DenS0[i]);
}

// Published 3 dB-normalised Bessel sections, regenerated in high precision beside the data
// file. The program's corner is the first point of a 1/512 rad/s grid over the unscaled poles
// where the magnitude is below 0.7071, so it lies in [W7071, W7071 + h) and each section
// frequency is the published one times W3 / corner; the damping does not depend on it.
TEST(BuildPrototype, BesselMatchesThePublishedThreeDbNormalisedSections) {
    std::ifstream file(NERIVANE_TEST_DATA_DIR "/bessel_3db_poles.txt");
    ASSERT_TRUE(file.is_open());
    std::vector<double> w3(MaxPoles + 1), w7071(MaxPoles + 1);
    std::vector<std::vector<std::pair<double, double>>> table(MaxPoles + 1);  // damping, w0
    for (std::string line, kind; std::getline(file, line);) {
        std::istringstream fields(line);
        int n = 0, order = 0;
        double w0 = 0.0, damping = 0.0;
        fields >> kind >> n;
        if (kind == "w3db") fields >> w3[n] >> w7071[n];
        if (kind == "section" && fields >> order >> w0 >> damping)
            table[n].emplace_back(damping, w0);
    }
    for (int n = 2; n <= MaxPoles; ++n) {
        SCOPED_TRACE("N = " + std::to_string(n));
        ProtoSections s;
        const int count = BuildPrototype(Bessel, n, 0.0, 0.0, s).sectionCount;
        ASSERT_EQ(count, static_cast<int>(table[n].size()));
        // From 14 poles on the roots' condition numbers pass 1e8 and the roots carry errors of
        // about condition number times epsilon (a few 1e-7 at 20 poles).
        const double rootError = n < 14 ? 1e-9 : 1e-6;
        for (int i = 0; i < count; ++i) {
            const double ratio = W0(s, i) / table[n][i].second;
            EXPECT_NEAR(SectionDamping(s, i), table[n][i].first, rootError) << "section " << i;
            EXPECT_LE(ratio, w3[n] / w7071[n] + rootError) << "section " << i;
            EXPECT_GT(ratio, w3[n] / (w7071[n] + GridStep) - rootError) << "section " << i;
        }
    }
}

// A single pole is the same first-order section whatever the family, even one beyond the menu;
// more poles of a family beyond the menu build nothing and leave every slot an all-pass unity.
TEST(BuildPrototype, OnePoleIsOneSectionForAnyFamilyAndUnknownFamiliesBuildNothing) {
    for (int family = -1; family <= 8; ++family) {
        SCOPED_TRACE(family);
        ProtoSections s;
        ASSERT_EQ(BuildPrototype(family, 1, 0.5, 0.5, s).sectionCount, 1);
        EXPECT_TRUE(s.DenS2[0] == 0.0 && s.DenS1[0] == 1.0 && std::fabs(s.DenS0[0] - 1.0) < 1e-15);
        if (family >= Butterworth && family <= AdjustableGauss) continue;
        EXPECT_EQ(BuildPrototype(family, 4, 0.2, 0.0, s).sectionCount, 0);
        for (int i = 0; i < MaxSections; ++i) {
            EXPECT_TRUE(s.DenS2[i] == 0.0 && s.DenS1[i] == 0.0 && s.DenS0[i] == 1.0 &&
                        s.NumS2[i] == 0.0 && s.NumS1[i] == 0.0 && s.NumS0[i] == 1.0)
                << "slot " << i;
        }
    }
}

TEST(RootsToSections, PairsConjugatesAndDropsWhatCannotBeASection) {
    const std::vector<Complex> roots = {
        {0.0, 2.0},  {-1.0, 1.0}, {0.0, -2.0}, {-1.0, -1.0},  // axis pair, left-half pair
        {-3.0, 0.0}, {-3.0, 0.0},                             // repeated real root: one section
        {1.0, 1.0},  {1.0, -1.0}, {2.0, 0.0},  {0.0, 0.0},    // right half plane, origin: none
        {-5.0, 4.0},                                          // no partner: none
    };
    const std::array<std::array<double, 3>, 3> expected{{{1, 0, 4}, {1, 2, 2}, {0, 1, 3}}};
    ProtoSections s;
    ResetSections(s);
    ASSERT_EQ(RootsToSections(roots, s), 3);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ((std::array{s.DenS2[i], s.DenS1[i], s.DenS0[i]}), expected[i]) << "section " << i;
}

TEST(NormaliseCorner, ResponseThatNeverFallsUsesTheLastGridPoint) {
    ProtoSections s;
    ResetSections(s);
    s.DenS1[0] = 1.0;
    s.DenS0[0] = 100.0;  // a pole far beyond the 11.7 rad/s the search covers
    EXPECT_DOUBLE_EQ(NormaliseCorner(1, s), 512.0 / 5999.0);
}

}  // namespace
}  // namespace nerivane
