// The calculation as the window drives it: the worst case hands every run to the plot and a
// capacitor step runs once. What a design gives is the command line's golden table; designs
// from any bytes are the design-file fuzz target's.
#include "app/Calculationdriver.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "app/Initializevars.h"
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

}  // namespace
}  // namespace nerivane
