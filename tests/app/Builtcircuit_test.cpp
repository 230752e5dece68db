// The circuit as built through the whole calculation: the start-up design raises no build
// warning, decade-series resistors are what the report prints, "Choose capacitors" brings
// every resistor into a buildable range, and notch runs with independent parts lose depth.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <set>
#include <string>

#include "app/Calculationdriver.h"
#include "app/Capacitorchoice.h"
#include "app/Initializevars.h"
#include "circuit/Sectioncircuits.h"
#include "numerics/Sivalue.h"

namespace nerivane {
namespace {

struct Design {
    DesignState state = DefaultDesignState();
    TextBoxes boxes;
    ComponentSettings settings;
    std::unique_ptr<DesignResults> results = std::make_unique<DesignResults>();

    void Calculate(const CalculationOptions& options = {}) {
        ToleranceRandom random;
        nerivane::Calculate(state, boxes.Parameters(), settings, *results, random, options);
    }
    // Every resistor the circuit places, section by section.
    std::vector<double> Resistors() const {
        std::vector<double> values;
        for (int s = 0; s < state.NumSections; ++s)
            for (const CircuitPart& part : CircuitOf(state.TopologyIndex).Parts())
                if (part.kind == PartKind::Resistor &&
                    ConditionOf(part, results->parts.Section(s)).state == PartState::Placed)
                    values.push_back(ValueOf(results->parts.Section(s), part.value));
        return values;
    }
};

TEST(BuiltCircuit, TheStartUpDesignRaisesNoWarning) {
    Design run;
    run.Calculate();
    EXPECT_TRUE(run.results->checks.warnings.empty());
    EXPECT_EQ(run.results->checks.stages.size(), 2u);
}

// E96 by its definition, 10^(i/96) to three digits, against every resistor of a 20-pole
// design; each printed value of the report reads back as the value simulated.
TEST(BuiltCircuit, DecadeSeriesResistorsArePrintedAsSimulated) {
    std::set<long> e96;
    for (int i = 0; i < 96; ++i) e96.insert(std::lround(100.0 * std::pow(10.0, i / 96.0)));
    Design run;
    run.state.Tolerance = ToleranceMode::Standard;
    run.settings.build.resistorSeries = ResistorSeries::E96;
    run.boxes[BoxId::NumPoles].SetText("20");
    run.Calculate();
    const std::vector<double> resistors = run.Resistors();
    ASSERT_GE(resistors.size(), 20u);
    for (const double r : resistors) {
        const double mantissa = r / std::pow(10.0, std::floor(std::log10(r)) - 2);
        EXPECT_TRUE(e96.count(std::lround(mantissa)) &&
                    std::fabs(mantissa - std::round(mantissa)) < 1e-9)
            << r;
    }
    int checked = 0;
    for (const std::string& line : run.results->report) {
        if (!line.starts_with("R") || line.find("Not Used") != std::string::npos) continue;
        std::string text = line.substr(5);
        std::erase(text, ' ');
        const std::optional<double> printed = ParseSiValue(text, "\u03A9");
        ASSERT_TRUE(printed) << line;
        if (*printed == 0.0) continue;
        EXPECT_NE(std::find(resistors.begin(), resistors.end(), *printed), resistors.end()) << line;
        ++checked;
    }
    EXPECT_EQ(checked, static_cast<int>(resistors.size()));
}

// The three designs of an engineer who found megohms everywhere.
TEST(BuiltCircuit, ChosenCapacitorsKeepEveryResistorBetween1kAnd1M) {
    const struct {
        Topology topology;
        Response response;
        const char *poles, *f0, *bandWidth;
    } designs[] = {{Topology::VcvsLowPass, Response::Butterworth, "4", "1", "1"},
                   {Topology::VcvsBandPass, Response::Butterworth, "6", "10", "2"},
                   {Topology::VcvsNotch, Response::Butterworth, "2", "0.06", "0.02"}};
    for (const auto& design : designs) {
        Design run;
        run.state.TopologyIndex = design.topology;
        run.state.ResponseIndex = design.response;
        run.boxes[BoxId::NumPoles].SetText(design.poles);
        run.boxes[BoxId::F0].SetText(design.f0);
        run.boxes[BoxId::BandWidth].SetText(design.bandWidth);
        run.Calculate();
        ChooseCapacitors(run.state, run.settings);
        run.Calculate();
        for (const double r : run.Resistors()) {
            EXPECT_GE(r, 1e3) << Index(design.topology);
            EXPECT_LE(r, 1e6) << Index(design.topology);
        }
    }
}

// As designed, a tolerance run moves the notch but keeps it deep (as deep as the sweep's points
// can see); with every part drawn on its own the shunt no longer matches the series capacitors
// and the depth is what a builder should expect.
TEST(BuiltCircuit, IndependentNotchPartsShowTheDepthToExpect) {
    double shallowestOfRuns[2] = {};
    for (const bool independent : {false, true}) {
        Design run;
        run.state.TopologyIndex = Topology::VcvsNotch;
        run.state.Tolerance = ToleranceMode::WorstCase;
        run.boxes[BoxId::NumPoles].SetText("2");
        run.boxes[BoxId::WorstCaseRuns].SetText("20");
        run.settings.build.notchPartsIndependent = independent;
        double shallowest = -INFINITY;
        CalculationOptions options;
        options.perRun = [&](int run, const Traces& traces) {
            if (run == 0) return;
            double deepest = INFINITY;
            for (const double db : traces.magnitudeDb) deepest = std::min(deepest, db);
            shallowest = std::max(shallowest, deepest);
        };
        run.Calculate(options);
        shallowestOfRuns[independent] = shallowest;
    }
    EXPECT_GT(shallowestOfRuns[true], shallowestOfRuns[false] + 15.0);
}

}  // namespace
}  // namespace nerivane
