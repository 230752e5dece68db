#include "numerics/Polymain.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace nerivane {
namespace {

constexpr double GridStep = 1.0 / 512.0;

struct Family {
    int index;
    double parameter;  // ripple or gamma
    const char* name;
};

// clang-format off
const Family Families[] = {
    {Butterworth,     0.0,  "butterworth"},
    {Chebyshev,       0.001,"chebyshev 0.001 dB"},
    {Chebyshev,       0.2,  "chebyshev 0.2 dB"},
    {Chebyshev,       1.0,  "chebyshev 1 dB"},
    {Papoulis,        0.2,  "papoulis 0.2 dB"},
    {Papoulis,        1.0,  "papoulis 1 dB"},
    {Bessel,          0.0,  "bessel"},
    {Gaussian,        0.0,  "gaussian"},
    {AdjustableGauss, -1.0, "adjustable gauss -1"},
    {AdjustableGauss, -0.7, "adjustable gauss -0.7"},
    {AdjustableGauss, 0.0,  "adjustable gauss 0"},
    {AdjustableGauss, 0.5,  "adjustable gauss 0.5"},
    {AdjustableGauss, 1.0,  "adjustable gauss 1"},
};
// clang-format on

// The ripple adjuster holds Chebyshev designs of 16 poles and more below 1 dB: beyond that
// the innermost poles sit within half a degree of the imaginary axis and pair up undamped.
bool Allowed(const Family& family, int n) {
    return !(family.index == Chebyshev && family.parameter >= 0.5 && n >= 16);
}

PrototypeResult Build(const Family& family, int n, ProtoSections& sections) {
    return BuildPrototype(family.index, n, family.parameter, family.parameter, sections);
}

// Magnitude of the cascade at w rad/s, normalised to 1 at DC.
double CascadeMagnitude(const ProtoSections& s, int count, double w) {
    std::complex<double> h = 1.0;
    const std::complex<double> jw(0.0, w);
    for (int i = 0; i < count; ++i) {
        const auto numerator = s.NumS2[i] * jw * jw + s.NumS1[i] * jw + s.NumS0[i];
        const auto denominator = s.DenS2[i] * jw * jw + s.DenS1[i] * jw + s.DenS0[i];
        h *= (numerator / denominator) * (s.DenS0[i] / s.NumS0[i]);
    }
    return std::abs(h);
}

// The level the program calls 3 dB down.
constexpr double CornerLevel = 0.7071;

// Where the cascade first falls below the level, by bisection.
double CrossingFrequency(const ProtoSections& s, int count, double level) {
    double high = 0.001;
    while (CascadeMagnitude(s, count, high) >= level) high *= 1.01;
    double low = high / 1.01;
    for (int i = 0; i < 200; ++i) {
        const double mid = 0.5 * (low + high);
        (CascadeMagnitude(s, count, mid) >= level ? low : high) = mid;
    }
    return 0.5 * (low + high);
}

std::vector<double> SortedDampings(const ProtoSections& s, int count) {
    std::vector<double> dampings;
    for (int i = 0; i < count; ++i) dampings.push_back(SectionDamping(s, i));
    std::sort(dampings.rbegin(), dampings.rend());
    return dampings;
}

TEST(BuildPrototype, EveryFamilyAndOrderGivesStableOrderedSections) {
    for (const Family& family : Families) {
        for (int n = 1; n <= MaxPoles; ++n) {
            if (!Allowed(family, n)) continue;
            ProtoSections s;
            const PrototypeResult result = Build(family, n, s);
            ASSERT_EQ(result.sectionCount, (n + 1) / 2) << family.name << " N=" << n;
            EXPECT_EQ(result.note, nullptr) << family.name << " N=" << n;
            int firstOrder = 0;
            for (int i = 0; i < result.sectionCount; ++i) {
                EXPECT_GT(s.DenS0[i], 0.0) << family.name << " N=" << n;
                EXPECT_GT(s.DenS1[i], 0.0) << family.name << " N=" << n;
                if (s.DenS2[i] == 0.0) ++firstOrder;
                if (i > 0) {
                    EXPECT_GE(SectionDamping(s, i - 1), SectionDamping(s, i));
                }
                EXPECT_EQ(s.NumS2[i], 0.0);
                EXPECT_EQ(s.NumS1[i], 0.0);
                EXPECT_EQ(s.NumS0[i], 1.0);
            }
            EXPECT_EQ(firstOrder, n % 2) << family.name << " N=" << n;
        }
    }
}

// The corner search stops at the first grid point below 0.7071, so the true 3 dB point of
// the rescaled cascade lies within one grid step below 1 rad/s (the step shrinks by the
// same factor as the frequencies).
TEST(BuildPrototype, EveryCascadeIsThreeDbDownAtOneRadianPerSecond) {
    for (const Family& family : Families) {
        for (int n = 2; n <= MaxPoles; ++n) {
            if (!Allowed(family, n)) continue;
            ProtoSections s;
            const PrototypeResult result = Build(family, n, s);
            const int count = result.sectionCount;
            // Butterworth is exact rather than searched: 1/sqrt(2) at 1 rad/s.
            if (family.index == Butterworth) {
                EXPECT_NEAR(CrossingFrequency(s, count, M_SQRT1_2), 1.0, 1e-9) << "N=" << n;
                continue;
            }
            const double corner = CrossingFrequency(s, count, CornerLevel);
            EXPECT_LE(corner, 1.0 + 1e-9) << family.name << " N=" << n;
            EXPECT_GE(corner, 1.0 - GridStep * result.cornerScale - 1e-9)
                << family.name << " N=" << n;
            EXPECT_LT(CascadeMagnitude(s, count, 1.0), CornerLevel) << family.name << " N=" << n;
        }
    }
}

TEST(BuildPrototype, ButterworthSectionsAreTheClosedForm) {
    for (int n = 1; n <= MaxPoles; ++n) {
        ProtoSections s;
        const int count = BuildPrototype(Butterworth, n, 0.0, 0.0, s).sectionCount;
        std::vector<double> expected;
        for (int k = 0; k < n / 2; ++k) expected.push_back(std::sin((2 * k + 1) * M_PI / (2 * n)));
        if (n % 2 == 1) expected.push_back(1.0);
        std::sort(expected.rbegin(), expected.rend());
        const std::vector<double> actual = SortedDampings(s, count);
        ASSERT_EQ(actual.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i)
            EXPECT_NEAR(actual[i], expected[i], 1e-12);
        for (int i = 0; i < count; ++i) EXPECT_NEAR(s.DenS0[i], 1.0, 1e-12) << "N=" << n;
    }
}

// Chebyshev poles keep their damping through the rescaling; their frequencies are the
// closed-form ones divided by the grid corner, which sits within a grid step above the
// exact corner. The cascade is normalised to 1 at DC, where an even order sits at the
// bottom of its ripple (T_N(0)^2 = 1), so the corner solves
// (1 + e^2 T_N(0)^2) / (1 + e^2 T_N(w)^2) = 0.7071^2.
TEST(BuildPrototype, ChebyshevSectionsAreTheClosedFormRescaled) {
    for (double ripple : {0.1, 0.5, 1.0}) {
        const double e = std::sqrt(std::pow(10.0, 0.1 * ripple) - 1.0);
        for (int n = 2; n <= MaxPoles; ++n) {
            if (ripple >= 0.5 && n >= 16) continue;  // beyond the ripple adjuster's limit
            const double a = std::asinh(1.0 / e) / n;
            const double dcLevel = 1.0 + (n % 2 == 0 ? e * e : 0.0);
            const double cornerT = std::sqrt(dcLevel / (CornerLevel * CornerLevel) - 1.0) / e;
            const double exactCorner = std::cosh(std::acosh(cornerT) / n);
            std::vector<std::pair<double, double>> expected;  // damping, w0
            for (int k = 0; k < n / 2; ++k) {
                const double t = (2 * k + 1) * M_PI / (2 * n);
                const double sigma = std::sinh(a) * std::sin(t);
                const double omega = std::cosh(a) * std::cos(t);
                const double w0 = std::hypot(sigma, omega);
                expected.emplace_back(sigma / w0, w0);
            }
            if (n % 2 == 1) expected.emplace_back(1.0, std::sinh(a));
            std::sort(expected.rbegin(), expected.rend());

            ProtoSections s;
            const int count = BuildPrototype(Chebyshev, n, ripple, 0.0, s).sectionCount;
            ASSERT_EQ(count, static_cast<int>(expected.size()));
            const double gridCorner =
                expected[0].second / (s.DenS2[0] == 0.0 ? s.DenS0[0] : std::sqrt(s.DenS0[0]));
            EXPECT_GE(gridCorner, exactCorner - 1e-12) << ripple << " N=" << n;
            EXPECT_LT(gridCorner, exactCorner + GridStep) << ripple << " N=" << n;
            for (int i = 0; i < count; ++i) {
                const double w0 = s.DenS2[i] == 0.0 ? s.DenS0[i] : std::sqrt(s.DenS0[i]);
                EXPECT_NEAR(SectionDamping(s, i), expected[i].first, 1e-9);
                EXPECT_NEAR(w0, expected[i].second / gridCorner, 1e-9 * w0);
            }
        }
    }
}

// Published 3 dB-normalised Bessel sections, regenerated in high precision by the script
// beside the data file. The program's corner is the first point of a 1/512 rad/s grid over
// the unscaled poles where the magnitude is below 0.7071, so it lies in [W7071, W7071 + h)
// and each section frequency is the published one times W3 / corner.
TEST(BuildPrototype, BesselMatchesPublishedThreeDbNormalisedPoles) {
    std::ifstream file(std::string(NERIVANE_TEST_DATA_DIR) + "/bessel_3db_poles.txt");
    ASSERT_TRUE(file.is_open());
    struct Corner {
        double threeDb = 1.0;
        double atLevel = 1.0;
    };
    std::vector<std::vector<std::pair<double, double>>> table(MaxPoles + 1);
    std::vector<Corner> corners(MaxPoles + 1);
    std::string line;
    while (std::getline(file, line)) {
        std::istringstream fields(line);
        std::string kind;
        int n = 0;
        fields >> kind >> n;
        if (kind == "w3db") {
            fields >> corners[n].threeDb >> corners[n].atLevel;
        } else if (kind == "section") {
            int order = 0;
            double w0 = 0.0, damping = 0.0;
            fields >> order >> w0 >> damping;
            table[n].emplace_back(damping, w0);
        }
    }
    int checked = 0;
    for (int n = 2; n <= MaxPoles; ++n) {
        ASSERT_FALSE(table[n].empty()) << n;
        ProtoSections s;
        const int count = BuildPrototype(Bessel, n, 0.0, 0.0, s).sectionCount;
        ASSERT_EQ(count, static_cast<int>(table[n].size())) << n;
        // From 14 poles on the Bessel roots' condition numbers pass 1e8 and the roots carry
        // errors of about condition number times epsilon (a few 1e-7 at 20 poles).
        const double rootError = n < 14 ? 1e-9 : 1e-6;
        const double highest = corners[n].threeDb / corners[n].atLevel;
        const double lowest = corners[n].threeDb / (corners[n].atLevel + GridStep);
        for (int i = 0; i < count; ++i) {
            const double w0 = s.DenS2[i] == 0.0 ? s.DenS0[i] : std::sqrt(s.DenS0[i]);
            const double ratio = w0 / table[n][i].second;
            EXPECT_NEAR(SectionDamping(s, i), table[n][i].first, rootError) << n << " " << i;
            EXPECT_LE(ratio, highest + rootError) << n << " " << i;
            EXPECT_GT(ratio, lowest - rootError) << n << " " << i;
        }
        ++checked;
    }
    EXPECT_EQ(checked, MaxPoles - 1);
}

TEST(BuildPrototype, OnePoleIsTheSameFirstOrderSectionForEveryFamily) {
    for (int family = 0; family <= 8; ++family) {
        ProtoSections s;
        const PrototypeResult result = BuildPrototype(family, 1, 0.5, 0.5, s);
        ASSERT_EQ(result.sectionCount, 1) << family;
        EXPECT_EQ(s.DenS2[0], 0.0);
        EXPECT_EQ(s.DenS1[0], 1.0);
        EXPECT_NEAR(s.DenS0[0], 1.0, 1e-15);
    }
}

TEST(BuildPrototype, FamiliesBeyondTheMenuBuildNothing) {
    for (int family : {6, 7, 8, -1}) {
        ProtoSections s;
        EXPECT_EQ(BuildPrototype(family, 4, 0.2, 0.0, s).sectionCount, 0);
        for (int i = 0; i < MaxSections; ++i) {
            EXPECT_EQ(s.DenS2[i], 0.0);
            EXPECT_EQ(s.DenS1[i], 0.0);
            EXPECT_EQ(s.DenS0[i], 1.0);
            EXPECT_EQ(s.NumS0[i], 1.0);
        }
    }
}

TEST(BuildPrototype, FivePoleButterworthPutsTheFirstOrderSectionFirst) {
    ProtoSections s;
    ASSERT_EQ(BuildPrototype(Butterworth, 5, 0.0, 0.0, s).sectionCount, 3);
    EXPECT_EQ(s.DenS2[0], 0.0);
    EXPECT_NEAR(SectionDamping(s, 1), std::sin(54.0 * M_PI / 180.0), 1e-12);
    EXPECT_NEAR(SectionDamping(s, 2), std::sin(18.0 * M_PI / 180.0), 1e-12);
}

// With gamma = 1 at 20 poles the coefficients run from 1 to (20!)^2; all ten sections
// must still be formed.
TEST(BuildPrototype, AdjustableGaussGammaOneAtTwentyPolesBuildsAllSections) {
    ProtoSections s;
    const PrototypeResult result = BuildPrototype(AdjustableGauss, 20, 0.0, 1.0, s);
    EXPECT_EQ(result.sectionCount, 10);
    EXPECT_EQ(result.note, nullptr);
}

TEST(RootsToSections, PairsAndClassifiesRoots) {
    const std::vector<Complex> roots = {
        {0.0, 2.0},  {-1.0, 1.0}, {0.0, -2.0}, {-1.0, -1.0},  // axis pair, left-half pair
        {-3.0, 0.0}, {-3.0, 0.0},                             // repeated real root: one section
        {1.0, 1.0},  {1.0, -1.0}, {2.0, 0.0},  {0.0, 0.0},    // right half plane, origin: none
        {-5.0, 4.0},                                          // no partner: none
    };
    ProtoSections s;
    ResetSections(s);
    ASSERT_EQ(RootsToSections(roots, s), 3);
    EXPECT_EQ(s.DenS2[0], 1.0);
    EXPECT_EQ(s.DenS1[0], 0.0);
    EXPECT_EQ(s.DenS0[0], 4.0);
    EXPECT_EQ(s.DenS2[1], 1.0);
    EXPECT_EQ(s.DenS1[1], 2.0);
    EXPECT_EQ(s.DenS0[1], 2.0);
    EXPECT_EQ(s.DenS2[2], 0.0);
    EXPECT_EQ(s.DenS1[2], 1.0);
    EXPECT_EQ(s.DenS0[2], 3.0);
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
