// The small numeric kit shared by the prototype, simulation and display stages: a plain
// complex pair, magnitude, angle and decibel conversions with the program's guards against
// zero and overflow, factorials and clamps.
#pragma once

#include <cstdint>

#include "numerics/Message.h"

namespace nerivane {

struct Complex {
    double re = 0.0;
    double im = 0.0;
};

inline Complex operator+(Complex a, Complex b) {
    return {a.re + b.re, a.im + b.im};
}
inline Complex operator-(Complex a, Complex b) {
    return {a.re - b.re, a.im - b.im};
}
inline Complex operator*(Complex a, Complex b) {
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}
inline Complex operator*(Complex a, double b) {
    return {a.re * b, a.im * b};
}
inline Complex Conjugate(Complex a) {
    return {a.re, -a.im};
}

inline constexpr double Pi = 3.141592653589793;
inline constexpr double HalfPi = 1.5707963267948966;
inline constexpr double OneOverPi = 0.3183098861837907;

double ComplexAbs(double re, double im);
Complex ComplexSquare(double re, double im);
double ComplexToDb(double re, double im);
double RealToDb(double x);
double ComplexAngleDeg(double re, double im);
double SafeAtan2(double re, double im);
double Factorial(int n);
double ClampDouble(double lo, double x, double hi);
int ClampInt(int lo, int x, int hi);

// Rounds half away from zero; a value beyond 32 bits is held at the largest magnitude, and the
// first time in the process that happens, messages (when given) says so.
std::int32_t NearestInt(double x, Messages* messages = nullptr);
// Forgets that NearestInt has already reported an overflow; for tests only.
void ResetNearestIntOverflowReport();

inline double ComplexAbs(Complex z) {
    return ComplexAbs(z.re, z.im);
}
inline double ComplexAngleDeg(Complex z) {
    return ComplexAngleDeg(z.re, z.im);
}

}  // namespace nerivane
