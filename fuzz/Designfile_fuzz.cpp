// Fuzz target: any bytes offered as a design file are either rejected or become a design that
// the whole calculation runs on, without a crash or a sanitizer report.
#include <cstddef>
#include <cstdint>
#include <memory>

#include "app/Calculationdriver.h"
#include "app/Initializevars.h"
#include "app/Parameterboxes.h"
#include "app/Recordcontrols.h"
#include "files/Filesaveread.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace nerivane;
    DesignRecord record = ToRecord(DefaultDesignState());
    if (!ValidateDesignBytes(data, size, record)) return 0;
    SanitizeDesignRecord(record);
    DesignState scratch = FromRecord(record);
    const RecordControls controls = ControlsFromRecord(scratch);
    auto boxes = std::make_unique<TextBoxes>();
    (*boxes)[BoxId::WorstCaseRuns].SetText("3");
    LoadRecordTexts(controls, boxes->Parameters());
    ParameterBoxes parameters = boxes->Parameters();
    ComponentSettings settings;
    auto results = std::make_unique<DesignResults>();
    ToleranceRandom random;
    Calculate(scratch, parameters, settings, *results, random);
    return 0;
}
