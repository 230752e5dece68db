#include "circuit/Standardvalues.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

namespace nerivane {
namespace {

TEST(NearestStdValue, RoundsToTheSeriesOfTheClassInAnyDecade) {
    // clang-format off
    const struct { int percent; double x, expected; } cases[] = {
        {10, 9.9,    10.0},   // the top of the grid
        {20, 9.6,    10.0},   // closer to 10 than to 6.8
        {10, 2.0,    1.8},    // 2.0 - 1.8 is a hair smaller than 2.2 - 2.0 in doubles
        {20, 1.25,   1.0},    // an exact tie goes to the smaller value
        {1,  1.0124, 1.0},
        {1,  1.0126, 1.025},
        {2,  1.03,   1.05},   // 1.025 is not in the 2 % series
        {10, 4.6e-9, 4.7e-9},
        {10, 1e50,   1e50},
        {20, 0.0,    0.0},
        {20, -1e50,  -1e50},
        {10, NAN,    NAN},
        {10, INFINITY, INFINITY},
    };
    // clang-format on
    for (const auto& c : cases) {
        const double got = NearestStdValue(ToleranceClassOf(c.percent)->stride, c.x);
        EXPECT_TRUE(got == c.expected || (std::isnan(got) && std::isnan(c.expected)) ||
                    std::abs(got - c.expected) <= 1e-15 * std::abs(c.expected))
            << c.percent << "% " << c.x << " gave " << got;
    }
}

// Property: the result is always a series member and no member is nearer.
TEST(NearestStdValue, NoSeriesMemberIsNearer) {
    for (const ToleranceClass& tolerance : ToleranceClasses)
        for (double x = 1.0; x < 10.0; x += 0.0137) {
            const double nearest = NearestStdValue(tolerance.stride, x);
            for (int k = 0; k < StdValueGridSize; k += tolerance.stride)
                ASSERT_LE(std::fabs(x - nearest), std::fabs(x - StdValueGrid[k])) << x;
        }
}

// The published E6 and E12 series, and E24 with the 10 that closes the decade.
TEST(StdValueGrid, StridesGiveTheNamedSeries) {
    const auto series = [](int stride) {
        std::set<double> values;
        for (int k = 0; k < StdValueGridSize; k += stride) values.insert(StdValueGrid[k]);
        return values;
    };
    EXPECT_EQ(series(16), (std::set<double>{1.0, 1.5, 2.2, 3.3, 4.7, 6.8, 10.0}));
    EXPECT_EQ(series(8),
              (std::set<double>{1.0, 1.2, 1.5, 1.8, 2.2, 2.7, 3.3, 3.9, 4.7, 5.6, 6.8, 8.2, 10.0}));
    EXPECT_EQ(series(4).size(), 25u);
    for (int k = 1; k < StdValueGridSize; ++k) EXPECT_GE(StdValueGrid[k], StdValueGrid[k - 1]);
}

}  // namespace
}  // namespace nerivane
