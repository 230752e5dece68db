// Loading the controls from a design record (opening a file, exchanging the reference): the
// texts the parameter boxes take and the selections the buttons show, so that the next
// calculation reads the record's values back from the boxes.
#pragma once

#include <string>

#include "app/DesignState.h"
#include "circuit/Componentsettings.h"

namespace nerivane {

struct RecordControls {
    std::string numPoles;
    std::string f0;         // kHz
    std::string bandWidth;  // kHz
    std::string gain;       // dB
    std::string ripple;
    std::string gamma;
    std::string gainBandwidthMHz;
    std::string outputResistance;
    bool idealOpAmp = true;
    ToleranceMode mode = ToleranceMode::Exact;
    int capacitorPercent = 10;
    int resistorPercent = 1;
};

RecordControls ControlsFromRecord(const DesignState& state);

}  // namespace nerivane
