#include "circuit/Dcbias.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace nerivane {
namespace {

using Field = std::optional<double> BiasInputs::*;
using B = BiasInputs;
using S = BiasSolution;
const std::optional<double> no;
const ToleranceClass& E12 = ToleranceClasses[1];

BiasSolution Solve(bool decoupled, const BiasInputs& inputs) {
    return decoupled ? SolveDecoupledDivider(inputs, E12) : SolveDivider(inputs, E12);
}

// Whatever was solved first, clearing other quantities and solving them from the answer
// must give the same circuit back.
TEST(Dcbias, EveryQuantitySolvesBackToTheSameCircuit) {
    // The plain divider has no capacitor: the last two stay empty for it.
    // clang-format off
    const std::pair<Field, double S::*> quantities[] = {
        {&B::supply, &S::supply}, {&B::upper, &S::upper}, {&B::lower, &S::lower},
        {&B::bias, &S::bias}, {&B::capacitance, &S::capacitance}, {&B::corner, &S::corner}};
    // clang-format on
    // clang-format off
    const struct { bool decoupled; BiasInputs given; std::vector<Field> solvedBack; } trips[] = {
        {false, {12.0, 20e3, 10e3, no, no, no},   {&B::supply}},
        {false, {12.0, 20e3, 10e3, no, no, no},   {&B::upper}},
        {false, {12.0, 20e3, 10e3, no, no, no},   {&B::lower}},
        {false, {5.0, no, 4.7e3, 1.65, no, no},   {&B::bias}},
        {false, {3.3e3, 1e6, no, 0.5, no, no},    {&B::supply}},
        {true,  {12.0, 100e3, no, 4.0, 1e-6, no}, {&B::capacitance}},
        {true,  {12.0, no, 47e3, 4.0, no, 10.0},  {&B::upper, &B::lower}},
        {true,  {9.0, no, no, 4.5, 100e-9, 1.59}, {&B::corner}},
        {true,  {3.3, 22e3, no, 1.2, 10e-6, no},  {&B::lower, &B::corner}},
        {true,  {15.0, no, no, 7.5, 2.2e-6, 0.5}, {&B::upper, &B::capacitance}},
    };
    // clang-format on
    for (const auto& trip : trips) {
        const BiasSolution first = Solve(trip.decoupled, trip.given);
        ASSERT_EQ(first.error, "");
        BiasInputs full;
        for (std::size_t i = 0; i < (trip.decoupled ? 6u : 4u); ++i)
            full.*quantities[i].first = first.*quantities[i].second;
        for (Field cleared : trip.solvedBack) full.*cleared = std::nullopt;
        const BiasSolution back = Solve(trip.decoupled, full);
        ASSERT_EQ(back.error, "");
        for (const auto value : {&S::supply, &S::upper, &S::lower, &S::bias, &S::capacitance,
                                 &S::corner, &S::current, &S::thevenin})
            EXPECT_NEAR(back.*value, first.*value, 1e-12 * first.*value);
    }
}

// The round trip cannot see a quantity computed wrongly the same way both times. 5 V to 1.2 V
// with R2 = 10k wants R1 = 31.67k: 33k in E12 gives 50/43 V; the 2 % series has 31.5k, giving
// 50/41.5 V. With R1 = R2 = 22k and 10 Hz, C = 1.447 uF rounds to 1.5 uF.
TEST(Dcbias, HandWorkedCircuitsAndTheirStandardParts) {
    const BiasSolution divider = SolveDivider({12.0, 20e3, 10e3, no, no, no}, E12);
    EXPECT_NEAR(divider.bias, 4.0, 1e-12);
    EXPECT_NEAR(divider.current, 0.4e-3, 1e-15);
    EXPECT_NEAR(divider.thevenin, 20e3 / 3.0, 1e-9);

    const BiasInputs inputs{5.0, no, 10e3, 1.2, no, no};
    const StandardBias e12 = SolveDivider(inputs, E12).standard;
    EXPECT_DOUBLE_EQ(e12.upper, 33e3);
    EXPECT_NEAR(e12.bias, 50.0 / 43.0, 1e-12);
    EXPECT_NEAR(e12.error, -1.6 / 43.0, 1e-12);
    EXPECT_NEAR(e12.errorPercent, -160.0 / 51.6, 1e-10);
    const StandardBias twoPercent = SolveDivider(inputs, *ToleranceClassOf(2)).standard;
    EXPECT_DOUBLE_EQ(twoPercent.upper, 31.5e3);
    EXPECT_NEAR(twoPercent.error, 50.0 / 41.5 - 1.2, 1e-12);

    const BiasSolution decoupled = SolveDecoupledDivider({12.0, 22e3, 22e3, 6.0, no, 10.0}, E12);
    // R1 || R2 = 11k; 1 / (2 pi 11k 10 Hz) = 1.447 uF.
    EXPECT_NEAR(decoupled.capacitance, 15.91549430918953e-6 / 11.0, 1e-18);
    EXPECT_DOUBLE_EQ(decoupled.standard.capacitance, 1.5e-6);
    EXPECT_NEAR(decoupled.standard.corner, 15.91549430918953 / 1.1 / 1.5, 1e-9);
    EXPECT_NEAR(decoupled.standard.error, 0.0, 1e-12);
}

TEST(Dcbias, BadInputsGiveAMessageAndNoInfinityOrNan) {
    // clang-format off
    const struct { bool decoupled; BiasInputs inputs; const char* mentions; } cases[] = {
        {false, {12.0, 0.0, 10e3, no, no, no},         "R1 must"},
        {false, {12.0, 1e3, no, NAN, no, no},          "Vb must"},
        {false, {12.0, 1e3, INFINITY, no, no, no},     "R2 must"},
        {false, {5.0, 1e3, no, 5.0, no, no},           "Vb must be less than Vs"},
        {false, {12.0, 1e3, 1e3, 6.0, no, no},         "Nothing left to solve"},
        {false, {12.0, 1e3, no, no, no, no},           "all but one"},
        {false, {no, 1e300, 1e-10, 1e200, no, no},     "Vs is out of range"},
        {false, {1.0, 1e300, 1e-300, no, no, no},      "Vb is out of range"},
        {false, {10.0, 1e308, 1e308, no, no, no},      "current is out of range"},
        {true,  {no, 1e3, no, 4.0, 1e-6, no},          "Vs and Vb"},
        {true,  {12.0, 1e3, no, 12.5, 1e-6, no},       "Vb must be less than Vs"},
        {true,  {12.0, 20e3, 20e3, 4.0, 1e-6, no},     "to 6 V, not Vb"},
        {true,  {12.0, 20e3, no, 4.0, 0.0, no},        "C must"},
        {true,  {12.0, 20e3, no, 4.0, 1e-6, 10.0},     "Nothing left to solve"},
        {true,  {12.0, no, no, 4.0, 1e-6, no},         "Give two"},
        {true,  {12.0, no, no, 4.0, 1e-300, 1e-300},   "R1 is out of range"},
        {true,  {12.0, 1e-300, no, 4.0, 1e-300, no},   "fc is out of range"},
    };
    // clang-format on
    for (const auto& c : cases) {
        const BiasSolution s = Solve(c.decoupled, c.inputs);
        EXPECT_NE(s.error.find(c.mentions), std::string::npos) << c.mentions << ": " << s.error;
        for (const double value :
             {s.supply, s.upper, s.lower, s.bias, s.capacitance, s.corner, s.current, s.thevenin,
              s.standard.bias, s.standard.error, s.standard.errorPercent, s.standard.corner})
            EXPECT_TRUE(std::isfinite(value)) << c.mentions;
    }
}

}  // namespace
}  // namespace nerivane
