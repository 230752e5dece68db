// Fuzz target: any bytes offered as a design file are either rejected or become a design that
// the whole calculation runs on, without a crash or a sanitizer report.
#include <cstddef>
#include <cstdint>
#include <memory>

#include "app/Calculationdriver.h"
#include "app/Initializevars.h"
#include "app/Recordcontrols.h"
#include "app/Textparameterboxes.h"
#include "files/Filesaveread.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace nerivane;
    DesignState design = DefaultDesignState();
    DesignState scratch = design;
    if (!ValidateDesignBytes(data, size, scratch)) return 0;
    SanitizeDesignRecord(scratch);
    const RecordControls controls = ControlsFromRecord(scratch);
    auto boxes = std::make_unique<TextParameterBoxes>();
    boxes->runs.SetText("3");
    boxes->numPoles.SetText(controls.numPoles);
    boxes->f0.SetText(controls.f0);
    boxes->bandWidth.SetText(controls.bandWidth);
    boxes->gain.SetText(controls.gain);
    boxes->ripple.SetText(controls.ripple);
    boxes->gamma.SetText(controls.gamma);
    boxes->gbw.SetText(controls.gainBandwidthMHz);
    boxes->ro.SetText(controls.outputResistance);
    ParameterBoxes parameters = boxes->Parameters();
    ComponentSettings settings;
    auto results = std::make_unique<DesignResults>();
    ToleranceRandom random;
    Calculate(scratch, parameters, settings, *results, random);
    return 0;
}
