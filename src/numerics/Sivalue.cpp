#include "numerics/Sivalue.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>

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

// The UTF-8 sequences a person may type for what the parser reads as u and omega.
constexpr std::string_view MicroSign = "\u00B5";
constexpr std::string_view GreekMu = "\u03BC";
constexpr std::string_view OhmSign = "\u2126";
constexpr std::string_view Omega = "\u03A9";

std::string Normalised(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        if (text.starts_with(MicroSign) || text.starts_with(GreekMu)) {
            plain.push_back('u');
            text.remove_prefix(MicroSign.size());
            continue;
        }
        if (text.starts_with(OhmSign)) {
            plain += Omega;
            text.remove_prefix(OhmSign.size());
            continue;
        }
        const char c = text.front();
        if (c == ',')
            plain.push_back('.');
        else if (c != ' ' && c != '\t')
            plain.push_back(c);
        text.remove_prefix(1);
    }
    return plain;
}

}  // namespace

std::optional<double> ParseTypedValue(std::string_view text, std::string_view unit) {
    return ParseSiValue(Normalised(text), unit);
}

std::string SiText(double value, int significantDigits, std::string_view unit) {
    const int decimals = std::clamp(significantDigits, 1, 17) - 1;
    char buffer[48];
    const auto written = std::to_chars(buffer, buffer + sizeof buffer, value,
                                       std::chars_format::scientific, decimals);
    const std::string text(buffer, written.ptr);  // "-d.ddde+XX"
    const std::size_t e = text.find('e');
    const int exponent = std::atoi(text.c_str() + e + 1);
    const int engineering = exponent - ((exponent % 3) + 3) % 3;
    static constexpr const char* Prefixes[] = {"f", "p", "n", "u", "m", "", "k", "M", "G"};
    std::string number = text.substr(0, e);
    std::string prefix = text.substr(e);
    if (engineering >= -15 && engineering <= 9) {
        // The point moves right by the exponent's excess over its multiple of three.
        std::string digits = number;
        const std::size_t point = digits.find('.');
        if (point != std::string::npos) digits.erase(point, 1);
        const std::size_t first = digits.find_first_of("0123456789");
        const std::size_t integer = first + 1 + static_cast<std::size_t>(exponent - engineering);
        while (digits.size() < integer) digits.push_back('0');
        number = digits.substr(0, integer);
        if (integer < digits.size()) number += "." + digits.substr(integer);
        prefix = Prefixes[(engineering + 15) / 3];
    }
    if (number.find('.') != std::string::npos) {
        while (number.back() == '0') number.pop_back();
        if (number.back() == '.') number.pop_back();
    }
    return number + prefix + std::string(unit);
}

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
