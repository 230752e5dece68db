// How the program asks the C library to manage its memory. A calculation takes and gives back a
// few hundred kilobytes of work space (the sweep, the pulse response's transform); left to
// itself the library returns them to the system after one calculation and faults them in again
// on the next, which costs a fifth of a 20-pole design with its pulse response.
#pragma once

namespace nerivane {

// Fixed thresholds, so freed work space stays with the process for the next calculation. Call
// once at the start of a program, before the first calculation.
void KeepCalculationMemory();

}  // namespace nerivane
