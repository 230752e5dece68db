// The family builders against golden data made in 60-digit arithmetic by
// tests/data/make_reference_roots.py: every family, every order 1 to 20, every root delivered,
// each one to 1e-9 relative or, where the root is ill conditioned, as close as its condition
// number allows.
#include "numerics/Protofunctions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <limits>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "numerics/Rootfinderfunctions.h"

namespace nerivane {
namespace {

constexpr double Eps = std::numeric_limits<double>::epsilon();

// A root whose relative condition number is kappa may move by about kappa * eps from the
// rounding of the coefficients alone; the root finder's own rounding adds a small multiple of
// that (measured at most 2.4 where the condition bound is the one that applies: Papoulis and
// Bessel near 20 poles, with kappa up to 1.3e10 and errors of a few 1e-7).
constexpr double ConditionFactor = 16.0;
constexpr double FlatTolerance = 1e-9;

constexpr double AdjustableGaussStretch = 1.1;

struct ReferenceRoot {
    Complex z;
    double kappa = 0.0;
};

struct ReferenceCase {
    std::vector<ReferenceRoot> roots;
    std::vector<double> coefficients;  // highest power first; empty for the closed forms
};

// Keyed by "family param n" exactly as the file writes them.
using ReferenceData = std::map<std::string, ReferenceCase>;

std::string CaseKey(const std::string& family, const std::string& param, int n) {
    return family + " " + param + " " + std::to_string(n);
}

const ReferenceData& Reference() {
    static const ReferenceData data = [] {
        ReferenceData result;
        std::ifstream in(NERIVANE_TEST_DATA_DIR "/reference_roots.txt");
        std::string line;
        while (std::getline(in, line)) {
            std::istringstream fields(line);
            std::string kind, family, param;
            int n = 0;
            fields >> kind >> family >> param >> n;
            if (kind == "root") {
                ReferenceRoot root;
                fields >> root.z.re >> root.z.im >> root.kappa;
                result[CaseKey(family, param, n)].roots.push_back(root);
            } else if (kind == "poly") {
                int degree = 0;
                fields >> degree;
                auto& coefficients = result[CaseKey(family, param, n)].coefficients;
                coefficients.resize(static_cast<std::size_t>(degree) + 1);
                for (double& c : coefficients) fields >> c;
            }
        }
        return result;
    }();
    return data;
}

double Distance(Complex a, Complex b) {
    return ComplexAbs(a - b);
}

struct RootCase {
    const char* family;
    const char* param;
    int rootsPerPole;
    double imagStretch;
    double relativeFloor;
    void (*build)(int n, double param, FamilyRoots& out);
};

void PrintTo(const RootCase& c, std::ostream* os) {
    *os << c.family << " " << c.param;
}

std::string CaseName(const char* family, const char* param) {
    std::string name = std::string(family) + "_" + param;
    for (char& ch : name) {
        if (ch == '.') ch = 'p';
        if (ch == '-') ch = 'm';
    }
    return name;
}

// Equal-modulus roots (the even families mirror every root in the imaginary axis) are where
// deflation alone would lose digits; the finder's polish on the undeflated polynomial must
// bring them back to the same 1e-9 as the rest.
const RootCase RootCases[] = {
    {"butterworth", "0", 1, 1.0, FlatTolerance,
     [](int n, double, FamilyRoots& out) { ButterworthPoles(n, out); }},
    {"chebyshev", "0.0", 1, 1.0, FlatTolerance, ChebyshevPoles},
    {"chebyshev", "0.2", 1, 1.0, FlatTolerance, ChebyshevPoles},
    {"chebyshev", "1.0", 1, 1.0, FlatTolerance, ChebyshevPoles},
    {"chebyshev", "3.0", 1, 1.0, FlatTolerance, ChebyshevPoles},
    {"bessel", "0", 1, 1.0, FlatTolerance,
     [](int n, double, FamilyRoots& out) { BesselRoots(n, out); }},
    {"gaussian", "0", 2, 1.0, FlatTolerance,
     [](int n, double, FamilyRoots& out) { GaussianRoots(n, out); }},
    {"adjgauss", "-1", 2, AdjustableGaussStretch, FlatTolerance, AdjustableGaussRoots},
    {"adjgauss", "-0.7", 2, AdjustableGaussStretch, FlatTolerance, AdjustableGaussRoots},
    {"adjgauss", "0", 2, AdjustableGaussStretch, FlatTolerance, AdjustableGaussRoots},
    {"adjgauss", "0.5", 2, AdjustableGaussStretch, FlatTolerance, AdjustableGaussRoots},
    {"adjgauss", "1", 2, AdjustableGaussStretch, FlatTolerance, AdjustableGaussRoots},
    {"papoulis", "0.2", 2, 1.0, FlatTolerance, PapoulisRoots},
    {"papoulis", "1.0", 2, 1.0, FlatTolerance, PapoulisRoots},
};

class FamilyRootsTest : public ::testing::TestWithParam<RootCase> {};

// Each reference root takes the nearest delivered root not yet taken, so a root delivered
// twice while another is missing fails even when both lie close together.
TEST_P(FamilyRootsTest, DeliversEveryReferenceRootToItsConditionBound) {
    const RootCase& c = GetParam();
    for (int n = 1; n <= MaxPoles; ++n) {
        SCOPED_TRACE("N = " + std::to_string(n));
        const auto found = Reference().find(CaseKey(c.family, c.param, n));
        ASSERT_NE(found, Reference().end()) << "no reference data";
        const std::vector<ReferenceRoot>& expected = found->second.roots;
        ASSERT_EQ(expected.size(), static_cast<std::size_t>(c.rootsPerPole * n));

        FamilyRoots out;
        c.build(n, std::stod(c.param), out);
        ASSERT_EQ(out.count, c.rootsPerPole * n);
        EXPECT_EQ(out.note, nullptr);

        std::vector<bool> taken(static_cast<std::size_t>(out.count), false);
        for (const ReferenceRoot& ref : expected) {
            const Complex want{ref.z.re, ref.z.im * c.imagStretch};
            int best = -1;
            for (int i = 0; i < out.count; ++i) {
                if (taken[i]) continue;
                if (best < 0 || Distance(out.roots[i], want) < Distance(out.roots[best], want)) {
                    best = i;
                }
            }
            taken[best] = true;
            const double error = Distance(out.roots[best], want) / ComplexAbs(want);
            const double tolerance = std::max(c.relativeFloor, ConditionFactor * ref.kappa * Eps);
            EXPECT_LE(error, tolerance)
                << "reference root " << want.re << " " << want.im << ", delivered "
                << out.roots[best].re << " " << out.roots[best].im << ", kappa " << ref.kappa;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(AllFamilies, FamilyRootsTest, ::testing::ValuesIn(RootCases),
                         [](const ::testing::TestParamInfo<RootCase>& info) {
                             return CaseName(info.param.family, info.param.param);
                         });

struct PolynomialCase {
    const char* family;
    const char* param;
    int (*build)(int n, double param, std::span<double, MaxFamilyPolynomialSize> out);
};

void PrintTo(const PolynomialCase& c, std::ostream* os) {
    *os << c.family << " " << c.param;
}

const PolynomialCase PolynomialCases[] = {
    {"bessel", "0",
     [](int n, double, std::span<double, MaxFamilyPolynomialSize> out) {
         return BesselPolynomial(n, out);
     }},
    {"gaussian", "0",
     [](int n, double, std::span<double, MaxFamilyPolynomialSize> out) {
         return GaussianPolynomial(n, out);
     }},
    {"adjgauss", "-1", AdjustableGaussPolynomial},
    {"adjgauss", "-0.7", AdjustableGaussPolynomial},
    {"adjgauss", "0", AdjustableGaussPolynomial},
    {"adjgauss", "0.5", AdjustableGaussPolynomial},
    {"adjgauss", "1", AdjustableGaussPolynomial},
    {"papoulis", "0.2", PapoulisPolynomial},
    {"papoulis", "1.0", PapoulisPolynomial},
};

class FamilyPolynomialTest : public ::testing::TestWithParam<PolynomialCase> {};

// The coefficients come from factorials, powers and the ripple's e, each a few roundings
// deep; the odd powers of the even polynomials must be exact zeros.
TEST_P(FamilyPolynomialTest, MatchesTheReferenceCoefficients) {
    const PolynomialCase& c = GetParam();
    for (int n = 1; n <= MaxPoles; ++n) {
        SCOPED_TRACE("N = " + std::to_string(n));
        const auto found = Reference().find(CaseKey(c.family, c.param, n));
        ASSERT_NE(found, Reference().end()) << "no reference data";
        const std::vector<double>& expected = found->second.coefficients;

        std::array<double, MaxFamilyPolynomialSize> coefficients{};
        const int degree = c.build(n, std::stod(c.param), coefficients);
        ASSERT_EQ(static_cast<std::size_t>(degree) + 1, expected.size());
        for (int i = 0; i <= degree; ++i) {
            if (expected[i] == 0.0) {
                EXPECT_EQ(coefficients[i], 0.0) << "coefficient " << i;
            } else {
                EXPECT_NEAR(coefficients[i] / expected[i], 1.0, 1e-14) << "coefficient " << i;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(AllPolynomialFamilies, FamilyPolynomialTest,
                         ::testing::ValuesIn(PolynomialCases),
                         [](const ::testing::TestParamInfo<PolynomialCase>& info) {
                             return CaseName(info.param.family, info.param.param);
                         });

TEST(FamilyPolynomials, BesselOfOrderThreeIsTheTextbookCubic) {
    std::array<double, MaxFamilyPolynomialSize> coefficients{};
    ASSERT_EQ(BesselPolynomial(3, coefficients), 3);
    EXPECT_EQ(coefficients[0], 1.0);
    EXPECT_EQ(coefficients[1], 6.0);
    EXPECT_EQ(coefficients[2], 15.0);
    EXPECT_EQ(coefficients[3], 15.0);
}

TEST(FamilyPolynomials, PapoulisOfOrderTwoIsOnePlusEpsilonTimesSToTheFourth) {
    for (const double ripple : {0.2, 1.0}) {
        SCOPED_TRACE(ripple);
        const double e = std::sqrt(std::pow(10.0, 0.5 * ripple) - 1.0);
        std::array<double, MaxFamilyPolynomialSize> coefficients{};
        ASSERT_EQ(PapoulisPolynomial(2, ripple, coefficients), 4);
        EXPECT_DOUBLE_EQ(coefficients[0], e);
        EXPECT_EQ(coefficients[1], 0.0);
        EXPECT_EQ(coefficients[2], 0.0);
        EXPECT_EQ(coefficients[3], 0.0);
        EXPECT_EQ(coefficients[4], 1.0);
    }
}

// Ripples far outside the usual range meet the clamps of e, 0.001 and 10000.
TEST(FamilyPolynomials, PapoulisEpsilonIsClamped) {
    const struct {
        double ripple;
        double e;
    } cases[] = {{0.0, 0.001}, {1e-9, 0.001}, {90.0, 10000.0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.ripple);
        std::array<double, MaxFamilyPolynomialSize> coefficients{};
        ASSERT_EQ(PapoulisPolynomial(1, c.ripple, coefficients), 2);
        EXPECT_DOUBLE_EQ(coefficients[0], -c.e);
        EXPECT_EQ(coefficients[1], 0.0);
        EXPECT_EQ(coefficients[2], 1.0);
    }
}

TEST(FamilyPolynomials, AdjustableGaussWithGammaMinusOneIsTheGaussian) {
    for (int n = 1; n <= MaxPoles; ++n) {
        SCOPED_TRACE(n);
        std::array<double, MaxFamilyPolynomialSize> gaussian{};
        std::array<double, MaxFamilyPolynomialSize> adjustable{};
        const int degree = GaussianPolynomial(n, gaussian);
        ASSERT_EQ(AdjustableGaussPolynomial(n, -1.0, adjustable), degree);
        for (int i = 0; i <= degree; ++i) EXPECT_DOUBLE_EQ(adjustable[i], gaussian[i]) << i;
    }
}

TEST(FamilyPolynomials, AdjustableGaussWithGammaZeroAlternatesOnes) {
    for (int n = 1; n <= MaxPoles; ++n) {
        SCOPED_TRACE(n);
        std::array<double, MaxFamilyPolynomialSize> coefficients{};
        ASSERT_EQ(AdjustableGaussPolynomial(n, 0.0, coefficients), 2 * n);
        for (int k = 0; k <= n; ++k) {
            EXPECT_EQ(coefficients[2 * (n - k)], k % 2 ? -1.0 : 1.0) << "s^" << 2 * k;
            if (k < n) {
                EXPECT_EQ(coefficients[2 * (n - k) - 1], 0.0) << "s^" << 2 * k + 1;
            }
        }
    }
}

// The stretch applies to the roots only: the same root finder on the same polynomial must
// give the Gaussian's roots with every imaginary part stretched a tenth, in the same order.
TEST(FamilyRoots, AdjustableGaussWithGammaMinusOneStretchesTheGaussianRoots) {
    for (int n = 1; n <= MaxPoles; ++n) {
        SCOPED_TRACE(n);
        FamilyRoots gaussian;
        FamilyRoots adjustable;
        GaussianRoots(n, gaussian);
        AdjustableGaussRoots(n, -1.0, adjustable);
        ASSERT_EQ(adjustable.count, gaussian.count);
        for (int i = 0; i < gaussian.count; ++i) {
            const Complex want{gaussian.roots[i].re, gaussian.roots[i].im * AdjustableGaussStretch};
            EXPECT_LE(Distance(adjustable.roots[i], want), 1e-12 * ComplexAbs(want)) << i;
        }
    }
}

// With no ripple the formula's e would be 0 and asinh(1/e) infinite; the floor of 1e-5 keeps
// every pole finite, and the single pole of order one sits at -1/e.
TEST(FamilyRoots, ChebyshevWithoutRippleUsesTheSmallestEpsilon) {
    FamilyRoots one;
    ChebyshevPoles(1, 0.0, one);
    ASSERT_EQ(one.count, 1);
    EXPECT_NEAR(one.roots[0].re, -1e5, 1e-6);
    EXPECT_NEAR(one.roots[0].im, 0.0, 1e-6);
    for (int n = 2; n <= MaxPoles; ++n) {
        FamilyRoots out;
        ChebyshevPoles(n, 0.0, out);
        ASSERT_EQ(out.count, n);
        for (int i = 0; i < n; ++i) {
            EXPECT_TRUE(std::isfinite(out.roots[i].re) && std::isfinite(out.roots[i].im))
                << "N = " << n << ", pole " << i;
        }
    }
}

TEST(RootsOfPolynomial, RefusesADegreeAboveTheFindersLimit) {
    std::vector<double> coefficients(MaxRootFinderDegree + 2, 0.0);
    coefficients.front() = 1.0;
    coefficients.back() = -1.0;
    FamilyRoots out;
    out.count = 7;
    RootsOfPolynomial(coefficients, MaxRootFinderDegree + 1, out);
    EXPECT_EQ(out.count, 0);
}

TEST(RootsOfPolynomial, PassesOnTheFindersNoteWhenItFindsNothing) {
    const std::array<double, 4> coefficients{0.0, 1.0, 2.0, 3.0};
    FamilyRoots out;
    RootsOfPolynomial(coefficients, 3, out);
    EXPECT_EQ(out.count, 0);
    EXPECT_STREQ(out.note, LeadingZeroNote);
}

}  // namespace
}  // namespace nerivane
