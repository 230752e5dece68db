// Times drawing the plot into a 1000 x 600 image (target 5 ms): the start-up view, and every
// trace of the current design with a reference over it.
#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>

#include "app/Calculationdriver.h"
#include "app/Controlstates.h"
#include "app/Initializevars.h"
#include "app/Parameterboxes.h"
#include "app/Plotview.h"
#include "render/OffscreenGui.h"
#include "render/PlotImage.h"

namespace nerivane {
namespace {

struct Design {
    DesignState state = DefaultDesignState();
    std::unique_ptr<DesignResults> results = std::make_unique<DesignResults>();
    ControlStates controls;

    explicit Design(bool everyTrace) {
        state.PlotPhase = state.PlotGroupDelay = state.PlotPulse = everyTrace;
        state.PlotMag1dB = everyTrace;
        TextBoxes text;
        text[BoxId::NumPoles].SetText("6");
        ParameterBoxes boxes = text.Parameters();
        ComponentSettings settings;
        ToleranceRandom random;
        controls = UpdateControlStates(state);
        Calculate(state, boxes, settings, *results, random);
    }
};

void DrawPlot(benchmark::State& benchState, bool everyTrace) {
    EnsureGuiApplication();
    Design design(everyTrace);
    PlotView view = PlotViewFor(design.state, design.controls, *design.results, 1000, 600);
    view.showReference = everyTrace;
    const Traces* reference = everyTrace ? &design.results->traces : nullptr;
    for (auto _ : benchState) {
        QImage image = RenderPlot(view, design.results->traces, reference);
        benchmark::DoNotOptimize(image.constBits());
    }
}

void StartUpView(benchmark::State& s) {
    DrawPlot(s, false);
}
void EveryTraceWithReference(benchmark::State& s) {
    DrawPlot(s, true);
}

BENCHMARK(StartUpView)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(EveryTraceWithReference)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

}  // namespace
}  // namespace nerivane
