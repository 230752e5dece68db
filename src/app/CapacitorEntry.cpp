#include "app/CapacitorEntry.h"

#include "circuit/Components.h"
#include "numerics/Sivalue.h"

namespace nerivane {

std::optional<double> ParseCapacitance(const std::string& text) {
    const std::optional<double> value = ParseTypedValue(text, "F");
    // A farad or more is a slip of the prefix, not a filter capacitor.
    if (!value || !IsUsableCapacitance(*value)) return std::nullopt;
    return value;
}

}  // namespace nerivane
