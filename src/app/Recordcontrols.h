// Loading the controls from a design record (opening a file, exchanging the reference): the
// texts the parameter boxes take and the selections the buttons show, so that the next
// calculation reads the record's values back from the boxes.
#pragma once

#include <array>
#include <string>

#include "app/DesignState.h"
#include "app/Parameterboxes.h"
#include "circuit/Componentsettings.h"

namespace nerivane {

struct RecordControls {
    // Per box of the table, its text; empty for a box the record does not set.
    std::array<std::string, BoxCount> texts;
    bool idealOpAmp = true;
    ToleranceMode mode = ToleranceMode::Exact;
    int capacitorPercent = 10;
    int resistorPercent = 1;
};

RecordControls ControlsFromRecord(const DesignState& state);

// Puts the record's texts into the boxes it sets; the others keep theirs.
void LoadRecordTexts(const RecordControls& controls, const ParameterBoxes& boxes);

}  // namespace nerivane
