#include "circuit/Standardvalues.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

namespace nerivane {
namespace {

struct NearestCase {
    int percent;
    double x;
    double expected;
};

TEST(NearestStdValue, RoundsToTheSeriesOfTheClass) {
    // clang-format off
    const NearestCase cases[] = {
        {10, 9.9,   10.0},   // index 96
        {20, 9.6,   10.0},   // closer to 10 than to 6.8
        {10, 2.0,   1.8},    // 2.0 - 1.8 is a hair smaller than 2.2 - 2.0 in doubles
        {20, 1.25,  1.0},    // an exact tie goes to the smaller value
        {5,  4.75,  4.7},
        {1,  1.0124, 1.0},
        {1,  1.0126, 1.025},
        {2,  1.03,  1.05},   // 1.025 is not in the 2 % series
        {20, 0.0,   0.0},
        {20, -1e50, -1e50},
    };
    // clang-format on
    for (const NearestCase& c : cases) {
        const ToleranceClass* tolerance = ToleranceClassOf(c.percent);
        ASSERT_NE(tolerance, nullptr);
        EXPECT_EQ(NearestStdValue(tolerance->stride, c.x), c.expected) << c.percent << "% " << c.x;
    }
}

TEST(NearestStdValue, ScalesByRepeatedFactorsOfTen) {
    EXPECT_NEAR(NearestStdValue(8, 4.6e-9), 4.7e-9, 1e-24);
    EXPECT_NEAR(NearestStdValue(8, 46e3), 47e3, 1e-9);
    EXPECT_NEAR(NearestStdValue(8, 1e50) / 1e50, 1.0, 1e-15);
    EXPECT_NEAR(NearestStdValue(8, 1e12) / 1e12, 1.0, 1e-15);
    EXPECT_TRUE(std::isnan(NearestStdValue(8, NAN)));
    EXPECT_TRUE(std::isinf(NearestStdValue(8, INFINITY)));
}

TEST(StdValueGrid, StridesGiveTheNamedSeries) {
    const std::set<double> e6 = {1.0, 1.5, 2.2, 3.3, 4.7, 6.8, 10.0};
    const std::set<double> e12 = {1.0, 1.2, 1.5, 1.8, 2.2, 2.7, 3.3, 3.9, 4.7, 5.6, 6.8, 8.2, 10.0};
    std::set<double> stride16, stride8, stride4;
    for (int k = 0; k < StdValueGridSize; k += 16) stride16.insert(StdValueGrid[k]);
    for (int k = 0; k < StdValueGridSize; k += 8) stride8.insert(StdValueGrid[k]);
    for (int k = 0; k < StdValueGridSize; k += 4) stride4.insert(StdValueGrid[k]);
    EXPECT_EQ(stride16, e6);
    EXPECT_EQ(stride8, e12);
    EXPECT_EQ(stride4.size(), 25u);  // E24 and the 10 that closes the decade
    for (int k = 1; k < StdValueGridSize; ++k) EXPECT_GE(StdValueGrid[k], StdValueGrid[k - 1]);
}

// Property: the result is always a series member and no member is nearer.
TEST(NearestStdValue, NoSeriesMemberIsNearer) {
    for (const ToleranceClass& tolerance : ToleranceClasses) {
        for (double x = 1.0; x < 10.0; x += 0.0137) {
            const double nearest = NearestStdValue(tolerance.stride, x);
            for (int k = 0; k < StdValueGridSize; k += tolerance.stride)
                ASSERT_LE(std::fabs(x - nearest), std::fabs(x - StdValueGrid[k])) << x;
        }
    }
}

}  // namespace
}  // namespace nerivane
