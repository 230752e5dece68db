// Numbers as people type them: decimals with the locale's separator (a point is taken too),
// exponents, whole numbers in decimal or hexadecimal; what cannot be read says so.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace nerivane {

struct ParsedFloat {
    bool ok;
    double value;
};
ParsedFloat ParseLocaleFloat(const std::string& text);
double ParseFloatOr(const std::string& text, double fallback);

// Wider than the boxes' integers, so that a number too large for them is still a number,
// limited by the box like any other.
struct ParsedInt {
    bool ok;
    std::int64_t value;
};
// Decimal or hexadecimal ("0x1F", "$1F"), with an optional sign.
ParsedInt ParseInteger(std::string_view text);

}  // namespace nerivane
