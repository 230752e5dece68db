// The guards of the small math helpers: decibels of zero and of huge parts, angles of zero,
// and clamps whose limits cross.
#include "numerics/Mathfunctions.h"

#include <gtest/gtest.h>

#include <cmath>

namespace nerivane {
namespace {

struct DbCase {
    double re, im, expected;
};

TEST(Mathfunctions, ComplexToDbGuardsZeroAndClampsHugeParts) {
    // clang-format off
    const DbCase cases[] = {
        {0.0,    0.0,  -1000.0},
        {1e12,   0.0,  200.0},      // clamped to 1e10
        {-1e12,  1e12, 10.0 * std::log10(2e20)},
        {3.0,    4.0,  20.0 * std::log10(5.0)},
        {1e-200, 0.0,  -1000.0},    // squares underflow to an exact zero
    };
    // clang-format on
    for (const DbCase& c : cases)
        EXPECT_NEAR(ComplexToDb(c.re, c.im), c.expected, 1e-12) << c.re << " " << c.im;
}

TEST(Mathfunctions, RealToDbFloorsTinyValues) {
    EXPECT_EQ(RealToDb(1e-7), -120.0);
    EXPECT_EQ(RealToDb(0.0), -120.0);
    EXPECT_NEAR(RealToDb(1e-6), -120.0, 1e-12);
    EXPECT_NEAR(RealToDb(-10.0), 20.0, 1e-12);
}

TEST(Mathfunctions, AnglesInDegreesAndRadians) {
    EXPECT_DOUBLE_EQ(ComplexAngleDeg(-1.0, 0.0), 180.0);
    EXPECT_EQ(ComplexAngleDeg(0.0, 0.0), 0.0);
    EXPECT_DOUBLE_EQ(ComplexAngleDeg(0.0, -2.0), -90.0);
    EXPECT_EQ(SafeAtan2(0.0, 0.0), 0.0);
    EXPECT_DOUBLE_EQ(SafeAtan2(1.0, 1.0), M_PI / 4.0);
}

TEST(Mathfunctions, ClampsTestTheLowerBoundFirst) {
    EXPECT_EQ(ClampDouble(0.0, -1.0, 1.0), 0.0);
    EXPECT_EQ(ClampDouble(0.0, 2.0, 1.0), 1.0);
    EXPECT_EQ(ClampDouble(0.0, 0.5, 1.0), 0.5);
    EXPECT_EQ(ClampInt(1, 0, 20), 1);
    EXPECT_EQ(ClampInt(1, 25, 20), 20);
    // With hi below lo every x under lo gives lo and every other x gives hi.
    EXPECT_EQ(ClampInt(10, 3, 5), 10);
    EXPECT_EQ(ClampInt(10, 7, 5), 10);
    EXPECT_EQ(ClampInt(10, 12, 5), 5);
}

}  // namespace
}  // namespace nerivane
