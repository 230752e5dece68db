#include "circuit/Circuitanalysis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <vector>

namespace nerivane {
namespace {

TEST(OpenLoopGain, FlatBelowOneHundredHertzFallingAboveCappedAtOneHundredThousand) {
    // clang-format off
    const struct { double gbw, f, gain; } cases[] = {
        {1e8, 10.0,  1e5},  {1e8, 100.0, 1e5}, {1e8, 1e3, 1e5}, {1e8, 1e4, 1e4}, {1e8, 1e6, 100.0},
        {1e6, 50.0,  1e4},  {1e6, 100.0, 1e4}, {1e6, 200.0, 5e3}, {1e3, 1.0, 10.0},
    };
    // clang-format on
    for (const auto& c : cases) EXPECT_DOUBLE_EQ(OpenLoopGain(c.gbw, c.f), c.gain) << c.f;
}

TEST(ToleranceRandom, SameSeedSameDrawsAndEveryLevelReachable) {
    ToleranceRandom a(7), b(7), c(8);
    std::vector<int> seen(201, 0);
    bool differs = false;
    for (int i = 0; i < 20000; ++i) {
        const int x = a.Next();
        ASSERT_EQ(x, b.Next());
        differs = differs || x != c.Next();
        ASSERT_TRUE(x >= 0 && x <= 200) << x;
        ++seen[x];
    }
    EXPECT_TRUE(differs);
    for (int level = 0; level <= 200; ++level) EXPECT_GT(seen[level], 40) << level;
}

TEST(Perturb, MovesEachPartWithinItsToleranceAndKeepsMarkers) {
    const WorkingComponents parts{1e3, 2e3, OpenMarker, 0.0, 1e-9, AbsentMarker};
    ToleranceRandom random(3);
    double lowest = 2.0, highest = 0.0;
    for (int i = 0; i < 5000; ++i) {
        const WorkingComponents moved = Perturb(parts, 0.05, 0.2, random);
        lowest = std::min(lowest, moved.R1 / parts.R1);
        highest = std::max(highest, moved.R1 / parts.R1);
        ASSERT_NEAR(moved.R2 / parts.R2, 1.0, 0.05 + 1e-12);
        ASSERT_NEAR(moved.C1 / parts.C1, 1.0, 0.2 + 1e-12);
        ASSERT_GT(moved.R3, 1e47);   // an open part stays open
        ASSERT_EQ(moved.R4, 0.0);    // a wire stays a wire
        ASSERT_LT(moved.C2, -1e47);  // an absent part stays absent
    }
    EXPECT_DOUBLE_EQ(lowest, 0.95);
    EXPECT_DOUBLE_EQ(highest, 1.05);
}

// The plot draws each worst-case run from the hook; run 0 is the nominal circuit, and a
// single pass (a capacitor or the section being stepped) runs once without it.
TEST(Simulate, WorstCaseCallsTheHookForEveryRunAndRunZeroIsNominal) {
    SectionComponents parts{};
    parts.Store(0, {10e3, 10e3, OpenMarker, 0.0, 1e-9, 2e-9});
    parts.Store(1, {22e3, 4.7e3, OpenMarker, 0.0, 1e-9, 4.7e-9});
    ComponentSettings settings;
    std::array<double, 64> frequencies;
    for (int k = 0; k < 64; ++k) frequencies[k] = 100.0 * std::pow(1.1, k);
    std::array<Complex, 64> nominal, response;
    const auto simulate = [&](bool singlePass, const std::function<void(int)>& hook) {
        ToleranceRandom random(1);
        Simulate({0, 2, &parts, &settings, frequencies, singlePass}, response, random, hook);
    };
    std::vector<int> runs;
    simulate(false, [&](int run) { runs.push_back(run); });
    EXPECT_EQ(runs, std::vector<int>{0});
    nominal = response;

    settings.mode = ToleranceMode::WorstCase;
    settings.worstCaseRuns = 100;
    runs.clear();
    bool firstIsNominal = false;
    simulate(false, [&](int run) {
        runs.push_back(run);
        if (run == 0)
            firstIsNominal =
                std::equal(response.begin(), response.end(), nominal.begin(),
                           [](Complex a, Complex b) { return a.re == b.re && a.im == b.im; });
    });
    ASSERT_EQ(runs.size(), 100u);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(runs[i], i);
    EXPECT_TRUE(firstIsNominal);
    EXPECT_NE(response[10].re, nominal[10].re);  // the array holds the last, varied run

    runs.clear();
    simulate(true, [&](int run) { runs.push_back(run); });
    EXPECT_TRUE(runs.empty());
}

}  // namespace
}  // namespace nerivane
