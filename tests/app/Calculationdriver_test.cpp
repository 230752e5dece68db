// The calculation as the window drives it: the worst case hands every run to the plot, a
// capacitor step runs once, and the reference design is set, exchanged and simulated again.
// What a design gives is the command line's golden table; designs from any bytes are the
// design-file fuzz target's.
#include "app/Calculationdriver.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <vector>

#include "app/Initializevars.h"
#include "app/Referencedesign.h"
#include "app/Textparameterboxes.h"

namespace nerivane {
namespace {

TEST(Calculate, WorstCaseHandsEveryRunsTracesToTheHookAndKeepsTheNominalOnes) {
    DesignState state = DefaultDesignState();
    state.Tolerance = ToleranceMode::WorstCase;
    TextParameterBoxes boxes;
    boxes.runs.SetText("12");
    ParameterBoxes parameters = boxes.Parameters();
    ComponentSettings settings;
    auto results = std::make_unique<DesignResults>();
    ToleranceRandom random(3);
    std::vector<int> runs;
    std::vector<double> atCorner;
    CalculationOptions options;
    options.perRun = [&](int run, const Traces& traces) {
        runs.push_back(run);
        atCorner.push_back(traces.magnitudeDb[512]);
    };
    Calculate(state, parameters, settings, *results, random, options);
    ASSERT_EQ(runs.size(), 12u);
    EXPECT_EQ(results->runs, 12);
    EXPECT_EQ(results->traces.magnitudeDb[512], atCorner[0]);  // the nominal run's traces
    EXPECT_NE(atCorner[1], atCorner[0]);
    EXPECT_EQ(results->report.front(), "Section 0");

    runs.clear();
    options.singlePass = true;  // stepping a capacitor: one run, no hook
    Calculate(state, parameters, settings, *results, random, options);
    EXPECT_TRUE(runs.empty());
    EXPECT_EQ(results->runs, 1);
    EXPECT_EQ(results->traces.magnitudeDb[512], atCorner[0]);
}

bool Same(const DesignState& a, const DesignState& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// Setting the reference copies the design; each exchange swaps the two, so two restore both.
TEST(ReferenceDesign, ExchangesSwapTheDesignWithTheReference) {
    DesignState first = DefaultDesignState();
    auto results = std::make_unique<DesignResults>();
    ReferenceDesign reference;
    SetReference(reference, first, *results, "first");
    EXPECT_TRUE(reference.isSet && first.PlotReference == 1);
    EXPECT_TRUE(Same(reference.record, first));
    DesignState second = first;
    second.F0 = 1234.0;
    DesignState current = ExchangeReference(reference, second, *results, "second");
    EXPECT_EQ(current.F0, 5000.0);
    EXPECT_EQ(reference.name, "second");
    current = ExchangeReference(reference, current, *results, "first");
    EXPECT_EQ(current.F0, 1234.0);
    EXPECT_EQ(reference.record.F0, 5000.0);
}

TEST(ReferenceDesign, ResimulationFollowsTheCurrentSweep) {
    DesignState current = DefaultDesignState();
    auto results = std::make_unique<DesignResults>();
    ReferenceDesign reference;
    // A one-section first-order design: R1 with C1 gives a 1 kHz corner.
    reference.record = current;
    reference.record.NumSections = 1;
    reference.parts.Store(0,
                          {1.0 / (TwoPi * 1000.0 * 1e-8), 0.0, OpenMarker, 0.0, 1e-8, OpenMarker});
    current.F0 = 1000.0;
    current.SweepIndex = 4;
    ReSimulateReference(reference, current);
    // 100 Hz .. 10 kHz: the corner sits in the middle of the sweep.
    EXPECT_NEAR(reference.traces->magnitudeDb[512], -3.0103, 0.01);
    EXPECT_NEAR(reference.traces->magnitudeDb[0], 0.0, 0.05);
}

}  // namespace
}  // namespace nerivane
