// A capacitor typed into a C1 or C2 box the way engineers write it: "22n", "22nF", "22 nF",
// "0.022u", "0,022µF", "22e-9".
#pragma once

#include <optional>
#include <string>

namespace nerivane {

// The capacitance in farads, or nothing when the text is not a capacitance a section can be
// built with (1 fF to 1 F). The window's capacitor boxes and the command line read so.
std::optional<double> ParseCapacitance(const std::string& text);

}  // namespace nerivane
