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

// The E192 series in three digits: 10^(i/192) rounded, except 9.20 where the rounding gives
// 9.19, as the series is published. E96 is every second value, E48 every fourth.
// clang-format off
constexpr std::array<int, 192> E192Mantissas = {
    100, 101, 102, 104, 105, 106, 107, 109, 110, 111, 113, 114, 115, 117, 118, 120,
    121, 123, 124, 126, 127, 129, 130, 132, 133, 135, 137, 138, 140, 142, 143, 145,
    147, 149, 150, 152, 154, 156, 158, 160, 162, 164, 165, 167, 169, 172, 174, 176,
    178, 180, 182, 184, 187, 189, 191, 193, 196, 198, 200, 203, 205, 208, 210, 213,
    215, 218, 221, 223, 226, 229, 232, 234, 237, 240, 243, 246, 249, 252, 255, 258,
    261, 264, 267, 271, 274, 277, 280, 284, 287, 291, 294, 298, 301, 305, 309, 312,
    316, 320, 324, 328, 332, 336, 340, 344, 348, 352, 357, 361, 365, 370, 374, 379,
    383, 388, 392, 397, 402, 407, 412, 417, 422, 427, 432, 437, 442, 448, 453, 459,
    464, 470, 475, 481, 487, 493, 499, 505, 511, 517, 523, 530, 536, 542, 549, 556,
    562, 569, 576, 583, 590, 597, 604, 612, 619, 626, 634, 642, 649, 657, 665, 673,
    681, 690, 698, 706, 715, 723, 732, 741, 750, 759, 768, 777, 787, 796, 806, 816,
    825, 835, 845, 856, 866, 876, 887, 898, 909, 920, 931, 942, 953, 965, 976, 988,
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

namespace {

// Where x sits in the series of this stride: its mantissa and decade (in extended
// precision, one factor of ten at a time, so a value and its neighbours come out of the same
// digits) and the grid entries at or below and at or above the mantissa.
struct GridPosition {
    long double mantissa;
    long double scale;
    int below;
    int above;
    double Value(int k) const { return static_cast<double>(StdValueGrid[k] * scale); }
    // Ties go to the smaller value.
    int Nearest() const {
        return mantissa - StdValueGrid[below] <= StdValueGrid[above] - mantissa ? below : above;
    }
};

GridPosition PositionInGrid(int stride, double x) {
    if (stride < 1) stride = 1;
    GridPosition at{x, 1.0L, 0, 0};
    if (at.mantissa < 1.0L) {
        while (at.mantissa < 1.0L) {
            at.mantissa *= 10.0L;
            at.scale *= 0.1L;
        }
    } else {
        while (at.mantissa >= 10.0L) {
            at.mantissa *= 0.1L;
            at.scale *= 10.0L;
        }
    }
    // The grid starts at 1 and every stride reaches its first 10, so both ends exist.
    for (int k = 0; k < StdValueGridSize && StdValueGrid[k] <= at.mantissa; k += stride)
        at.below = k;
    at.above = StdValueGrid[at.below] == at.mantissa ? at.below : at.below + stride;
    return at;
}

}  // namespace

double NearestStdValue(int stride, double x) {
    // Zero, negative markers, NaN and infinity pass through: none has a nearest value.
    if (!(x > 0.0) || !std::isfinite(x)) return x;
    const GridPosition at = PositionInGrid(stride, x);
    return at.Value(at.Nearest());
}

StdNeighbours StdValueNeighbours(int stride, double x) {
    if (!(x > 0.0) || !std::isfinite(x)) return {x, x};
    const GridPosition at = PositionInGrid(stride, x);
    return {at.Value(at.below), at.Value(at.above)};
}

int DecadeSeriesStride(ResistorSeries series) {
    switch (series) {
        case ResistorSeries::E48: return 4;
        case ResistorSeries::E96: return 2;
        default: return 1;
    }
}

const char* DecadeSeriesName(ResistorSeries series) {
    switch (series) {
        case ResistorSeries::E48: return "E48";
        case ResistorSeries::E96: return "E96";
        case ResistorSeries::E192: return "E192";
        default: return "";
    }
}

namespace {

// Where x sits in a decade series: its decade, and the mantissas (100 .. 988, and the next
// decade's 1000) at or below and at or above its own, nearest in ratio.
struct DecadePosition {
    int shift;  // x = mantissa * 10^shift
    double mantissa;
    double below;
    double above;
    // Exact decimal values: an integer times, or divided by, a power of ten, so the value
    // is the double that its three printed digits read back as.
    double Value(double m) const {
        const double power = std::pow(10.0, std::abs(shift));
        return shift >= 0 ? m * power : m / power;
    }
    // Ties go to the smaller value.
    double Nearest() const {
        return std::fabs(std::log(mantissa / below)) <= std::fabs(std::log(mantissa / above))
                   ? below
                   : above;
    }
};

DecadePosition PositionInDecadeSeries(ResistorSeries series, double x) {
    const int stride = DecadeSeriesStride(series);
    DecadePosition at{};
    at.shift = static_cast<int>(std::floor(std::log10(x))) - 2;
    at.mantissa = x / std::pow(10.0, at.shift);
    // A mantissa the logarithm's rounding left a hair outside 100 .. 1000 has that end as
    // both neighbours.
    at.below = 100.0, at.above = 1000.0;
    for (int k = 0; k <= 192; k += stride) {
        const double candidate = k == 192 ? 1000.0 : E192Mantissas[k];
        if (candidate <= at.mantissa) at.below = candidate;
        if (candidate >= at.mantissa) {
            at.above = candidate;
            break;
        }
    }
    return at;
}

}  // namespace

double NearestDecadeSeriesValue(ResistorSeries series, double x) {
    if (!(x > 0.0) || !std::isfinite(x)) return x;
    const DecadePosition at = PositionInDecadeSeries(series, x);
    return at.Value(at.Nearest());
}

StdNeighbours DecadeSeriesNeighbours(ResistorSeries series, double x) {
    if (!(x > 0.0) || !std::isfinite(x)) return {x, x};
    const DecadePosition at = PositionInDecadeSeries(series, x);
    return {at.Value(at.below), at.Value(at.above)};
}

bool IsDecadeSeriesValue(ResistorSeries series, double x) {
    return x > 0.0 && NearestDecadeSeriesValue(series, x) == x;
}

}  // namespace nerivane
