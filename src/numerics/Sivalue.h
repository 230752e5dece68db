// Values with SI prefixes as engineers write them: "5k", "1.5M", "2.2kHz", "10n", "2.2nF",
// "100p". The command line's values and the capacitors typed into the window are read so;
// the number takes a point whatever the locale (the window adapts a comma first).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace nerivane {

// The value, if text is a number with an optional prefix (f p n u m k M G) and an optional
// unit that matches unit (letter case ignored).
std::optional<double> ParseSiValue(std::string_view text, std::string_view unit);

// A value as a person types it into a box: blanks are dropped, a comma is a decimal point,
// either micro sign reads as u and the ohm sign as omega ("0,022 µF", "10 kΩ").
std::optional<double> ParseTypedValue(std::string_view text, std::string_view unit);

// The value with significantDigits digits and an SI prefix, no blank and a point whatever the
// locale ("6.667kΩ"), so that ParseSiValue reads it back; beyond the prefixes f to G it takes
// an exponent ("1e-16F").
std::string SiText(double value, int significantDigits, std::string_view unit);

// A double written so the box parser reads back exactly the same value.
std::string ExactText(double value);

}  // namespace nerivane
