// Times what the schematic view redraws at every calculation while it is open, for a
// 20-pole design (ten sections): the layout, the cascade painted into an image, the section
// painted, the SVG document, and the parts list. Against a calculation of about 0.3 ms, the
// view must not make a keystroke feel slow (target: 20 ms for both pictures together).
#include <benchmark/benchmark.h>

#include <memory>

#include "app/Buildoutputs.h"
#include "app/Initializevars.h"
#include "app/Parameterboxes.h"
#include "app/Picturefiles.h"
#include "render/OffscreenGui.h"
#include "render/SchematicImage.h"

namespace nerivane {
namespace {

struct Design {
    DesignState state = DefaultDesignState();
    std::unique_ptr<DesignResults> results = std::make_unique<DesignResults>();
    ComponentSettings settings;

    Design() {
        TextBoxes text;
        text[BoxId::NumPoles].SetText("20");
        ParameterBoxes boxes = text.Parameters();
        ToleranceRandom random;
        Calculate(state, boxes, settings, *results, random);
    }
};

void Layout(benchmark::State& s) {
    const Design design;
    for (auto _ : s) benchmark::DoNotOptimize(DesignSchematic(design.state, *design.results, "x"));
}

void CascadeImage(benchmark::State& s) {
    EnsureGuiApplication();
    const Design design;
    const Schematic cascade = DesignSchematic(design.state, *design.results, "x");
    for (auto _ : s) benchmark::DoNotOptimize(RenderSchematic(cascade).constBits());
}

void SectionImage(benchmark::State& s) {
    EnsureGuiApplication();
    const Design design;
    const Schematic section = SelectedSectionSchematic(design.state, *design.results);
    for (auto _ : s) benchmark::DoNotOptimize(RenderSchematic(section).constBits());
}

void CascadeSvg(benchmark::State& s) {
    const Design design;
    const Schematic cascade = DesignSchematic(design.state, *design.results, "x");
    for (auto _ : s) benchmark::DoNotOptimize(SchematicSvg(cascade));
}

void PartsListCsvText(benchmark::State& s) {
    const Design design;
    for (auto _ : s)
        benchmark::DoNotOptimize(
            PartsListCsv(DesignPartsList(design.state, *design.results, design.settings)));
}

BENCHMARK(Layout)->Unit(benchmark::kMicrosecond);
BENCHMARK(CascadeImage)->Unit(benchmark::kMillisecond);
BENCHMARK(SectionImage)->Unit(benchmark::kMillisecond);
BENCHMARK(CascadeSvg)->Unit(benchmark::kMicrosecond);
BENCHMARK(PartsListCsvText)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace nerivane
