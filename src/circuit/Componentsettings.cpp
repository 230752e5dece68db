#include "circuit/Componentsettings.h"

#include "numerics/Formatfunctions.h"

namespace nerivane {

OpAmpLabels ReadOpAmp(ComponentSettings& settings, OpAmpBoxes& boxes, bool idealOpAmp) {
    settings.gainBandwidth =
        EditBoxToDouble(boxes.gainBandwidthMHz, "0.001", "10.0", "100.0") * 1e6;
    settings.outputResistance = EditBoxToDouble(boxes.outputResistance, "0.0", "10.0", "1.0E4");
    if (idealOpAmp) {
        // The boxes keep what the user typed; the ideal model is fixed.
        settings.gainBandwidth = 1e8;
        settings.outputResistance = 0.0;
    }
    return {"BW " + FormatEngineering(settings.gainBandwidth, 2, "Hz"),
            "Ro  " + FormatEngineering(settings.outputResistance, 2, "\u03A9")};
}

void ReadWorstCaseRuns(ComponentSettings& settings, EditBox& box) {
    settings.worstCaseRuns = EditBoxToInt(box, "1", "10", "1000");
}

std::string ToleranceLabelText(const ComponentSettings& settings) {
    return "C " + std::to_string(settings.capacitorClass.percent) + "%   R " +
           std::to_string(settings.resistorClass.percent) + "%";
}

std::string ToleranceCaption(const ToleranceClass& toleranceClass) {
    return std::to_string(toleranceClass.percent) + " %";
}

}  // namespace nerivane
