#include "gui/CapacitorEntry.h"

#include <cmath>

#include "numerics/Sivalue.h"

namespace nerivane {
std::optional<double> ParseCapacitance(const std::string& text) {
    const std::optional<double> value = ParseTypedValue(text, "F");
    // A farad or more is a slip of the prefix, not a filter capacitor.
    if (!value || !(*value > 0.0) || *value > 1.0) return std::nullopt;
    return value;
}

}  // namespace nerivane
