// One calculation from the parameter boxes to the finished design: the boxes are read into
// the record (repairing bad entries), then the prototype and its sections are built. Every
// front end (window, command line, tests) runs exactly this.
#pragma once

#include <string>
#include <vector>

#include "app/DesignState.h"
#include "numerics/EditBox.h"
#include "numerics/Polymain.h"

namespace nerivane {

// The boxes a calculation reads, owned by the front end.
struct ParameterBoxes {
    EditBox& numPoles;
    EditBox& ripple;
    EditBox& gamma;
    EditBox& phaseThreshold;
};

// The default texts the boxes start with.
inline constexpr const char* DefaultNumPolesText = "3";
inline constexpr const char* DefaultRippleText = "0.2";
inline constexpr const char* DefaultGammaText = "0.0";
inline constexpr const char* DefaultPhaseThresholdText = "20";

struct CalculationResult {
    PrototypeResult prototype;
    std::vector<std::string> reportNotes;  // lines the report memo receives
    std::string gammaLabel;
};

// Which families use the ripple and gamma boxes (the others show them disabled).
bool RippleEnabled(std::int32_t responseIndex);
bool GammaEnabled(std::int32_t responseIndex);

void GatherInputs(DesignState& state, ParameterBoxes& boxes);
CalculationResult Calculate(DesignState& state, ParameterBoxes& boxes);

}  // namespace nerivane
