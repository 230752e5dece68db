#include "gui/CapacitorEntry.h"

#include <cmath>

#include "numerics/Sivalue.h"

namespace nerivane {
namespace {

// The box shows "100 pF" with the locale's decimal separator and a space before the prefix;
// a micro sign may come from either of its two code points.
std::string Normalised(const std::string& text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        const unsigned char next =
            i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0;
        if ((c == 0xC2 && next == 0xB5) || (c == 0xCE && next == 0xBC)) {
            plain.push_back('u');
            ++i;
        } else if (c == ',') {
            plain.push_back('.');
        } else if (c != ' ' && c != '\t') {
            plain.push_back(static_cast<char>(c));
        }
    }
    return plain;
}

}  // namespace

std::optional<double> ParseCapacitance(const std::string& text) {
    const std::optional<double> value = ParseSiValue(Normalised(text), "F");
    // A farad or more is a slip of the prefix, not a filter capacitor.
    if (!value || !(*value > 0.0) || *value > 1.0) return std::nullopt;
    return value;
}

}  // namespace nerivane
