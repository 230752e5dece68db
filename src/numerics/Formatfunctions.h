// Engineering values: how every number the program shows is formatted (significant digits,
// SI prefixes, exponents, the locale's decimal separator) and how every parameter box is read
// with a minimum, a default and a maximum, repairing bad entries instead of failing.
#pragma once

#include <cstdint>
#include <string>

#include "numerics/EditBox.h"

namespace nerivane {

// The process-wide number format, built once from the locale the environment names
// (LC_ALL, then LC_NUMERIC, then LANG). Only the decimal separator matters to the program.
struct NumberFormatSettings {
    char decimalSeparator = '.';
    char thousandsSeparator = ',';
};

// Builds the settings on first use and returns them.
const NumberFormatSettings& CurrentNumberFormat();
// Replaces the settings (tests inject a comma locale this way, whatever locales the machine
// has installed); the settings then count as built.
void SetNumberFormat(const NumberFormatSettings& settings);
// Marks the settings as not yet built, so the next use reads the environment again.
void ResetNumberFormat();
// The settings a locale name such as "de_DE.UTF-8" implies; exposed for tests.
NumberFormatSettings NumberFormatForLocaleName(const std::string& localeName);

struct MantissaExponent {
    double mantissa;
    int exponent;
};

MantissaExponent SplitMantissaExponent(double x);
double RoundToSignificant(double x, int digits);

struct ParsedFloat {
    bool ok;
    double value;
};
ParsedFloat ParseLocaleFloat(const std::string& text);
double ParseFloatOr(const std::string& text, double fallback);

std::string FormatEngineering(double x, int decimals, const std::string& unit);
std::string FormatExponent3(double x, int decimals);
std::string FormatFixed(double x, int decimals);
std::string FormatScientific(double x, int decimals);
std::string FormatFixedPlain(double x, int decimals);
// General format with the given significant digits: fixed or exponent, whichever is shorter
// as printf's %G decides, trailing zeros dropped, the exponent written E-300 or E12 (no plus
// sign, no leading zeros), NaN and infinities as NAN, INF and -INF.
std::string FormatGeneral(double x, int significantDigits);

double EditBoxToDouble(EditBox& box, const std::string& minText, const std::string& defaultText,
                       const std::string& maxText);
std::int32_t EditBoxToInt(EditBox& box, const std::string& minText, const std::string& defaultText,
                          const std::string& maxText);

std::int32_t NearestInt(double x);
// Forgets that NearestInt has already reported an overflow; for tests only.
void ResetNearestIntOverflowReport();

}  // namespace nerivane
