// Reading a parameter box against a minimum, a value for an unreadable entry and a maximum:
// the box always ends holding a legal value, and a replaced entry shows as repaired.
#pragma once

#include <cstdint>
#include <string>

#include "numerics/EditBox.h"

namespace nerivane {

double EditBoxToDouble(EditBox& box, const std::string& minText, const std::string& defaultText,
                       const std::string& maxText);
std::int32_t EditBoxToInt(EditBox& box, const std::string& minText, const std::string& defaultText,
                          const std::string& maxText);

}  // namespace nerivane
