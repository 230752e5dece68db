// The calculation as the window drives it: the worst case hands every run to the plot, a
// capacitor step runs once, and no combination of boxes at their limits breaks it. What a
// design gives is the command line's golden table.
#include "app/Calculationdriver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

#include "app/Initializevars.h"
#include "app/Textparameterboxes.h"
#include "numerics/MessageSink.h"

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

// Every topology, family (including the three that build nothing), order, sweep and mode,
// with the boxes at their limits, runs to the end: parts are numbers or markers, response
// points are numbers or NaN.
TEST(Calculate, EveryCombinationAtTheLimitsRunsToTheEnd) {
    struct Extreme {
        const char *f0, *bw, *gain, *ripple, *gamma;
        double c1, c2;
        bool ideal;
    };
    // clang-format off
    const Extreme extremes[] = {
        {"0.001",  "0.01",   "20",  "2",   "1",  1e-13, 1e-13, true},
        {"1.0E5",  "1.0E5",  "-20", "0",   "-1", 1.0,   1.0,   false},
        {"5",      "0.01",   "0",   "1",   "0",  1e-12, 1e-3,  false},
        {"100",    "1.0E5",  "20",  "0.1", "0.5",1e-6,  1e-12, true},
    };
    // clang-format on
    RecordingMessageSink sink;
    InstallMessageSink(&sink);
    auto results = std::make_unique<DesignResults>();
    int index = 0;
    for (int topology = 0; topology <= 6; ++topology) {
        for (int family = 0; family <= 8; ++family) {
            for (const char* poles : {"1", "2", "3", "4", "7", "10", "11", "19", "20"}) {
                for (const Extreme& e : extremes) {
                    ++index;
                    DesignState state = DefaultDesignState();
                    state.TopologyIndex = topology;
                    state.ResponseIndex = family;
                    state.SweepIndex = index % 6;
                    state.Tolerance = static_cast<ToleranceMode>(index % 3);
                    state.IdealOpAmp = e.ideal;
                    for (int i = 0; i < MaxSections; ++i) {
                        state.SectionC1[i] = e.c1;
                        state.SectionC2[i] = e.c2;
                    }
                    TextParameterBoxes boxes;
                    boxes.numPoles.SetText(poles);
                    boxes.f0.SetText(e.f0);
                    boxes.bandWidth.SetText(e.bw);
                    boxes.gain.SetText(e.gain);
                    boxes.ripple.SetText(e.ripple);
                    boxes.gamma.SetText(e.gamma);
                    boxes.runs.SetText("2");
                    boxes.gbw.SetText(index % 2 ? "0.001" : "100");
                    boxes.ro.SetText(index % 2 ? "1.0E4" : "0");
                    ParameterBoxes parameters = boxes.Parameters();
                    ComponentSettings settings;
                    settings.capacitorClass = ToleranceClasses[index % 5];
                    settings.resistorClass = ToleranceClasses[(index / 5) % 5];
                    ToleranceRandom random(index);
                    int runs = 0;
                    CalculationOptions options;
                    options.perRun = [&](int, const Traces&) { ++runs; };
                    Calculate(state, parameters, settings, *results, random, options);

                    ASSERT_EQ(runs, state.Tolerance == ToleranceMode::WorstCase ? 2 : 1);
                    for (int s = 0; s < state.NumSections; ++s) {
                        const WorkingComponents c = results->parts.Section(s);
                        for (double v : {c.R1, c.R2, c.R3, c.R4, c.C1, c.C2})
                            ASSERT_FALSE(std::isinf(v))
                                << topology << " " << family << " " << poles;
                    }
                    for (int k = 0; k < PlotPoints; ++k) {
                        ASSERT_FALSE(std::isinf(results->frequencies[k]));
                        ASSERT_GT(results->frequencies[k], 0.0);
                    }
                }
            }
        }
    }
    InstallMessageSink(nullptr);
}

}  // namespace
}  // namespace nerivane
