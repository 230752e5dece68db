#include "circuit/Componentsettings.h"

#include "numerics/Formatfunctions.h"

namespace nerivane {

OpAmpLabels SetOpAmp(ComponentSettings& settings, double gainBandwidthHz,
                     double outputResistanceOhm, bool idealOpAmp) {
    settings.gainBandwidth = idealOpAmp ? 1e8 : gainBandwidthHz;
    settings.outputResistance = idealOpAmp ? 0.0 : outputResistanceOhm;
    return {"BW " + FormatEngineering(settings.gainBandwidth, 2, "Hz"),
            "Ro  " + FormatEngineering(settings.outputResistance, 2, "\u03A9")};
}

std::string ToleranceLabelText(const ComponentSettings& settings) {
    return "C " + std::to_string(settings.capacitorClass.percent) + "%   R " +
           std::to_string(settings.resistorClass.percent) + "%";
}

std::string ToleranceCaption(const ToleranceClass& toleranceClass) {
    return std::to_string(toleranceClass.percent) + " %";
}

}  // namespace nerivane
