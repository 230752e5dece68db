#include "numerics/Protofunctions.h"

#include <cmath>

#include "numerics/CheckedMath.h"
#include "numerics/OptimumLTable.h"
#include "numerics/Rootfinderfunctions.h"

namespace nerivane {
namespace {

// The pole angles shared by Butterworth and Chebyshev: t_k = (2k + 1) * (pi/2) / N.
double PoleAngle(int k, int n) {
    return (2 * k + 1) * HalfPi / n;
}

void Clear(std::span<double, MaxFamilyPolynomialSize> coefficients) {
    for (double& c : coefficients) c = 0.0;
}

}  // namespace

void ButterworthPoles(int n, FamilyRoots& out) {
    out.count = 0;
    out.note = nullptr;
    if (n < 1 || n > MaxPoles) return;
    for (int k = 0; k < n; ++k) {
        const double t = PoleAngle(k, n);
        out.roots[k] = {-std::sin(t), std::cos(t)};
    }
    out.count = n;
}

void ChebyshevPoles(int n, double rippleDb, FamilyRoots& out) {
    out.count = 0;
    out.note = nullptr;
    if (n < 1 || n > MaxPoles) return;
    // The clamp keeps asinh(1/e) finite at zero ripple and holds ripples above ~3 dB.
    const double e = ClampDouble(1e-5, CheckedSqrt(CheckedPow(10.0, 0.1 * rippleDb) - 1.0), 0.996);
    const double a = std::asinh(1.0 / e) / n;
    const double sinhA = CheckedSinh(a);
    const double coshA = CheckedCosh(a);
    for (int k = 0; k < n; ++k) {
        const double t = PoleAngle(k, n);
        out.roots[k] = {-sinhA * std::sin(t), coshA * std::cos(t)};
    }
    out.count = n;
}

int BesselPolynomial(int n, std::span<double, MaxFamilyPolynomialSize> coefficients) {
    Clear(coefficients);
    if (n < 1 || n > MaxPoles) return 0;
    // Reverse Bessel polynomial: the coefficient of s^i is (2N - i)! / (i! (N - i)! 2^(N - i)).
    for (int i = n; i >= 0; --i) {
        coefficients[n - i] =
            Factorial(2 * n - i) / (Factorial(i) * Factorial(n - i) * CheckedPow(2.0, n - i));
    }
    return n;
}

int GaussianPolynomial(int n, std::span<double, MaxFamilyPolynomialSize> coefficients) {
    Clear(coefficients);
    if (n < 1 || n > MaxPoles) return 0;
    // The series of exp(-s^2) truncated after s^(2N); odd powers are zero.
    for (int k = 0; k <= n; ++k) {
        const double sign = k % 2 == 0 ? 1.0 : -1.0;
        coefficients[2 * (n - k)] = sign / Factorial(k);
    }
    return 2 * n;
}

int AdjustableGaussPolynomial(int n, double gamma,
                              std::span<double, MaxFamilyPolynomialSize> coefficients) {
    Clear(coefficients);
    if (n < 1 || n > MaxPoles) return 0;
    const double g = gamma > 0.0 ? 2.0 * gamma : gamma;
    coefficients[2 * n] = 1.0;
    for (int k = 1; k <= n; ++k) {
        const double sign = k % 2 == 0 ? 1.0 : -1.0;
        coefficients[2 * (n - k)] = sign * CheckedPow(1.0 / Factorial(k), -g);
    }
    return 2 * n;
}

int PapoulisPolynomial(int n, double rippleDb,
                       std::span<double, MaxFamilyPolynomialSize> coefficients) {
    Clear(coefficients);
    const std::span<const std::int64_t> row = OptimumLCoefficients(n);
    if (row.empty()) return 0;
    // The factor 0.5 (not Chebyshev's 0.1) is part of this family's design.
    const double e =
        ClampDouble(0.001, CheckedSqrt(CheckedPow(10.0, 0.5 * rippleDb) - 1.0), 10000.0);
    // L_N(x) with x = -s^2: the coefficient of x^k moves to s^(2k) with the sign (-1)^k.
    for (int k = 0; k <= n; ++k) {
        const double sign = k % 2 == 0 ? 1.0 : -1.0;
        const double lCoefficient = static_cast<double>(row[n - k]);
        coefficients[2 * (n - k)] = e * sign * lCoefficient;
    }
    coefficients[2 * n] = 1.0;
    return 2 * n;
}

void RootsOfPolynomial(std::span<const double> coefficients, int degree, FamilyRoots& out) {
    out.count = 0;
    out.note = nullptr;
    if (degree > MaxRootFinderDegree || degree < 1) return;
    std::array<double, MaxRootFinderDegree> re{};
    std::array<double, MaxRootFinderDegree> im{};
    const RootFinderResult result = FindPolynomialRoots(coefficients, degree, re, im);
    out.note = result.note;
    const int delivered = result.count < MaxFamilyRoots ? result.count : MaxFamilyRoots;
    for (int i = 0; i < delivered; ++i) out.roots[i] = {re[i], im[i]};
    out.count = delivered > 0 ? delivered : 0;
}

void BesselRoots(int n, FamilyRoots& out) {
    std::array<double, MaxFamilyPolynomialSize> coefficients{};
    const int degree = BesselPolynomial(n, coefficients);
    RootsOfPolynomial(coefficients, degree, out);
}

void GaussianRoots(int n, FamilyRoots& out) {
    std::array<double, MaxFamilyPolynomialSize> coefficients{};
    const int degree = GaussianPolynomial(n, coefficients);
    RootsOfPolynomial(coefficients, degree, out);
}

void AdjustableGaussRoots(int n, double gamma, FamilyRoots& out) {
    std::array<double, MaxFamilyPolynomialSize> coefficients{};
    const int degree = AdjustableGaussPolynomial(n, gamma, coefficients);
    RootsOfPolynomial(coefficients, degree, out);
    // The stretch of the imaginary parts is deliberate, for every gamma.
    for (int i = 0; i < out.count; ++i) out.roots[i].im *= 1.1;
}

void PapoulisRoots(int n, double rippleDb, FamilyRoots& out) {
    std::array<double, MaxFamilyPolynomialSize> coefficients{};
    const int degree = PapoulisPolynomial(n, rippleDb, coefficients);
    RootsOfPolynomial(coefficients, degree, out);
}

}  // namespace nerivane
