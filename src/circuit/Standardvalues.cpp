#include "circuit/Standardvalues.h"

#include <cmath>

namespace nerivane {

// clang-format off
const std::array<double, StdValueGridSize> StdValueGrid = {
    1.0,   1.025, 1.05,  1.075, 1.1,   1.125, 1.15,  1.175, 1.2,   1.225, 1.25,  1.275,
    1.3,   1.35,  1.4,   1.45,  1.5,   1.525, 1.55,  1.575, 1.6,   1.65,  1.7,   1.75,
    1.8,   1.85,  1.9,   1.95,  2.0,   2.05,  2.1,   2.15,  2.2,   2.25,  2.3,   2.35,
    2.4,   2.475, 2.55,  2.625, 2.7,   2.775, 2.85,  2.925, 3.0,   3.075, 3.15,  3.225,
    3.3,   3.375, 3.45,  3.525, 3.6,   3.675, 3.75,  3.825, 3.9,   4.0,   4.1,   4.2,
    4.3,   4.4,   4.5,   4.6,   4.7,   4.8,   4.9,   5.0,   5.1,   5.225, 5.35,  5.475,
    5.6,   5.75,  5.9,   6.05,  6.2,   6.35,  6.5,   6.65,  6.8,   6.975, 7.15,  7.325,
    7.5,   7.675, 7.85,  8.025, 8.2,   8.425, 8.65,  8.875, 9.1,   9.325, 9.55,  9.775,
    10.0,  10.0,  10.0,  10.0,  10.0,  10.0,  10.0,  10.0,  10.0,  10.0,  10.0,  10.0,
    10.0,  10.0,
};
// clang-format on

const char* SeriesName(const ToleranceClass& toleranceClass) {
    switch (toleranceClass.stride) {
        case 16: return "E6";
        case 8: return "E12";
        case 4: return "E24";
        case 2: return "E24 halves";
        default: return "E24 quarters";
    }
}

const ToleranceClass* ToleranceClassOf(int percent) {
    for (const ToleranceClass& c : ToleranceClasses) {
        if (c.percent == percent) return &c;
    }
    return nullptr;
}

double NearestStdValue(int stride, double x) {
    // Zero, negative markers, NaN and infinity pass through: none has a nearest value.
    if (!(x > 0.0) || !std::isfinite(x)) return x;
    if (stride < 1) stride = 1;
    // Extended precision, one factor of ten at a time: the value a series returns for, say,
    // 4.7 nF is whatever this loop makes of it, and ties are decided on these digits.
    long double mantissa = x;
    long double scale = 1.0L;
    if (mantissa < 1.0L) {
        while (mantissa < 1.0L) {
            mantissa *= 10.0L;
            scale *= 0.1L;
        }
    } else {
        while (mantissa >= 10.0L) {
            mantissa *= 0.1L;
            scale *= 10.0L;
        }
    }
    long double bestDistance = 1000.0L;
    int best = 0;
    for (int k = 0; k < StdValueGridSize; k += stride) {
        const long double distance =
            mantissa > StdValueGrid[k] ? mantissa - StdValueGrid[k] : StdValueGrid[k] - mantissa;
        if (distance < bestDistance) {
            bestDistance = distance;
            best = k;
        }
    }
    return static_cast<double>(StdValueGrid[best] * scale);
}

}  // namespace nerivane
