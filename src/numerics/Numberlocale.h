// The decimal separator every number the program shows and reads uses: the locale the
// environment names (LC_ALL, then LC_NUMERIC, then LANG), built once for the process.
#pragma once

#include <string>

namespace nerivane {

// Only the decimal separator matters to the program.
struct NumberFormatSettings {
    char decimalSeparator = '.';
    char thousandsSeparator = ',';
};

// Builds the settings on first use and returns them.
const NumberFormatSettings& CurrentNumberFormat();
char DecimalSeparator();
// Replaces the settings (tests inject a comma locale this way, whatever locales the machine
// has installed); the settings then count as built.
void SetNumberFormat(const NumberFormatSettings& settings);
// Marks the settings as not yet built, so the next use reads the environment again.
void ResetNumberFormat();
// The settings a locale name such as "de_DE.UTF-8" implies; exposed for tests.
NumberFormatSettings NumberFormatForLocaleName(const std::string& localeName);

}  // namespace nerivane
