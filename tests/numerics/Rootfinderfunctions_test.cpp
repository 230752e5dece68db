// The root finder on polynomials multiplied out from known roots, on coefficients it must
// refuse and on arbitrary ones. Its real inputs, the family polynomials up to degree 40, are
// checked against 60-digit roots in Protofunctions_test.cpp.
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

// The roots found, checked for what every answer must be: no more roots than the degree, all
// finite, real ones exactly real and each complex one followed by its exact conjugate.
Roots Solve(const std::vector<double>& coefficients, RootFinderResult& result) {
    const int degree = static_cast<int>(coefficients.size()) - 1;
    std::vector<double> re(degree), im(degree);
    result = FindPolynomialRoots(coefficients, degree, re, im);
    EXPECT_TRUE(result.count >= 0 && result.count <= degree) << result.count;
    Roots roots;
    bool conjugateDue = false;
    for (int i = 0; i < result.count; ++i) {
        roots.emplace_back(re[i], im[i]);
        EXPECT_TRUE(std::isfinite(re[i]) && std::isfinite(im[i])) << "root " << i;
        EXPECT_TRUE(conjugateDue ? roots[i] == std::conj(roots[i - 1]) : im[i] >= 0.0)
            << "root " << i << " breaks the pairing";
        conjugateDue = !conjugateDue && im[i] != 0.0;
    }
    EXPECT_FALSE(conjugateDue) << "the last root has no conjugate";
    return roots;
}

// The polynomial with the given roots, highest power first, leading coefficient scale.
std::vector<double> FromRoots(const Roots& roots, double scale = 1.0) {
    std::vector<std::complex<double>> poly{scale};
    for (const auto& r : roots) {
        poly.push_back(0.0);
        for (std::size_t i = poly.size() - 1; i > 0; --i) poly[i] -= poly[i - 1] * r;
    }
    std::vector<double> real;
    for (const auto& c : poly) real.push_back(c.real());
    return real;
}

// The family wrapper refuses degrees above the finder's limit itself and passes its note on.
TEST(RootFinder, RefusesLeadingZerosNonFiniteCoefficientsAndFamilyDegreesAboveItsLimit) {
    const struct {
        std::vector<double> coefficients;
        const char* note;
    } cases[] = {
        {{0.0, 1.0, 2.0}, LeadingZeroNote},
        {{1.0, NAN, 2.0, 1.0}, NoConvergenceNote},
        {{1.0, 2.0, INFINITY}, NoConvergenceNote},
    };
    for (const auto& c : cases) {
        RootFinderResult result;
        Solve(c.coefficients, result);
        EXPECT_EQ(result.count, 0);
        EXPECT_STREQ(result.note, c.note);
    }
    FamilyRoots out;
    out.count = 7;
    RootsOfPolynomial(std::vector<double>(MaxRootFinderDegree + 2, 1.0), MaxRootFinderDegree + 1,
                      out);
    EXPECT_EQ(out.count, 0);
    RootsOfPolynomial(std::array{0.0, 1.0, 2.0, 3.0}, 3, out);
    EXPECT_EQ(out.count, 0);
    EXPECT_STREQ(out.note, LeadingZeroNote);
}

// Zero roots are taken off exactly before any search. Roots twenty decades apart give
// coefficients from 1e-10 to 1e10, and coefficients near 1e-300 need the power-of-two scaling
// to stay out of underflow. The roots of z^100 - 1 share one modulus, so no order of extraction
// keeps the deflation exact and the later ones lose digits (about 1e-5, though each root's
// condition number is 0.02); all hundred must still be delivered.
TEST(RootFinder, FindsZeroWideRangeUnderflowingAndEqualModulusRoots) {
    std::vector<double> unity(MaxRootFinderDegree + 1, 0.0);
    unity.front() = 1.0;
    unity.back() = -1.0;
    Roots unityRoots;
    for (int k = 0; k < MaxRootFinderDegree; ++k)
        unityRoots.push_back(std::polar(1.0, 2.0 * M_PI * k / MaxRootFinderDegree));
    const Roots spread = {{-1, 2}, {-1, -2}, {-0.5, 0}, {-3, 0.25}, {-3, -0.25}, {-7, 0}};
    const Roots wide = {{-1e-10, 0}, {-1e10, 0}, {-1, 1}, {-1, -1}};
    const Roots tiny = {{-2, 0}, {-3, 1}, {-3, -1}};
    const struct {
        std::vector<double> coefficients;
        Roots roots;
        double tolerance;
    } cases[] = {
        {{1, 0, 0, 0}, {0, 0, 0}, 0.0},         {{1, 2, 0, 0}, {0, 0, -2}, 1e-15},
        {FromRoots(spread), spread, 1e-12},     {FromRoots(wide), wide, 1e-9},
        {FromRoots(tiny, 1e-300), tiny, 1e-12}, {unity, unityRoots, 1e-4},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE("degree " + std::to_string(c.roots.size()));
        RootFinderResult result;
        Roots found = Solve(c.coefficients, result);
        ASSERT_EQ(result.count, static_cast<int>(c.roots.size()));
        EXPECT_EQ(result.note, nullptr);
        // Each expected root takes the nearest found root not yet taken; the miss is relative
        // to the root's modulus, absolute at zero.
        for (const auto& root : c.roots) {
            const auto nearest = std::min_element(found.begin(), found.end(), [&](auto a, auto b) {
                return std::abs(a - root) < std::abs(b - root);
            });
            EXPECT_LE(std::abs(*nearest - root), c.tolerance * (root != 0.0 ? std::abs(root) : 1.0))
                << root;
            found.erase(nearest);
        }
    }
}

// Whatever the coefficients (random signs, magnitudes from 1e-300 to 1e300, zeros, any degree
// up to the limit) the finder returns, and what it delivers passes Solve's checks.
TEST(RootFinder, ArbitraryCoefficientsNeverHangOrOverrun) {
    std::mt19937 generator(2024);
    std::uniform_int_distribution<int> degreeOf(1, MaxRootFinderDegree);
    std::uniform_real_distribution<double> exponent(-300.0, 300.0);
    std::uniform_int_distribution<int> kind(0, 9);
    for (int trial = 0; trial < 300; ++trial) {
        SCOPED_TRACE(trial);
        std::vector<double> coefficients(degreeOf(generator) + 1);
        for (double& c : coefficients) {
            const int k = kind(generator);
            c = k == 0 ? 0.0 : (k % 2 ? 1.0 : -1.0) * std::pow(10.0, exponent(generator));
        }
        RootFinderResult result;
        Solve(coefficients, result);
    }
}

}  // namespace
}  // namespace nerivane
