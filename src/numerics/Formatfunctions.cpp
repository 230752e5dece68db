#include "numerics/Formatfunctions.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "numerics/CheckedMath.h"
#include "numerics/Numberlocale.h"
#include "numerics/Numberreading.h"

namespace nerivane {
namespace {

constexpr double Log10Of2 = 0.3010299956639812;
constexpr double NotUsedThreshold = 1e47;
constexpr double FixedZeroThreshold = 1e-18;
constexpr double RescaleAfterCarry = 0.1;
constexpr double CarryLimit = 10.0;

// As printf writes it with "%.*f" or "%.*g" (both round the exact binary value), without the
// format string's parsing, which the report's hundreds of numbers a calculation would pay.
std::string PrintedText(double x, std::chars_format format, int precision) {
    // The longest: a sign, 309 digits of the largest double, the point and 18 decimals.
    char text[400];
    const auto written = std::to_chars(text, text + sizeof text, x, format, precision);
    return std::string(text, written.ptr);
}

// The text above always has a point; the program shows the locale's separator instead.
std::string WithLocaleSeparator(std::string text) {
    std::replace(text.begin(), text.end(), '.', DecimalSeparator());
    return text;
}

std::string FixedText(double x, int decimals) {
    return WithLocaleSeparator(PrintedText(x, std::chars_format::fixed, decimals));
}

std::string PrefixFor(int exponent) {
    switch (exponent) {
        case 9: return "G";
        case 6: return "M";
        case 3: return "k";
        case 0: return "";
        case -3: return "m";
        case -6: return "u";
        case -9: return "n";
        case -12: return "p";
        case -15: return "f";
        default: return "E" + std::to_string(exponent);
    }
}

// Rounding the mantissa to the shown decimals may carry into a new digit (9.996 -> "10.00");
// the mantissa then moves one decade down so the text keeps its digit count.
void RescaleOnCarry(MantissaExponent& split, int decimals) {
    if (std::fabs(ParseFloatOr(FixedText(split.mantissa, decimals), 1.0)) >= CarryLimit) {
        split.mantissa *= RescaleAfterCarry;
        split.exponent += 1;
    }
}

// Moves the exponent down to a multiple of three (also for negative exponents, so 1e-4 becomes
// 100e-6) and returns how many places the mantissa gained before the point.
int ShiftToEngineering(MantissaExponent& split) {
    int shifted = 0;
    while (split.exponent % 3 != 0) {
        split.exponent -= 1;
        split.mantissa *= 10.0;
        ++shifted;
    }
    return shifted;
}

}  // namespace

MantissaExponent SplitMantissaExponent(double x) {
    if (x == 0.0) return {0.0, 0};
    int binaryExponent = 0;
    const double fraction = std::frexp(x, &binaryExponent);
    const double decimalExponent = binaryExponent * Log10Of2;
    MantissaExponent split{0.0, static_cast<int>(decimalExponent)};
    split.mantissa = fraction * CheckedPow(10.0, decimalExponent - split.exponent);
    while (split.mantissa > -1.0 && split.mantissa < 1.0) {
        split.mantissa *= 10.0;
        split.exponent -= 1;
    }
    return split;
}

double RoundToSignificant(double x, int digits) {
    digits = std::clamp(digits, 1, 15);
    const MantissaExponent split = SplitMantissaExponent(x);
    double y = split.mantissa * CheckedPow(10.0, digits - 1);
    y = y < 0.0 ? std::ceil(y - 0.5) : std::floor(y + 0.5);
    return y * CheckedPow(10.0, split.exponent - (digits - 1));
}

std::string FormatEngineering(double x, int decimals, const std::string& unit) {
    if (x > NotUsedThreshold) return "Not Used";
    decimals = std::clamp(decimals, 0, 15);
    MantissaExponent split = SplitMantissaExponent(RoundToSignificant(x, decimals + 1));
    RescaleOnCarry(split, decimals);
    // The mantissa is already rounded; digits moved before the point are not rounded again.
    const int shown = std::max(0, decimals - ShiftToEngineering(split));
    return FixedText(split.mantissa, shown) + " " + PrefixFor(split.exponent) + unit;
}

std::string FormatExponent3(double x, int decimals) {
    decimals = std::clamp(decimals, 0, 15);
    MantissaExponent split = SplitMantissaExponent(x);
    RescaleOnCarry(split, decimals);
    int shift = ShiftToEngineering(split);
    // Unlike FormatEngineering the value was never rounded, so when the shift leaves no
    // decimals the mantissa is rounded to the requested digits here.
    if (decimals - shift < 0) {
        split.mantissa = RoundToSignificant(split.mantissa, decimals + 1);
        shift = decimals;
    }
    return FixedText(split.mantissa, decimals - shift) + "E" + std::to_string(split.exponent);
}

std::string FormatScientific(double x, int decimals) {
    decimals = std::clamp(decimals, 0, 15);
    const MantissaExponent split = SplitMantissaExponent(x);
    std::string text = FixedText(split.mantissa, decimals);
    int exponent = split.exponent;
    if (std::fabs(ParseFloatOr(text, 1.0)) >= CarryLimit) {
        exponent += 1;
        text = FixedText(RescaleAfterCarry * split.mantissa, decimals);
    }
    return text + "E" + std::to_string(exponent);
}

std::string FormatFixed(double x, int decimals) {
    decimals = std::clamp(decimals, 0, 18);
    if (std::fabs(x) > FixedZeroThreshold) {
        // A value too small for the decimals would print as zeros; show its digits instead.
        if (std::fabs(x) >= CheckedPow(10.0, -decimals)) return FixedText(x, decimals);
        return FormatScientific(x, decimals);
    }
    return FixedText(0.0, decimals);
}

std::string FormatFixedPlain(double x, int decimals) {
    return FixedText(x, std::clamp(decimals, 0, 18));
}

std::string FormatGeneral(double x, int significantDigits) {
    if (std::isnan(x)) return "NAN";
    if (std::isinf(x)) return x > 0.0 ? "INF" : "-INF";
    std::string text =
        PrintedText(x, std::chars_format::general, std::clamp(significantDigits, 1, 18));
    const std::size_t e = text.find('e');
    if (e != std::string::npos) {
        // The text has "e+05" or "e-05"; the program writes "E5" and "E-5".
        const int exponent = std::atoi(text.c_str() + e + 1);
        text = text.substr(0, e) + "E" + std::to_string(exponent);
    }
    return WithLocaleSeparator(text);
}

}  // namespace nerivane
