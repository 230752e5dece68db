#include "numerics/Formatfunctions.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string_view>

#include "numerics/CheckedMath.h"
#include "numerics/MessageSink.h"

namespace nerivane {
namespace {

constexpr double Log10Of2 = 0.3010299956639812;
constexpr double NotUsedThreshold = 1e47;
constexpr double FixedZeroThreshold = 1e-18;
constexpr double RescaleAfterCarry = 0.1;
constexpr double CarryLimit = 10.0;
constexpr double Int32Limit = 2147483647.0;

bool nearestIntOverflowReported = false;

struct NumberFormatState {
    NumberFormatSettings settings;
    bool built = false;
};

NumberFormatState& FormatState() {
    static NumberFormatState state;
    return state;
}

char DecimalSeparator() {
    return CurrentNumberFormat().decimalSeparator;
}

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

std::string Lower(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return result;
}

std::string PrintfText(const char* format, int precision, double x) {
    const int length = std::snprintf(nullptr, 0, format, precision, x);
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::snprintf(text.data(), text.size(), format, precision, x);
    text.resize(static_cast<std::size_t>(length));
    return text;
}

// printf always writes a point; the program shows the locale's separator instead.
std::string WithLocaleSeparator(std::string text) {
    std::replace(text.begin(), text.end(), '.', DecimalSeparator());
    return text;
}

std::string FixedText(double x, int decimals) {
    return WithLocaleSeparator(PrintfText("%.*f", decimals, x));
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

// Wider than the boxes' integers, so that a number too large for them is still a number,
// limited by the box like any other.
struct ParsedInt {
    bool ok;
    std::int64_t value;
};

// Decimal or hexadecimal ("0x1F", "$1F"), with an optional sign; anything outside 32 bits fails.
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

struct CommaLocale {
    const char* language;
    char thousandsSeparator;
};

// Languages whose usual number format has a decimal comma.
// clang-format off
constexpr CommaLocale CommaLanguages[] = {
    {"de", '.'}, {"it", '.'}, {"es", '.'}, {"nl", '.'}, {"pt", '.'}, {"da", '.'}, {"id", '.'},
    {"tr", '.'}, {"el", '.'}, {"ro", '.'}, {"hr", '.'}, {"sl", '.'}, {"sr", '.'}, {"bs", '.'},
    {"is", '.'}, {"ca", '.'}, {"gl", '.'}, {"eu", '.'}, {"vi", '.'}, {"az", '.'}, {"mk", '.'},
    {"af", ' '}, {"fr", ' '}, {"ru", ' '}, {"uk", ' '}, {"be", ' '}, {"bg", ' '}, {"pl", ' '},
    {"cs", ' '}, {"sk", ' '}, {"hu", ' '}, {"sv", ' '}, {"nb", ' '}, {"nn", ' '}, {"no", ' '},
    {"fi", ' '}, {"et", ' '}, {"lv", ' '}, {"lt", ' '}, {"kk", ' '}, {"ka", ' '}, {"hy", ' '},
};

// Territories whose format differs from their language's.
struct TerritoryException {
    const char* locale;
    NumberFormatSettings settings;
};
constexpr TerritoryException TerritoryExceptions[] = {
    {"de_ch", {'.', '\''}}, {"de_li", {'.', '\''}}, {"it_ch", {'.', '\''}},
    {"es_mx", {'.', ','}},  {"es_us", {'.', ','}},  {"es_pr", {'.', ','}},
    {"es_do", {'.', ','}},  {"es_gt", {'.', ','}},  {"es_hn", {'.', ','}},
    {"es_ni", {'.', ','}},  {"es_pa", {'.', ','}},  {"es_sv", {'.', ','}},
    {"en_za", {',', ' '}},  {"en_dk", {',', '.'}},
};
// clang-format on

// Reads a box against its limits. With valid limits the box always ends holding a legal value; a
// replaced entry shows as repaired until the next read of that box.
template <typename Parser>
auto ReadBox(EditBox& box, const std::string& minText, const std::string& defaultText,
             const std::string& maxText, Parser parse, const char* guardMessage) {
    const auto minimum = parse(minText);
    const auto fallback = parse(defaultText);
    const auto maximum = parse(maxText);
    // Limits are written by the program, so a bad one is a programming error; reading goes on.
    if (!minimum.ok || !fallback.ok || !maximum.ok) ShowMessage(guardMessage);
    using Value = decltype(minimum.value);
    const Value minValue = minimum.ok ? minimum.value : Value{1};
    const Value defaultValue = fallback.ok ? fallback.value : Value{1};
    const Value maxValue = maximum.ok ? maximum.value : Value{1};

    box.SetRepaired(false);
    const auto entry = parse(box.Text());
    Value value = entry.value;
    if (!entry.ok) {
        box.SetText(defaultText);
        value = defaultValue;
        box.SetRepaired(true);
    }
    if (value < minValue) {
        box.SetText(minText);
        value = minValue;
        box.SetRepaired(true);
    }
    if (value > maxValue) {
        box.SetText(maxText);
        value = maxValue;
        box.SetRepaired(true);
    }
    return value;
}

std::string LocaleNameFromEnvironment() {
    for (const char* variable : {"LC_ALL", "LC_NUMERIC", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value != '\0') return value;
    }
    return "";
}

}  // namespace

NumberFormatSettings NumberFormatForLocaleName(const std::string& localeName) {
    // "ll_TT.codeset@modifier"; only the language and the territory decide the format.
    const std::string name = Lower(localeName.substr(0, localeName.find_first_of(".@")));
    const std::size_t territoryStart = name.find_first_of("_-");
    const std::string language = name.substr(0, territoryStart);
    const std::string locale = territoryStart == std::string::npos
                                   ? language
                                   : language + "_" + name.substr(territoryStart + 1);
    for (const TerritoryException& exception : TerritoryExceptions)
        if (locale == exception.locale) return exception.settings;
    for (const CommaLocale& comma : CommaLanguages)
        if (language == comma.language) return {',', comma.thousandsSeparator};
    return {'.', ','};
}

const NumberFormatSettings& CurrentNumberFormat() {
    NumberFormatState& state = FormatState();
    if (!state.built) {
        state.settings = NumberFormatForLocaleName(LocaleNameFromEnvironment());
        state.built = true;
    }
    return state.settings;
}

void SetNumberFormat(const NumberFormatSettings& settings) {
    FormatState().settings = settings;
    FormatState().built = true;
}

void ResetNumberFormat() {
    FormatState().built = false;
}

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
    std::string text = PrintfText("%.*G", std::clamp(significantDigits, 1, 18), x);
    const std::size_t e = text.find('E');
    if (e != std::string::npos) {
        // printf writes "E+05" or "E-05"; the program writes "E5" and "E-5".
        const int exponent = std::atoi(text.c_str() + e + 1);
        text = text.substr(0, e) + "E" + std::to_string(exponent);
    }
    return WithLocaleSeparator(text);
}

double EditBoxToDouble(EditBox& box, const std::string& minText, const std::string& defaultText,
                       const std::string& maxText) {
    return ReadBox(box, minText, defaultText, maxText, ParseLocaleFloat,
                   "Invalid String Argument in EditBoxToDouble function.");
}

std::int32_t EditBoxToInt(EditBox& box, const std::string& minText, const std::string& defaultText,
                          const std::string& maxText) {
    return static_cast<std::int32_t>(ReadBox(box, minText, defaultText, maxText, ParseInteger,
                                             "Invalid String Argument in EditBoxToInt function."));
}

std::int32_t NearestInt(double x) {
    if (std::fabs(x) <= Int32Limit)
        return static_cast<std::int32_t>(x >= 0.0 ? std::floor(x + 0.5) : std::ceil(x - 0.5));
    if (!nearestIntOverflowReported) {
        nearestIntOverflowReported = true;
        ShowMessage("ERROR: Value out of range in NearestInt() UtilityFunctions");
    }
    // Symmetric limits: the most negative int has no positive counterpart.
    return x >= 0.0 ? 2147483647 : -2147483647;
}

void ResetNearestIntOverflowReport() {
    nearestIntOverflowReported = false;
}

}  // namespace nerivane
