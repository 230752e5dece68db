// What the plot shows for the design on screen: the record's check boxes and menu modes and
// the calculation's sweep and scales, gathered into the plot's view for an image of a size.
#pragma once

#include "app/Calculationdriver.h"
#include "app/Controlstates.h"
#include "app/DesignState.h"
#include "numerics/EditBox.h"
#include "numerics/Message.h"
#include "response/Plot.h"

namespace nerivane {

// The group-delay scale: the automatic one, or with "Auto Scale" off the one typed into the
// scale box, which may lie within a factor of 100 either side of the automatic one. An
// automatic scale that is no positive number leaves the box showing it and is used as it is.
double ReadGroupDelayScale(EditBox& box, double automatic, bool autoScale, Messages& messages);

PlotView PlotViewFor(const DesignState& state, const ControlStates& controls,
                     const DesignResults& results, int width, int height);

}  // namespace nerivane
