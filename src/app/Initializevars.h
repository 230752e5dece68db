// The start-up defaults of the design record: a 3-pole Adjustable Gauss VCVS low pass at
// 5 kHz with a one-decade sweep, 100 pF and 1 nF capacitors, an ideal op amp, exact values.
#pragma once

#include "app/DesignState.h"

namespace nerivane {

DesignState DefaultDesignState();

}  // namespace nerivane
