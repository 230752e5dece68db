// The stored optimum-L rows against the polynomials rebuilt here from Legendre polynomials in
// exact rational arithmetic, and against the rows of tests/data/reference_roots.txt, which its
// generator builds the same way with Python's fractions. A single wrong digit in the table
// changes the Papoulis poles without any other test noticing.
#include "numerics/OptimumLTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <limits>
#include <map>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace nerivane {
namespace {

__extension__ typedef __int128 Int128;

constexpr int MaxOrder = 20;

Int128 CheckedMul(Int128 a, Int128 b) {
    Int128 result = 0;
    if (__builtin_mul_overflow(a, b, &result)) throw std::overflow_error("rational product");
    return result;
}

Int128 CheckedAdd(Int128 a, Int128 b) {
    Int128 result = 0;
    if (__builtin_add_overflow(a, b, &result)) throw std::overflow_error("rational sum");
    return result;
}

Int128 Magnitude(Int128 a) {
    return a < 0 ? -a : a;
}

Int128 Gcd(Int128 a, Int128 b) {
    a = Magnitude(a);
    b = Magnitude(b);
    while (b != 0) {
        const Int128 r = a % b;
        a = b;
        b = r;
    }
    return a;
}

// Always reduced, with a positive denominator, so equality is equality of the fields.
struct Rational {
    Int128 num = 0;
    Int128 den = 1;
};

Rational MakeRational(Int128 num, Int128 den) {
    if (den < 0) {
        num = -num;
        den = -den;
    }
    const Int128 g = Gcd(num, den);
    return g > 1 ? Rational{num / g, den / g} : Rational{num, den};
}

Rational operator+(Rational a, Rational b) {
    const Int128 g = Gcd(a.den, b.den);
    return MakeRational(CheckedAdd(CheckedMul(a.num, b.den / g), CheckedMul(b.num, a.den / g)),
                        CheckedMul(a.den / g, b.den));
}

Rational operator*(Rational a, Rational b) {
    const Int128 g1 = Gcd(a.num, b.den);
    const Int128 g2 = Gcd(b.num, a.den);
    return MakeRational(CheckedMul(a.num / g1, b.num / g2), CheckedMul(a.den / g2, b.den / g1));
}

Rational operator/(Rational a, Rational b) {
    if (b.num == 0) throw std::domain_error("rational division by zero");
    return a * MakeRational(b.den, b.num);
}

// Polynomials in x, lowest power first.
using Poly = std::vector<Rational>;

Poly Add(const Poly& a, const Poly& b) {
    Poly sum(std::max(a.size(), b.size()));
    for (std::size_t i = 0; i < sum.size(); ++i) {
        if (i < a.size()) sum[i] = sum[i] + a[i];
        if (i < b.size()) sum[i] = sum[i] + b[i];
    }
    return sum;
}

Poly Multiply(const Poly& a, const Poly& b) {
    Poly product(a.size() + b.size() - 1);
    for (std::size_t i = 0; i < a.size(); ++i) {
        for (std::size_t j = 0; j < b.size(); ++j) product[i + j] = product[i + j] + a[i] * b[j];
    }
    return product;
}

Poly Scale(const Poly& a, Rational c) {
    Poly scaled = a;
    for (Rational& x : scaled) x = x * c;
    return scaled;
}

Rational ValueAt(const Poly& a, Rational x) {
    Rational acc;
    for (auto it = a.rbegin(); it != a.rend(); ++it) acc = acc * x + *it;
    return acc;
}

// Legendre polynomials moved to [0, 1]: Q_i(x) = P_i(2x - 1), from Bonnet's recurrence
// (i + 1) Q_{i+1} = (2i + 1)(2x - 1) Q_i - i Q_{i-1}.
std::vector<Poly> ShiftedLegendre(int count) {
    const Poly twoXMinusOne{MakeRational(-1, 1), MakeRational(2, 1)};
    std::vector<Poly> q{{MakeRational(1, 1)}, twoXMinusOne};
    for (int i = 1; static_cast<int>(q.size()) < count; ++i) {
        q.push_back(Add(Scale(Multiply(twoXMinusOne, q[i]), MakeRational(2 * i + 1, i + 1)),
                        Scale(q[i - 1], MakeRational(-i, i + 1))));
    }
    return q;
}

// The optimum-L construction. With u = 2t - 1 the integral over u from -1 to 2x - 1 becomes
// one over t from 0 to x (the constant factor is lost in the final scaling):
//   odd n = 2k + 1:  integral of [sum_{i <= k} (2i + 1) Q_i(t)]^2
//   even n = 2k + 2: integral of t [sum over i <= k of k's parity of (2i + 1) Q_i(t)]^2
// scaled so that L_n(1) = 1. Returned highest power first, like the table.
std::vector<Rational> RebuildOptimumL(int n) {
    const std::vector<Poly> q = ShiftedLegendre(n + 1);
    const int k = n % 2 ? (n - 1) / 2 : (n - 2) / 2;
    const int first = n % 2 ? 0 : k % 2;
    const int step = n % 2 ? 1 : 2;
    Poly inner{Rational{}};
    for (int i = first; i <= k; i += step) {
        inner = Add(inner, Scale(q[i], MakeRational(2 * i + 1, 1)));
    }
    Poly integrand = Multiply(inner, inner);
    if (n % 2 == 0) integrand = Multiply(integrand, {Rational{}, MakeRational(1, 1)});
    Poly integral{Rational{}};
    for (std::size_t j = 0; j < integrand.size(); ++j) {
        integral.push_back(integrand[j] / MakeRational(static_cast<Int128>(j) + 1, 1));
    }
    const Rational atOne = ValueAt(integral, MakeRational(1, 1));
    std::vector<Rational> row;
    for (auto it = integral.rbegin(); it != integral.rend(); ++it) row.push_back(*it / atOne);
    return row;
}

bool IsInt64(Rational c) {
    return c.den == 1 && c.num >= std::numeric_limits<std::int64_t>::min() &&
           c.num <= std::numeric_limits<std::int64_t>::max();
}

std::vector<std::int64_t> Stored(int n) {
    const std::span<const std::int64_t> row = OptimumLCoefficients(n);
    return {row.begin(), row.end()};
}

TEST(OptimumLTable, EveryRowIsTheRebuiltPolynomial) {
    for (int n = 1; n <= MaxOrder; ++n) {
        SCOPED_TRACE("N = " + std::to_string(n));
        const std::vector<Rational> rebuilt = RebuildOptimumL(n);
        const std::vector<std::int64_t> stored = Stored(n);
        ASSERT_EQ(rebuilt.size(), static_cast<std::size_t>(n) + 1);
        ASSERT_EQ(stored.size(), rebuilt.size());
        for (std::size_t i = 0; i < rebuilt.size(); ++i) {
            ASSERT_TRUE(IsInt64(rebuilt[i])) << "coefficient " << i << " is no 64-bit integer";
            EXPECT_EQ(stored[i], static_cast<std::int64_t>(rebuilt[i].num)) << "coefficient " << i;
        }
    }
}

// The published first rows pin the construction itself: a rebuild that went wrong in the
// same way as the table would otherwise pass.
TEST(OptimumLTable, FirstRowsAreThePublishedOnes) {
    const std::map<int, std::vector<std::int64_t>> published{
        {1, {1, 0}},
        {2, {1, 0, 0}},
        {3, {3, -3, 1, 0}},
        {4, {6, -8, 3, 0, 0}},
        {5, {20, -40, 28, -8, 1, 0}},
    };
    for (const auto& [n, row] : published) {
        EXPECT_EQ(Stored(n), row) << "N = " << n;
        std::vector<std::int64_t> rebuilt;
        for (const Rational& c : RebuildOptimumL(n)) {
            ASSERT_TRUE(IsInt64(c)) << "N = " << n;
            rebuilt.push_back(static_cast<std::int64_t>(c.num));
        }
        EXPECT_EQ(rebuilt, row) << "N = " << n;
    }
}

TEST(OptimumLTable, EveryRowMatchesTheReferenceFile) {
    std::map<int, std::vector<std::int64_t>> rows;
    std::ifstream in(NERIVANE_TEST_DATA_DIR "/reference_roots.txt");
    std::string line;
    while (std::getline(in, line)) {
        std::istringstream fields(line);
        std::string kind;
        int n = 0;
        fields >> kind >> n;
        if (kind != "optL") continue;
        std::int64_t c = 0;
        while (fields >> c) rows[n].push_back(c);
    }
    ASSERT_EQ(rows.size(), static_cast<std::size_t>(MaxOrder));
    for (const auto& [n, row] : rows) EXPECT_EQ(Stored(n), row) << "N = " << n;
}

TEST(OptimumLTable, EveryRowIsZeroAtZeroAndOneAtOne) {
    for (int n = 1; n <= MaxOrder; ++n) {
        const std::vector<std::int64_t> row = Stored(n);
        ASSERT_EQ(row.size(), static_cast<std::size_t>(n) + 1) << "N = " << n;
        EXPECT_EQ(row.back(), 0) << "N = " << n;
        std::int64_t sum = 0;
        for (const std::int64_t c : row) sum += c;
        EXPECT_EQ(sum, 1) << "N = " << n;
    }
}

// L_n'(x) is a square (times x for even n), so it never goes below zero on [0, 1]. It touches
// zero at its double roots inside the interval, where the rounding of the alternating sum may
// push it a little below; that rounding is bounded by the sum of the terms' magnitudes.
TEST(OptimumLTable, EveryRowRisesMonotonicallyOnTheUnitInterval) {
    constexpr int GridSteps = 4000;
    constexpr long double Rounding = 64 * std::numeric_limits<long double>::epsilon();
    for (int n = 1; n <= MaxOrder; ++n) {
        const std::vector<std::int64_t> row = Stored(n);
        ASSERT_EQ(row.size(), static_cast<std::size_t>(n) + 1) << "N = " << n;
        for (int j = 0; j <= GridSteps; ++j) {
            const long double x = static_cast<long double>(j) / GridSteps;
            long double slope = 0;
            long double magnitude = 0;
            for (int i = 0; i < n; ++i) {
                const long double power = static_cast<long double>(n - i);
                slope = slope * x + power * static_cast<long double>(row[i]);
                magnitude = magnitude * x + power * std::fabs(static_cast<long double>(row[i]));
            }
            ASSERT_GE(slope, -Rounding * magnitude) << "N = " << n << ", x = " << x;
        }
    }
}

TEST(OptimumLTable, OrdersOutsideTheTableAreEmpty) {
    for (const int n : {-1, 0, MaxOrder + 1}) EXPECT_TRUE(OptimumLCoefficients(n).empty()) << n;
}

}  // namespace
}  // namespace nerivane
