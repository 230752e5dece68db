#include "app/Calculationdriver.h"

#include "app/Initializevars.h"
#include "app/Updownfunctions.h"
#include "numerics/Protofunctions.h"

namespace nerivane {

bool RippleEnabled(std::int32_t responseIndex) {
    return responseIndex == Chebyshev || responseIndex == Papoulis;
}

bool GammaEnabled(std::int32_t responseIndex) {
    return responseIndex == AdjustableGauss;
}

void GatherInputs(DesignState& state, ParameterBoxes& boxes) {
    // Poles first: the ripple limit depends on the order.
    ReadNumPoles(state, boxes.numPoles);
    ReadRipple(state, boxes.ripple);
    ReadGamma(state, boxes.gamma);
    ReadPhaseThreshold(state, boxes.phaseThreshold);
    StampFormatVersion(state);
}

CalculationResult Calculate(DesignState& state, ParameterBoxes& boxes) {
    GatherInputs(state, boxes);
    CalculationResult result;
    result.gammaLabel = GammaLabelText(state.Gamma, GammaEnabled(state.ResponseIndex));
    result.prototype = BuildPrototype(state.ResponseIndex, state.NumPoles, state.Ripple,
                                      state.Gamma, state.Sections);
    if (result.prototype.note) result.reportNotes.emplace_back(result.prototype.note);
    return result;
}

}  // namespace nerivane
