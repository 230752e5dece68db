#include "circuit/Circuitanalysis.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

#include "circuit/Sectionresponses.h"

namespace nerivane {
namespace {

constexpr double TwoPiForTest = 6.283185307179586;

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
        ASSERT_GE(x, 0);
        ASSERT_LE(x, 200);
        ++seen[x];
    }
    EXPECT_TRUE(differs);
    for (int level = 0; level <= 200; ++level) EXPECT_GT(seen[level], 40) << level;
}

TEST(Perturb, MovesEachPartWithinItsTolerance) {
    const WorkingComponents parts{1e3, 2e3, OpenMarker, 0.0, 1e-9, AbsentMarker};
    ToleranceRandom random(3);
    double lowest = 2.0, highest = 0.0;
    for (int i = 0; i < 5000; ++i) {
        const WorkingComponents moved = Perturb(parts, 0.05, 0.2, random);
        const double r = moved.R1 / parts.R1;
        lowest = std::min(lowest, r);
        highest = std::max(highest, r);
        ASSERT_GE(moved.R2 / parts.R2, 0.95 - 1e-12);
        ASSERT_LE(moved.R2 / parts.R2, 1.05 + 1e-12);
        ASSERT_GE(moved.C1 / parts.C1, 0.8 - 1e-12);
        ASSERT_LE(moved.C1 / parts.C1, 1.2 + 1e-12);
        ASSERT_GT(moved.R3, 1e47);   // an open part stays open
        ASSERT_EQ(moved.R4, 0.0);    // a wire stays a wire
        ASSERT_LT(moved.C2, -1e47);  // an absent part stays absent
    }
    EXPECT_DOUBLE_EQ(lowest, 0.95);
    EXPECT_DOUBLE_EQ(highest, 1.05);
}

struct Fixture {
    SectionComponents parts{};
    ComponentSettings settings;
    std::array<double, 64> frequencies{};
    std::array<Complex, 64> response{};

    Fixture() {
        for (int k = 0; k < 64; ++k) frequencies[k] = 100.0 * std::pow(1.1, k);
        parts.Store(0, {10e3, 10e3, OpenMarker, 0.0, 1e-9, 2e-9});
        parts.Store(1, {22e3, 4.7e3, OpenMarker, 0.0, 1e-9, 4.7e-9});
    }
    SimulationInputs Inputs(bool singlePass = false) {
        SimulationInputs inputs;
        inputs.topology = 0;
        inputs.numSections = 2;
        inputs.parts = &parts;
        inputs.settings = &settings;
        inputs.frequencies = frequencies;
        inputs.singlePass = singlePass;
        return inputs;
    }
};

TEST(Simulate, WorstCaseCallsTheHookForEveryRunAndRunZeroIsNominal) {
    Fixture x;
    std::array<Complex, 64> nominal;
    x.settings.mode = ToleranceMode::Exact;
    ToleranceRandom random(1);
    std::vector<int> runs;
    Simulate(x.Inputs(), x.response, random, [&](int run) { runs.push_back(run); });
    EXPECT_EQ(runs, std::vector<int>{0});
    nominal = x.response;

    x.settings.mode = ToleranceMode::WorstCase;
    x.settings.worstCaseRuns = 100;
    runs.clear();
    bool firstMatches = false;
    Simulate(x.Inputs(), x.response, random, [&](int run) {
        runs.push_back(run);
        if (run == 0) {
            firstMatches = true;
            for (int k = 0; k < 64; ++k)
                firstMatches = firstMatches && x.response[k].re == nominal[k].re &&
                               x.response[k].im == nominal[k].im;
        }
    });
    ASSERT_EQ(runs.size(), 100u);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(runs[i], i);
    EXPECT_TRUE(firstMatches);
    EXPECT_NE(x.response[10].re, nominal[10].re);  // the array holds the last, varied run
}

TEST(Simulate, SinglePassRunsOnceWithoutTheHook) {
    Fixture x;
    x.settings.mode = ToleranceMode::WorstCase;
    x.settings.worstCaseRuns = 50;
    ToleranceRandom random(1);
    int calls = 0;
    Simulate(x.Inputs(true), x.response, random, [&](int) { ++calls; });
    EXPECT_EQ(calls, 0);
}

TEST(Simulate, SameSeedGivesTheSameRuns) {
    Fixture a, b;
    a.settings.mode = b.settings.mode = ToleranceMode::WorstCase;
    a.settings.worstCaseRuns = b.settings.worstCaseRuns = 5;
    ToleranceRandom ra(42), rb(42);
    Simulate(a.Inputs(), a.response, ra, nullptr);
    Simulate(b.Inputs(), b.response, rb, nullptr);
    for (int k = 0; k < 64; ++k) {
        EXPECT_EQ(a.response[k].re, b.response[k].re);
        EXPECT_EQ(a.response[k].im, b.response[k].im);
    }
}

