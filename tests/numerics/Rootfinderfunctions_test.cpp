#include "numerics/Rootfinderfunctions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <random>
#include <vector>

#include "numerics/Protofunctions.h"

namespace nerivane {
namespace {

using Roots = std::vector<std::complex<double>>;

struct Found {
    RootFinderResult result;
    Roots roots;
};

Found Solve(const std::vector<double>& coefficients) {
    const int degree = static_cast<int>(coefficients.size()) - 1;
    std::vector<double> re(degree > 0 ? degree : 1), im(degree > 0 ? degree : 1);
    Found found;
    found.result = FindPolynomialRoots(coefficients, degree, re, im);
    for (int i = 0; i < found.result.count; ++i) found.roots.emplace_back(re[i], im[i]);
    return found;
}

// The monic polynomial with the given roots, highest power first.
std::vector<double> FromRoots(const Roots& roots) {
    std::vector<std::complex<double>> poly{1.0};
    for (const auto& r : roots) {
        std::vector<std::complex<double>> next(poly.size() + 1, 0.0);
        for (std::size_t i = 0; i < poly.size(); ++i) {
            next[i] += poly[i];
            next[i + 1] -= poly[i] * r;
        }
        poly = next;
    }
    std::vector<double> real;
    for (const auto& c : poly) real.push_back(c.real());
    return real;
}

// Greatest distance from an expected root to the nearest unmatched found root, relative to
// the expected root's modulus (or absolute for roots at zero).
double WorstRelativeMiss(const Roots& expected, Roots found) {
    double worst = 0.0;
    for (const auto& e : expected) {
        auto nearest = std::min_element(found.begin(), found.end(), [&](auto a, auto b) {
            return std::abs(a - e) < std::abs(b - e);
        });
        if (nearest == found.end()) return INFINITY;
        const double scale = std::abs(e) > 0.0 ? std::abs(e) : 1.0;
        worst = std::max(worst, std::abs(*nearest - e) / scale);
        found.erase(nearest);
    }
    return worst;
}

TEST(RootFinder, ZeroLeadingCoefficientGivesNoRootsAndTheNote) {
    const Found found = Solve({0.0, 1.0, 2.0});
    EXPECT_EQ(found.result.count, 0);
    ASSERT_NE(found.result.note, nullptr);
    EXPECT_STREQ(found.result.note, "Stopped because the leading coefficient is zero. ");
}

TEST(RootFinder, ZeroConstantTermsAreDeliveredAsZeroRoots) {
    const Found cube = Solve({1.0, 0.0, 0.0, 0.0});
    ASSERT_EQ(cube.result.count, 3);
    EXPECT_EQ(cube.result.note, nullptr);
    for (const auto& r : cube.roots) EXPECT_EQ(r, std::complex<double>(0.0, 0.0));

    // s^2 (s + 2): two zeros then the remaining linear factor.
    const Found mixed = Solve({1.0, 2.0, 0.0, 0.0});
    ASSERT_EQ(mixed.result.count, 3);
    EXPECT_LT(WorstRelativeMiss({{0, 0}, {0, 0}, {-2, 0}}, mixed.roots), 1e-15);
}

TEST(RootFinder, ThirdOrderBesselPolynomial) {
    const Found found = Solve({1.0, 6.0, 15.0, 15.0});
    ASSERT_EQ(found.result.count, 3);
    // Reference values of the reverse Bessel polynomial's roots to 12 digits.
    const Roots expected = {{-2.32218535462609, 0.0},
                            {-1.83890732268696, 1.75438095978372},
                            {-1.83890732268696, -1.75438095978372}};
    EXPECT_LT(WorstRelativeMiss(expected, found.roots), 1e-12);
}

TEST(RootFinder, ConjugatePairsComeInAdjacentPositions) {
    const Roots expected = {{-1, 2}, {-1, -2}, {-0.5, 0}, {-3, 0.25}, {-3, -0.25}, {-7, 0}};
    const Found found = Solve(FromRoots(expected));
    ASSERT_EQ(found.result.count, 6);
    for (int i = 0; i < 6; ++i) {
        if (found.roots[i].imag() > 0.0) {
            ASSERT_LT(i + 1, 6);
            EXPECT_DOUBLE_EQ(found.roots[i + 1].imag(), -found.roots[i].imag());
            EXPECT_DOUBLE_EQ(found.roots[i + 1].real(), found.roots[i].real());
            ++i;
        } else {
            EXPECT_EQ(found.roots[i].imag(), 0.0);
        }
    }
    EXPECT_LT(WorstRelativeMiss(expected, found.roots), 1e-12);
}

// Roots twenty decades apart: the coefficients span 1e-10 to 1e10 and the scaling step must
// keep both ends.
TEST(RootFinder, CoefficientsOverAWideRange) {
    const Roots expected = {{-1e-10, 0}, {-1e10, 0}, {-1, 1}, {-1, -1}};
    const Found found = Solve(FromRoots(expected));
    ASSERT_EQ(found.result.count, 4);
    EXPECT_LT(WorstRelativeMiss(expected, found.roots), 1e-9);

    // Tiny coefficients all round, which the power-of-two scaling lifts out of underflow.
    std::vector<double> tiny = FromRoots({{-2, 0}, {-3, 1}, {-3, -1}});
    for (double& c : tiny) c *= 1e-300;
    const Found scaled = Solve(tiny);
    ASSERT_EQ(scaled.result.count, 3);
    EXPECT_LT(WorstRelativeMiss({{-2, 0}, {-3, 1}, {-3, -1}}, scaled.roots), 1e-12);
}

// z^100 - 1: every root has the same modulus, so no order of extraction keeps the deflation
// exact and the later roots lose digits (about 1e-5 here, though each root's condition number
// is 0.02). All hundred must still be delivered, each near a distinct root of unity.
TEST(RootFinder, DegreeOneHundredIsSolved) {
    std::vector<double> coefficients(101, 0.0);
    coefficients[0] = 1.0;
    coefficients[100] = -1.0;
    const Found found = Solve(coefficients);
    ASSERT_EQ(found.result.count, 100);
    EXPECT_EQ(found.result.note, nullptr);
    Roots expected;
    for (int k = 0; k < 100; ++k) expected.push_back(std::polar(1.0, 2.0 * M_PI * k / 100.0));
    EXPECT_LT(WorstRelativeMiss(expected, found.roots), 1e-4);
}

TEST(RootFinder, FamilyPolynomialsAboveDegreeOneHundredGiveNoRoots) {
    std::vector<double> coefficients(102, 1.0);
    FamilyRoots roots;
    RootsOfPolynomial(coefficients, 101, roots);
    EXPECT_EQ(roots.count, 0);
}

TEST(RootFinder, NonFiniteCoefficientsStopWithTheNoConvergenceNote) {
    const Found found = Solve({1.0, NAN, 2.0, 1.0});
    EXPECT_EQ(found.result.count, 0);
    ASSERT_NE(found.result.note, nullptr);
    EXPECT_STREQ(found.result.note, "Failed because of no convergence after 20 shifts.");
}

// Relative condition number of root r of p: how much a relative change of the coefficients
// moves the root, relative to its modulus.
double ConditionNumber(const std::vector<double>& p, std::complex<double> r) {
    const int n = static_cast<int>(p.size()) - 1;
    double size = 0.0;
    std::complex<double> slope = 0.0;
    for (int i = 0; i <= n; ++i) {
        size += std::fabs(p[i]) * std::pow(std::abs(r), n - i);
        if (i < n) slope += static_cast<double>(n - i) * p[i] * std::pow(r, n - i - 1);
    }
    return size / (std::abs(r) * std::abs(slope));
}

// Property: random roots of every degree up to 40 (the largest the prototype families
// produce) come back to 1e-9 relative, or within 64 times condition number times epsilon for
// the ill-conditioned ones.
TEST(RootFinder, RandomPolynomialsRoundTripThroughTheirRoots) {
    constexpr double Bound = 64.0 * 2.220446049250313e-16;
    std::mt19937 generator(12345);
    std::uniform_real_distribution<double> angle(0.55 * M_PI, 1.45 * M_PI);
    for (int degree = 1; degree <= 40; ++degree) {
        Roots expected;
        double modulus = 0.3;
        while (static_cast<int>(expected.size()) + 2 <= degree) {
            const std::complex<double> r = std::polar(modulus, angle(generator));
            expected.push_back(r);
            expected.push_back(std::conj(r));
            modulus *= 1.2;
        }
        if (static_cast<int>(expected.size()) < degree) expected.emplace_back(-modulus, 0);
        const std::vector<double> coefficients = FromRoots(expected);
        const Found found = Solve(coefficients);
        ASSERT_EQ(found.result.count, degree) << "degree " << degree;
        for (const auto& root : expected) {
            const double tolerance = std::max(1e-9, Bound * ConditionNumber(coefficients, root));
            EXPECT_LT(WorstRelativeMiss({root}, found.roots), tolerance)
                << "degree " << degree << " root " << root;
        }
    }
}

// Property: whatever the coefficients (random signs, magnitudes from 1e-300 to 1e300, zeros,
// any degree up to the limit) the finder returns, never delivers more roots than the degree,
// and delivers only finite values.
TEST(RootFinder, ArbitraryCoefficientsNeverHangOrOverrun) {
    std::mt19937 generator(2024);
    std::uniform_int_distribution<int> degreeOf(1, MaxRootFinderDegree);
    std::uniform_real_distribution<double> exponent(-300.0, 300.0);
    std::uniform_int_distribution<int> kind(0, 9);
    for (int trial = 0; trial < 300; ++trial) {
        const int degree = degreeOf(generator);
        std::vector<double> coefficients(degree + 1);
        for (double& c : coefficients) {
            const int k = kind(generator);
            c = k == 0 ? 0.0 : (k % 2 ? 1.0 : -1.0) * std::pow(10.0, exponent(generator));
        }
        const Found found = Solve(coefficients);
        ASSERT_LE(found.result.count, degree);
        ASSERT_GE(found.result.count, 0);
        for (const auto& r : found.roots) {
            ASSERT_TRUE(std::isfinite(r.real()) && std::isfinite(r.imag())) << trial;
        }
    }
}

}  // namespace
}  // namespace nerivane
