#include "numerics/Sivalue.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace nerivane {
namespace {

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c; };
        if (lower(a[i]) != lower(b[i])) return false;
    }
    return true;
}

std::optional<int> PrefixExponent(char prefix) {
    switch (prefix) {
        case 'f': return -15;
        case 'p': return -12;
        case 'n': return -9;
        case 'u': return -6;
        case 'm': return -3;
        case 'k': return 3;
        case 'M': return 6;
        case 'G': return 9;
        default: return std::nullopt;
    }
}

// "22" with the prefix n read as the one decimal number 22e-9, so that 22n is exactly the
// double 22e-9 rather than 22 * 1e-9.
double ApplyExponent(std::string_view number, double value, int exponent) {
    if (number.find_first_of("eE") != std::string_view::npos)
        return value * std::pow(10.0, exponent);
    const std::string scaled = std::string(number) + "e" + std::to_string(exponent);
    double result = value;
    std::from_chars(scaled.data(), scaled.data() + scaled.size(), result);
    return result;
}

}  // namespace

std::optional<double> ParseSiValue(std::string_view text, std::string_view unit) {
    const char* begin = text.data();
    const char* end = text.data() + text.size();
    if (begin != end && *begin == '+') ++begin;  // from_chars takes no plus sign
    double value = 0.0;
    const auto [rest, error] = std::from_chars(begin, end, value);
    if (error != std::errc() || rest == begin || !std::isfinite(value)) return std::nullopt;
    std::string_view suffix(rest, static_cast<std::size_t>(end - rest));
    // "10F" is ten farads but "10f" ten femtofarads: the unit written exactly wins, then a
    // prefix, then the unit in any letter case ("5hz").
    if (suffix.empty() || suffix == unit) return value;
    if (const std::optional<int> exponent = PrefixExponent(suffix.front())) {
        const std::string_view after = suffix.substr(1);
        const std::string_view number(begin, static_cast<std::size_t>(rest - begin));
        if (after.empty() || EqualIgnoringCase(after, unit))
            return ApplyExponent(number, value, *exponent);
    }
    if (EqualIgnoringCase(suffix, unit)) return value;
    return std::nullopt;
}

std::string ExactText(double value) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.17g", value);
    return buffer;
}

}  // namespace nerivane