// Even the ideal op amp's gain falls above 1 kHz: at 1 MHz it is only 100.
TEST(Simulate, IdealOpAmpStillShowsFallingGain) {
    Fixture x;
    std::array<double, 1> f{1e6};
    std::array<Complex, 1> modelled{Complex{1, 0}}, infinite{Complex{1, 0}};
    SimulateSection(0, x.parts.Section(0), 1e8, 0.0, f, modelled);
    SimulateSectionAtGain(0, x.parts.Section(0), 1e12, 0.0, f, infinite);
    EXPECT_GT(std::abs(std::hypot(modelled[0].re, modelled[0].im) /
                           std::hypot(infinite[0].re, infinite[0].im) -
                       1.0),
              1e-3);
}

// The sweep loop sets each section up once, its coefficients as lines in the op amp's gain;
// that must agree with evaluating the section afresh at every point.
TEST(SimulateSection, AgreesWithThePointByPointResponse) {
    // clang-format off
    const struct { int topology; WorkingComponents parts; } sections[] = {
        {0, {10e3, 22e3, OpenMarker, 0.0, 1e-9, 4.7e-9}},  {0, {10e3, 22e3, 47e3, 47e3, 1e-9, 4.7e-9}},
        {0, {15e3, 0.0, OpenMarker, 0.0, 1e-8, OpenMarker}}, {1, {11e3, 11e3, 45e3, AbsentMarker, 2.2e-9, 22e-9}},
        {2, {33e3, 8e3, 20e3, 20e3, 1e-8, 1e-8}},          {2, {OpenMarker, 15e3, OpenMarker, 0.0, 1e-8, 1e-8}},
        {3, {7.5e3, 34e3, AbsentMarker, AbsentMarker, 1e-8, 1e-8}},
        {4, {106e3, 11e3, 22e3, 45e3, 1e-8, AbsentMarker}}, {5, {53e3, 687.0, 154e3, AbsentMarker, 1e-8, 22e-9}},
        {6, {7958.0, 31830.0, 6366.0, AbsentMarker, 1e-8, 2e-8}},
    };
    // clang-format on
    std::vector<double> f;
    for (int k = 0; k < 200; ++k) f.push_back(std::pow(10.0, 0.5 + k * 0.03));
    for (const auto& section : sections) {
        for (double ro : {0.0, 10.0, 1e3}) {
            std::vector<Complex> swept(f.size(), Complex{1.0, 0.0});
            SimulateSection(section.topology, section.parts, 1e7, ro, f, swept);
            std::vector<Complex> fixed(f.size(), Complex{1.0, 0.0});
            SimulateSectionAtGain(section.topology, section.parts, 1e9, ro, f, fixed);
            for (std::size_t k = 0; k < f.size(); ++k) {
                const double w = TwoPiForTest * f[k];
                const Complex a = SectionResponse(section.topology, section.parts, w,
                                                  OpenLoopGain(1e7, f[k]), ro);
                const Complex b = SectionResponse(section.topology, section.parts, w, 1e9, ro);
                EXPECT_NEAR(swept[k].re, a.re, 1e-11 * std::hypot(a.re, a.im));
                EXPECT_NEAR(swept[k].im, a.im, 1e-11 * std::hypot(a.re, a.im));
                EXPECT_NEAR(fixed[k].re, b.re, 1e-11 * std::hypot(b.re, b.im));
                EXPECT_NEAR(fixed[k].im, b.im, 1e-11 * std::hypot(b.re, b.im));
            }
        }
    }
}

TEST(ReferenceFrequencyGrid, LinearStartsAtOneHertzAndNoSweepReachesItsEnd) {
    std::array<double, 1024> f;
    ReferenceFrequencyGrid(0, 5000.0, f);
    EXPECT_EQ(f[0], 1.0);
    EXPECT_DOUBLE_EQ(f[1], 1.0 + 9999.0 / 1024.0);
    EXPECT_LT(f[1023], 10000.0);
    ReferenceFrequencyGrid(4, 1000.0, f);
    EXPECT_DOUBLE_EQ(f[0], 100.0);
    EXPECT_NEAR(f[1023], 100.0 * std::pow(100.0, 1023.0 / 1024.0), 1e-9);
    ReferenceFrequencyGrid(1, 1000.0, f);
    EXPECT_DOUBLE_EQ(f[0], 500.0);
}

}  // namespace
}  // namespace nerivane
