// Engineering values: how every number the program shows is formatted (significant digits,
// SI prefixes, exponents, the locale's decimal separator).
#pragma once

#include <string>

namespace nerivane {

struct MantissaExponent {
    double mantissa;
    int exponent;
};

MantissaExponent SplitMantissaExponent(double x);
double RoundToSignificant(double x, int digits);

std::string FormatEngineering(double x, int decimals, const std::string& unit);
std::string FormatExponent3(double x, int decimals);
std::string FormatFixed(double x, int decimals);
std::string FormatScientific(double x, int decimals);
std::string FormatFixedPlain(double x, int decimals);
// General format with the given significant digits: fixed or exponent, whichever is shorter
// as printf's %G decides, trailing zeros dropped, the exponent written E-300 or E12 (no plus
// sign, no leading zeros), NaN and infinities as NAN, INF and -INF.
std::string FormatGeneral(double x, int significantDigits);

}  // namespace nerivane
