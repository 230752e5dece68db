// Standard component values: one grid of mantissas (the E24 series with three interpolated
// points between neighbours) from which every series is taken by a stride, and the rounding
// of any value to the nearest member of a series.
#pragma once

#include <array>

#include "circuit/Buildoptions.h"

namespace nerivane {

inline constexpr int StdValueGridSize = 110;
extern const std::array<double, StdValueGridSize> StdValueGrid;

// A tolerance class: the fraction a part may deviate and the stride through the grid that
// gives its series (20 % -> E6, 10 % -> E12, 5 % -> E24, 2 % and 1 % -> the interpolated grid).
struct ToleranceClass {
    int percent;
    double fraction;
    int stride;
};

inline constexpr std::array<ToleranceClass, 5> ToleranceClasses = {{
    {20, 0.2, 16},
    {10, 0.1, 8},
    {5, 0.05, 4},
    {2, 0.02, 2},
    {1, 0.01, 1},
}};

// The series' name: "E6", "E12", "E24", and for 2 % and 1 % the E24 series with one or
// three interpolated values between neighbours, "E24 halves" and "E24 quarters".
const char* SeriesName(const ToleranceClass& toleranceClass);

// The class of a percentage (1, 2, 5, 10 or 20), or nullptr.
const ToleranceClass* ToleranceClassOf(int percent);

// x rounded to the nearest value of the series with this stride; 0 and negative values (and
// so the absent-part marker) come back unchanged. Ties go to the smaller value.
double NearestStdValue(int stride, double x);

// The series' values next to x: below <= x <= above, both x when it is one. The nearest
// value is always one of the two. Values without a nearest one come back as both.
struct StdNeighbours {
    double below;
    double above;
};
StdNeighbours StdValueNeighbours(int stride, double x);

// The decade series E48, E96 and E192, as resistors are stocked: the value nearest x in ratio,
// exactly the decimal number its three digits print (1.02 kΩ is 1020.0). Markers, zero, NaN
// and infinity pass through.
double NearestDecadeSeriesValue(ResistorSeries series, double x);
bool IsDecadeSeriesValue(ResistorSeries series, double x);
StdNeighbours DecadeSeriesNeighbours(ResistorSeries series, double x);
// "E48", "E96", "E192"; empty for the tolerance class's own series.
const char* DecadeSeriesName(ResistorSeries series);

}  // namespace nerivane
