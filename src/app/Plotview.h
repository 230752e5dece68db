// What the plot shows for the design on screen: the record's check boxes and menu modes and
// the calculation's sweep and scales, gathered into the plot's view for an image of a size.
#pragma once

#include "app/Calculationdriver.h"
#include "app/Controlstates.h"
#include "app/DesignState.h"
#include "response/Plot.h"

namespace nerivane {

PlotView PlotViewFor(const DesignState& state, const ControlStates& controls,
                     const DesignResults& results, int width, int height);

}  // namespace nerivane
