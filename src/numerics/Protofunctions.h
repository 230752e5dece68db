// The response families: the poles of the normalised low-pass prototype of each family, in
// closed form (Butterworth, Chebyshev) or as the roots of the family's polynomial (Bessel,
// Gaussian, Adjustable Gauss, Papoulis). No corner normalisation happens here.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "numerics/Enumindex.h"
#include "numerics/Mathfunctions.h"

namespace nerivane {

inline constexpr int MaxPoles = 20;
inline constexpr int MaxSections = 20;
inline constexpr int MaxFamilyRoots = 2 * MaxPoles;
inline constexpr int MaxFamilyPolynomialSize = 2 * MaxPoles + 1;

// The F5 key also reaches 6, 7 and 8, which build no prototype.
enum class Response : std::int32_t {
    Butterworth = 0,
    Chebyshev = 1,
    Papoulis = 2,
    Bessel = 3,
    Gaussian = 4,
    AdjustableGauss = 5,
};

// The poles or roots a family delivers, in the order the builder or the root finder gives
// them, with the root finder's report note when it stopped early.
struct FamilyRoots {
    int count = 0;
    std::array<Complex, MaxFamilyRoots> roots{};
    const char* note = nullptr;
};

void ButterworthPoles(int n, FamilyRoots& out);
void ChebyshevPoles(int n, double rippleDb, FamilyRoots& out);
void BesselRoots(int n, FamilyRoots& out);
void GaussianRoots(int n, FamilyRoots& out);
void AdjustableGaussRoots(int n, double gamma, FamilyRoots& out);
void PapoulisRoots(int n, double rippleDb, FamilyRoots& out);

// The family polynomials, highest power first; each returns its degree.
int BesselPolynomial(int n, std::span<double, MaxFamilyPolynomialSize> coefficients);
int GaussianPolynomial(int n, std::span<double, MaxFamilyPolynomialSize> coefficients);
int AdjustableGaussPolynomial(int n, double gamma,
                              std::span<double, MaxFamilyPolynomialSize> coefficients);
int PapoulisPolynomial(int n, double rippleDb,
                       std::span<double, MaxFamilyPolynomialSize> coefficients);

// Roots of a family polynomial through the root finder: none when the degree exceeds the
// finder's limit or the finder found nothing.
void RootsOfPolynomial(std::span<const double> coefficients, int degree, FamilyRoots& out);

}  // namespace nerivane
