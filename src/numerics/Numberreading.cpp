#include "numerics/Numberreading.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "numerics/Numberlocale.h"

namespace nerivane {
namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view TrimBlanks(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// Reads a decimal number written with the given separator, without any locale machinery so
// that the result does not depend on what the process's C locale happens to be.
ParsedFloat ParseDecimal(std::string_view text, char separator) {
    constexpr ParsedFloat failed{false, 0.0};
    text = TrimBlanks(text);
    std::size_t i = 0;
    std::string plain;  // the same number with a point, for from_chars
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        if (text[i] == '-') plain += '-';
        ++i;
    }
    bool anyDigit = false;
    bool seenSeparator = false;
    // Decimal magnitude of the first non-zero digit; tells underflow from overflow below.
    long long leadingPosition = 0;
    bool seenNonZero = false;
    for (; i < text.size(); ++i) {
        const char c = text[i];
        if (IsDigit(c)) {
            anyDigit = true;
            if (!seenNonZero && c != '0') seenNonZero = true;
            if (!seenSeparator && seenNonZero) ++leadingPosition;
            if (seenSeparator && !seenNonZero) --leadingPosition;
            plain += c;
        } else if (c == separator && !seenSeparator) {
            seenSeparator = true;
            plain += '.';
        } else {
            break;
        }
    }
    if (!anyDigit) return failed;
    long long exponent = 0;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        bool negative = false;
        if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
        if (i == text.size()) return failed;
        constexpr long long exponentCap = 1000000;  // far beyond any double; avoids overflow
        for (; i < text.size() && IsDigit(text[i]); ++i)
            exponent = std::min(exponentCap, exponent * 10 + (text[i] - '0'));
        if (negative) exponent = -exponent;
        plain += 'e' + std::to_string(exponent);
    }
    if (i != text.size()) return failed;

    double value = 0.0;
    const auto [end, error] = std::from_chars(plain.data(), plain.data() + plain.size(), value);
    if (end != plain.data() + plain.size()) return failed;
    if (error == std::errc::result_out_of_range) {
        // Too small to hold is zero; too large to hold is infinite, which every box limits to
        // its maximum like any other number too large for it.
        const bool negative = plain.front() == '-';
        if (leadingPosition + exponent > 0)
            return {true, negative ? -std::numeric_limits<double>::infinity()
                                   : std::numeric_limits<double>::infinity()};
        return {true, negative ? -0.0 : 0.0};
    }
    if (error != std::errc()) return failed;
    return {true, value};
}

}  // namespace

ParsedInt ParseInteger(std::string_view text) {
    constexpr ParsedInt failed{false, 0};
    text = TrimBlanks(text);
    bool negative = false;
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    int base = 10;
    if (text.starts_with('$')) {
        base = 16;
        text.remove_prefix(1);
    } else if (text.starts_with("0x") || text.starts_with("0X")) {
        base = 16;
        text.remove_prefix(2);
    }
    std::uint64_t magnitude = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), magnitude, base);
    if (end != text.data() + text.size() || end == text.data()) return failed;
    if (error != std::errc() && error != std::errc::result_out_of_range) return failed;
    // A whole number too large to hold is held as the largest one.
    constexpr std::uint64_t largestMagnitude = 1ULL << 62;
    if (error == std::errc::result_out_of_range || magnitude > largestMagnitude)
        magnitude = largestMagnitude;
    const auto value = static_cast<std::int64_t>(magnitude);
    return {true, negative ? -value : value};
}

ParsedFloat ParseLocaleFloat(const std::string& text) {
    const char separator = DecimalSeparator();
    std::string adapted = text;
    // A point typed under a comma locale is taken as the separator; only the first, so that
    // "1.5.3" still fails.
    if (separator == ',') {
        const std::size_t point = adapted.find('.');
        if (point != std::string::npos) adapted[point] = ',';
    }
    return ParseDecimal(adapted, separator);
}

double ParseFloatOr(const std::string& text, double fallback) {
    const ParsedFloat parsed = ParseDecimal(text, DecimalSeparator());
    return parsed.ok ? parsed.value : fallback;
}

}  // namespace nerivane
