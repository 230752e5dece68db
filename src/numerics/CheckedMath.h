// The math functions of the numeric code, checked: each detects the domain, singularity and
// range errors that the platform's library would only signal through errno, and hands them to
// the math-error handler, which supplies the value to go on with and logs the event.
// The fast path is one or two comparisons, so these are cheap enough for per-point loops.
#pragma once

#include <cmath>

#include "numerics/Matherrmain.h"

namespace nerivane {

inline double CheckedLog(double x) {
    if (x > 0.0 || std::isnan(x)) return std::log(x);
    return x < 0.0 ? ReportMathError(MathErrorType::Domain, "log", x, 0.0, std::log(x))
                   : ReportMathError(MathErrorType::Singularity, "log", x, 0.0, -HUGE_VAL);
}

inline double CheckedLog10(double x) {
    if (x > 0.0 || std::isnan(x)) return std::log10(x);
    return x < 0.0 ? ReportMathError(MathErrorType::Domain, "log10", x, 0.0, std::log10(x))
                   : ReportMathError(MathErrorType::Singularity, "log10", x, 0.0, -HUGE_VAL);
}

inline double CheckedSqrt(double x) {
    if (x >= 0.0 || std::isnan(x)) return std::sqrt(x);
    return ReportMathError(MathErrorType::Domain, "sqrt", x, 0.0, std::sqrt(x));
}

double CheckedPowSlow(double x, double y, double result);

inline double CheckedPow(double x, double y) {
    const double result = std::pow(x, y);
    // A finite, non-zero result needs no further look; zero and non-finite results may be
    // legitimate (pow(0, 2)) or errors, which the slow path tells apart.
    if (std::isfinite(result) && result != 0.0) return result;
    return CheckedPowSlow(x, y, result);
}

inline double CheckedAsin(double x) {
    if (x >= -1.0 && x <= 1.0) return std::asin(x);
    if (std::isnan(x)) return x;
    return ReportMathError(MathErrorType::Domain, "asin", x, 0.0, std::asin(x));
}

inline double CheckedAcos(double x) {
    if (x >= -1.0 && x <= 1.0) return std::acos(x);
    if (std::isnan(x)) return x;
    return ReportMathError(MathErrorType::Domain, "acos", x, 0.0, std::acos(x));
}

// atan2 of (0, 0) has no defined angle; the handler corrects it to 0.
inline double CheckedAtan2(double y, double x) {
    if (y != 0.0 || x != 0.0) return std::atan2(y, x);
    return ReportMathError(MathErrorType::Domain, "atan2", y, x, std::atan2(y, x));
}

// Only overflow is reported for the exponential family: an underflow to zero (or a
// subnormal) is the correct result there, and replacing it would corrupt decaying responses.
inline double CheckedExp(double x) {
    const double result = std::exp(x);
    if (std::isfinite(result) || !std::isfinite(x)) return result;
    return ReportMathError(MathErrorType::Overflow, "exp", x, 0.0, result);
}

inline double CheckedSinh(double x) {
    const double result = std::sinh(x);
    if (std::isfinite(result) || !std::isfinite(x)) return result;
    return ReportMathError(MathErrorType::Overflow, "sinh", x, 0.0, result);
}

inline double CheckedCosh(double x) {
    const double result = std::cosh(x);
    if (std::isfinite(result) || !std::isfinite(x)) return result;
    return ReportMathError(MathErrorType::Overflow, "cosh", x, 0.0, result);
}

}  // namespace nerivane
