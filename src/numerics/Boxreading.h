// Reading a parameter box against a minimum, a value for an unreadable entry and a maximum:
// the box always ends holding a legal value, and a replaced entry shows as repaired.
#pragma once

#include <cstdint>
#include <string>

#include "numerics/EditBox.h"
#include "numerics/Message.h"

namespace nerivane {

// A limit text that cannot be read is a programming error: reading goes on, and messages
// says so.
double EditBoxToDouble(EditBox& box, const std::string& minText, const std::string& defaultText,
                       const std::string& maxText, Messages& messages);
std::int32_t EditBoxToInt(EditBox& box, const std::string& minText, const std::string& defaultText,
                          const std::string& maxText, Messages& messages);

}  // namespace nerivane
