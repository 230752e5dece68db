#include "circuit/Circuitanalysis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
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

// A tolerance run moves each part to one of 201 levels across its tolerance, every level
// drawn about equally often; open, wired and absent parts stay so. (The golden worst-case
// designs hold that a seed gives the same runs.)
TEST(Perturb, MovesEachPartOverEveryLevelOfItsToleranceAndKeepsMarkers) {
    const WorkingComponents parts{1e3, 2e3, OpenMarker, 0.0, 1e-9, AbsentMarker};
    ToleranceRandom random(7);
    std::vector<int> seen(201, 0);
    for (int i = 0; i < 20000; ++i) {
        const WorkingComponents moved = Perturb(parts, 0.05, 0.2, random);
        const double level = std::round((moved.R1 / parts.R1 - 1.0) / 0.0005);
        ASSERT_LE(std::abs(level), 100.0);
        ++seen[static_cast<int>(level) + 100];
        ASSERT_NEAR(moved.R2 / parts.R2, 1.0, 0.05 + 1e-12);
        ASSERT_NEAR(moved.C1 / parts.C1, 1.0, 0.2 + 1e-12);
        ASSERT_GT(moved.R3, 1e47);
        ASSERT_EQ(moved.R4, 0.0);
        ASSERT_LT(moved.C2, -1e47);
    }
    EXPECT_GT(*std::min_element(seen.begin(), seen.end()), 40);
}

// The plot draws each worst-case run from the hook; run 0 is the nominal circuit, and a
// single pass (a capacitor or the section being stepped) runs once without it.
TEST(Simulate, WorstCaseCallsTheHookForEveryRunAndRunZeroIsNominal) {
    SectionComponents parts{};
    parts.Store(0, {10e3, 10e3, OpenMarker, 0.0, 1e-9, 2e-9});
    ComponentSettings settings;
    std::array<double, 64> frequencies;
    for (int k = 0; k < 64; ++k) frequencies[k] = 100.0 * std::pow(1.1, k);
    std::array<Complex, 64> response, nominal;
    nominal.fill({1.0, 0.0});  // the section as designed, no tolerance drawn
    SimulateSection(0, parts.Section(0), settings.gainBandwidth, 0.0, frequencies, nominal);
    std::vector<std::pair<int, double>> runs;  // each run and its response at one frequency
    const auto simulate = [&](bool singlePass) {
        runs.clear();
        ToleranceRandom random(1);
        Simulate({0, 1, &parts, &settings, frequencies, singlePass}, response, random,
                 [&](int run) { runs.emplace_back(run, response[10].re); });
    };
    simulate(false);
    ASSERT_EQ(runs.size(), 1u);
    EXPECT_EQ(runs[0].second, nominal[10].re);

    settings.mode = ToleranceMode::WorstCase;
    settings.worstCaseRuns = 100;
    simulate(false);
    ASSERT_EQ(runs.size(), 100u);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(runs[i].first, i);
    EXPECT_EQ(runs[0].second, nominal[10].re);
    EXPECT_NE(runs[99].second, nominal[10].re);
    simulate(true);
    EXPECT_TRUE(runs.empty());
}

}  // namespace
}  // namespace nerivane
