// "Choose capacitors": for each section, the capacitors of the capacitor series that put every
// resistor of that section nearest the middle of the practical range (the geometric middle),
// so a design at 60 Hz does not end up with resistors of hundreds of megohms.
#pragma once

#include "app/DesignState.h"
#include "circuit/Componentsettings.h"

namespace nerivane {

// Sets the sections' C1 and C2 of a design whose prototype has been built (by a calculation).
// Sections whose parts cannot be computed with any candidate keep their capacitors.
void ChooseCapacitors(DesignState& state, const ComponentSettings& settings);

}  // namespace nerivane
