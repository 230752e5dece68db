// The calculation as the front ends and tools drive it, with or without a hook for each run,
// and the reference design: set, exchanged with the design on screen, simulated again over the
// current sweep. What a design gives is the golden table's and the simulation tests'.
#include "app/Calculationdriver.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "app/Initializevars.h"
#include "app/Parameterboxes.h"
#include "app/Referencedesign.h"

namespace nerivane {
namespace {

bool Same(const DesignState& a, const DesignState& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// A caller without a hook (the benchmarks, the fuzz targets) gets the nominal run's traces all
// the same.
TEST(Calculate, GivesTheNominalTracesWithOrWithoutAHookForEachRun) {
    DesignState state = DefaultDesignState();
    TextBoxes boxes;
    ParameterBoxes parameters = boxes.Parameters();
    ComponentSettings settings;
    auto hooked = std::make_unique<DesignResults>(), plain = std::make_unique<DesignResults>();
    ToleranceRandom random;
    CalculationOptions options;
    options.perRun = [](int, const Traces&) {};
    Calculate(state, parameters, settings, *hooked, random, options);
    Calculate(state, parameters, settings, *plain, random);
    EXPECT_LT(plain->traces.magnitudeDb[1023], -20.0);
    EXPECT_EQ(plain->traces.magnitudeDb, hooked->traces.magnitudeDb);
    EXPECT_EQ(plain->traces.groupDelay, hooked->traces.groupDelay);
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
    current.SweepIndex = Sweep::OneDecade;
    ReSimulateReference(reference, current);
    // 100 Hz .. 10 kHz: the corner sits in the middle of the sweep.
    EXPECT_NEAR(reference.traces->magnitudeDb[512], -3.0103, 0.01);
    EXPECT_NEAR(reference.traces->magnitudeDb[0], 0.0, 0.05);
}

}  // namespace
}  // namespace nerivane
