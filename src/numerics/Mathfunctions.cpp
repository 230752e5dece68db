#include "numerics/Mathfunctions.h"

#include <cmath>

#include "numerics/CheckedMath.h"

namespace nerivane {

double ComplexAbs(double re, double im) {
    return CheckedSqrt(re * re + im * im);
}

Complex ComplexSquare(double re, double im) {
    return {re * re - im * im, 2.0 * re * im};
}

double ComplexToDb(double re, double im) {
    // Clamping keeps the squares finite: 1e10 squared twice still fits in a double.
    re = ClampDouble(-1e10, re, 1e10);
    im = ClampDouble(-1e10, im, 1e10);
    const double power = re * re + im * im;
    if (power == 0.0) return -1000.0;
    return 10.0 * CheckedLog10(power);
}

double RealToDb(double x) {
    const double power = x * x;
    if (power < 1e-12) return -120.0;
    return 10.0 * CheckedLog10(power);
}

double ComplexAngleDeg(double re, double im) {
    if (re == 0.0 && im == 0.0) return 0.0;
    return CheckedAtan2(im, re) * 180.0 * OneOverPi;
}

double SafeAtan2(double re, double im) {
    if (re == 0.0 && im == 0.0) return 0.0;
    return CheckedAtan2(im, re);
}

double Factorial(int n) {
    double product = 1.0;
    for (int k = 2; k <= n; ++k) product *= k;
    return product;
}

double ClampDouble(double lo, double x, double hi) {
    double result = x < lo ? lo : x;
    if (result > hi) result = hi;
    return result;
}

int ClampInt(int lo, int x, int hi) {
    if (lo > x) return lo;
    if (hi < x) return hi;
    return x;
}

namespace {

constexpr double Int32Limit = 2147483647.0;
bool nearestIntOverflowReported = false;

}  // namespace

std::int32_t NearestInt(double x, Messages* messages) {
    if (std::fabs(x) <= Int32Limit)
        return static_cast<std::int32_t>(x >= 0.0 ? std::floor(x + 0.5) : std::ceil(x - 0.5));
    if (messages != nullptr && !nearestIntOverflowReported) {
        nearestIntOverflowReported = true;
        messages->push_back(
            {"ERROR: Value out of range in NearestInt() UtilityFunctions", ProgramCaption});
    }
    // Symmetric limits: the most negative int has no positive counterpart.
    return x >= 0.0 ? 2147483647 : -2147483647;
}

void ResetNearestIntOverflowReport() {
    nearestIntOverflowReported = false;
}

}  // namespace nerivane
