// What each stage needs and the warnings of the circuit as built, checked against simulations
// of their own: the GBW found is confirmed by the single-pole departure at it and below it,
// and each warning appears for a design that deserves it.
#include "circuit/Stagechecks.h"
#include "circuit/Gainbandwidthneeded.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "app/DesignState.h"
#include "support/ChebyshevDesign.h"

namespace nerivane {
namespace {

std::vector<double> LogSweep(double from, double to, int points) {
    std::vector<double> f(points);
    for (int k = 0; k < points; ++k) f[k] = from * std::pow(to / from, k / (points - 1.0));
    return f;
}

struct Checked {
    SectionComponents parts;
    ComponentSettings settings;
    BuildChecks checks;
};

Checked Check(Topology topology, int poles, double gainDb, bool ideal, double gbw,
              void (*change)(Checked&) = nullptr) {
    Checked c{ChebyshevDesign(topology, poles, gainDb), {}, {}};
    c.settings.gainBandwidth = gbw;
    if (change) change(c);
    const std::vector<double> sweep = LogSweep(50.0, 500e3, 1024);
    const int sections = SectionsForPoles(topology, poles);
    std::vector<Complex> nominal(sweep.size());
    SimulateCascade(topology, c.parts, sections, OpAmpOf(c.settings), sweep, nominal);
    c.checks = CheckBuild({topology, sections, &c.parts, &c.settings, ideal, sweep, nominal, {}});
    return c;
}

bool Mentions(const BuildChecks& checks, const std::string& text) {
    for (const std::string& warning : checks.warnings)
        if (warning.find(text) != std::string::npos) return true;
    return false;
}

// The GBW found keeps each section within 0.1 dB of its ideal response; four fifths of it do
// not. Every topology, first and second order sections, unity and higher gain.
TEST(StageChecks, TheGainBandwidthFoundIsConfirmedAtItAndNotBelow) {
    const std::vector<double> sweep = LogSweep(50.0, 500e3, 1024);
    for (const Topology topology : Topologies)
        for (const double gainDb : {0.0, 6.0}) {
            const Checked c = Check(topology, 3, gainDb, true, 1e8);
            for (int s = 0; s < SectionsForPoles(topology, 3); ++s) {
                const double gbw = c.checks.stages[s].gainBandwidthHz;
                ASSERT_TRUE(std::isfinite(gbw)) << Index(topology) << " section " << s;
                const WorkingComponents parts = c.parts.Section(s);
                EXPECT_LE(DepartureFromIdealDb(topology, parts, gbw, sweep), 0.1)
                    << Index(topology) << " section " << s;
                if (gbw > 1e3) {
                    EXPECT_GT(DepartureFromIdealDb(topology, parts, 0.8 * gbw, sweep), 0.1)
                        << Index(topology) << " section " << s;
                }
            }
        }
}

// f0 and Q of a section come from its ideal denominator: a notch's sections all sit at F0 with
// Q = F0 / BW, and a low pass's pair at its prototype's corner.
TEST(StageChecks, SectionFiguresFollowTheDesign) {
    const Checked notch = Check(Topology::VcvsNotch, 2, 0.0, true, 1e8);
    for (const StageNeeds& stage : notch.checks.stages) {
        EXPECT_NEAR(stage.f0Hz, 5000.0, 1e-6);
        EXPECT_NEAR(stage.q, 2.5, 1e-9);
        EXPECT_NEAR(stage.gain, 1.0, 1e-12);
    }
    const Checked lowPass = Check(Topology::MfbLowPass, 3, 6.0, true, 1e8);
    EXPECT_TRUE(std::isnan(lowPass.checks.stages[0].q) != std::isnan(lowPass.checks.stages[1].q));
    for (const StageNeeds& stage : lowPass.checks.stages)
        EXPECT_NEAR(stage.gain, std::pow(10.0, 0.3), 1e-12);
}

// Each warning for a design that deserves it, and none for low-pass designs built well.
TEST(StageChecks, WarningsAppearWhereTheyAreDeserved) {
    const struct {
        const char* what;
        Checked checked;
        const char* text;
    } cases[] = {
        {"a 10 kHz op amp", Check(Topology::VcvsLowPass, 4, 0.0, false, 1e4), "needs an op amp"},
        {"its phase", Check(Topology::VcvsLowPass, 4, 0.0, false, 1e4), "phase changes"},
        {"a tiny resistor",
         Check(Topology::MfbBandPass, 2, 0.0, true, 1e8,
               [](Checked& c) { c.parts.R1[0] = 2.54e-6; }),
         "R1 = 2.54 u\u03A9 is outside the practical range 100 \u03A9 to 10.0 M\u03A9"},
        {"a narrow range",
         Check(Topology::VcvsLowPass, 4, 0.0, true, 1e8,
               [](Checked& c) { c.settings.build.maxPracticalOhms = 100.0; }),
         "outside the practical range"},
        {"a high-Q stage with gain", Check(Topology::VcvsLowPass, 8, 6.0, true, 1e8),
         "too high for this circuit"},
    };
    for (const auto& c : cases) EXPECT_TRUE(Mentions(c.checked.checks, c.text)) << c.what;
    for (const Topology topology : {Topology::VcvsLowPass, Topology::MfbLowPass})
        for (const bool ideal : {true, false})
            EXPECT_TRUE(Check(topology, 4, 0.0, ideal, 1e8).checks.warnings.empty())
                << Index(topology);
}

// The notch with its shunt as listed: exactly 2 C1 gives a notch far below the one of a shunt
// rounded to 18 nF, and the report offers two C1 in parallel only for the rounded one.
TEST(StageChecks, TheNotchIsReportedWithItsPartsAsListed) {
    const Checked exact = Check(Topology::VcvsNotch, 2, 0.0, true, 1e8);
    const Checked rounded = Check(Topology::VcvsNotch, 2, 0.0, true, 1e8,
                                  [](Checked& c) { c.parts.C2[0] = c.parts.C2[1] = 18e-9; });
    ASSERT_TRUE(exact.checks.notch && rounded.checks.notch);
    EXPECT_LT(exact.checks.notch->depthDb, -100.0);
    EXPECT_TRUE(exact.checks.notch->roundedShuntSections.empty());
    EXPECT_GT(rounded.checks.notch->depthDb, -60.0);
    EXPECT_NEAR(rounded.checks.notch->depthHz, 5000.0, 500.0);
    EXPECT_EQ(rounded.checks.notch->exactShuntDepthDb, exact.checks.notch->depthDb);
    EXPECT_EQ(rounded.checks.notch->roundedShuntSections, (std::vector<int>{0, 1}));
}

}  // namespace
}  // namespace nerivane
