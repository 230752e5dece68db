// Numbers as text, both ways: formatting, the locale, typed boxes and their repairs, SI values
// and prefixes, as tables of calls and the text or value a person must see.
#include "numerics/Formatfunctions.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "numerics/Boxreading.h"
#include "numerics/Mathfunctions.h"
#include "numerics/Numberlocale.h"
#include "numerics/Numberreading.h"
#include "numerics/Sivalue.h"

namespace nerivane {
namespace {

constexpr double Inf = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

class Formatting : public ::testing::Test {
  protected:
    void TearDown() override { SetNumberFormat({'.', ','}); }
    Messages messages;  // what the readers had to say
};

using Written = std::pair<std::string, const char*>;  // what a call wrote, what it must write

TEST_F(Formatting, EveryFormatWritesWhatThePersonMustSee) {
    // clang-format off
    const Written rows[] = {
        {FormatEngineering(4700.0, 2, "Hz"), "4.70 kHz"},
        {FormatEngineering(1e-10, 2, "F"), "100 pF"},
        {FormatEngineering(0.00047, 2, "F"), "470 uF"},
        {FormatEngineering(0.0047, 2, "F"), "4.70 mF"},
        {FormatEngineering(-0.00047, 2, "F"), "-470 uF"},
        {FormatEngineering(1.5e-15, 2, "F"), "1.50 fF"},
        {FormatEngineering(22e6, 2, ""), "22.0 M"},
        {FormatEngineering(1e9, 3, "Hz"), "1.000 GHz"},
        {FormatEngineering(12345.0, 0, ""), "10 k"},  // shifting the point leaves no decimals
        {FormatEngineering(1.0, -1, "V"), "1 V"},
        {FormatEngineering(1.0, 20, "V"), "1.000000000000000 V"},
        {FormatEngineering(0.0, 2, "V"), "0.00 V"},
        {FormatEngineering(999.96, 2, "Hz"), "1.00 kHz"},  // rounding carries to the next prefix
        {FormatEngineering(9.9996, 3, ""), "10.00 "},
        {FormatEngineering(0.99996, 2, "V"), "1.00 V"},
        {FormatEngineering(2.2e-18, 2, "F"), "2.20 E-18F"},  // beyond the prefixes
        {FormatEngineering(1.5e12, 2, "Hz"), "1.50 E12Hz"},
        {FormatEngineering(1e47, 2, ""), "100 E45"},
        {FormatEngineering(-5e47, 2, "V"), "-500 E45V"},
        {FormatEngineering(5e47, 2, "F"), "Not Used"},
        {FormatEngineering(Inf, 2, "F"), "Not Used"},
        {FormatExponent3(4.7e-4, 2), "470E-6"},
        {FormatExponent3(1234.0, 3), "1.234E3"},
        {FormatExponent3(-0.0022, 1), "-2.2E-3"},
        {FormatExponent3(9.9996, 2), "10.0E0"},  // the carry moves the exponent and back
        {FormatExponent3(56789.0, 0), "60E3"},
        {FormatExponent3(0.0, 2), "0.00E0"},
        {FormatScientific(4.7e-7, 3), "4.700E-7"},
        {FormatScientific(-1234.56, 1), "-1.2E3"},
        {FormatScientific(9.9999, 2), "1.00E1"},
        {FormatScientific(0.0, 2), "0.00E0"},
        {FormatScientific(2.0, -3), "2E0"},
        {FormatScientific(1.0, 30), "1.000000000000000E0"},
        {FormatFixed(12.3456, 2), "12.35"},
        {FormatFixed(-12.3456, 1), "-12.3"},
        {FormatFixed(0.01, 2), "0.01"},
        {FormatFixed(0.0004, 2), "4.00E-4"},  // too small for the decimals: scientific
        {FormatFixed(-0.0004, 2), "-4.00E-4"},
        {FormatFixed(2e-18, 0), "2E-18"},
        {FormatFixed(1e-20, 3), "0.000"},  // tiny: zero
        {FormatFixed(1.5, 25), "1.500000000000000000"},
        {FormatFixedPlain(0.0004, 2), "0.00"},
        {FormatFixedPlain(-3.14159, 3), "-3.142"},
        {FormatFixedPlain(1234567.0, -1), "1234567"},
        {FormatGeneral(1234.5678, 4), "1235"},
        {FormatGeneral(123456.0, 4), "1.235E5"},
        {FormatGeneral(0.0001, 4), "0.0001"},
        {FormatGeneral(1e-300, 4), "1E-300"},
        {FormatGeneral(-1.5e12, 4), "-1.5E12"},
        {FormatGeneral(0.1, 15), "0.1"},
        {FormatGeneral(0.0, 4), "0"},
        {FormatGeneral(NaN, 4), "NAN"},
        {FormatGeneral(-Inf, 4), "-INF"},
    };
    // clang-format on
    for (const auto& [written, expected] : rows) EXPECT_EQ(written, expected);

    SetNumberFormat({',', '.'});
    // clang-format off
    const Written comma[] = {
        {FormatEngineering(4700.0, 2, "Hz"), "4,70 kHz"},
        {FormatEngineering(999.96, 2, "Hz"), "1,00 kHz"},  // the carry test re-reads a comma
        {FormatScientific(9.9999, 2), "1,00E1"},
        {FormatFixed(0.0004, 2), "4,00E-4"},
        {FormatFixedPlain(1234.5, 1), "1234,5"},
        {FormatGeneral(0.125, 4), "0,125"},
    };
    // clang-format on
    for (const auto& [written, expected] : comma) EXPECT_EQ(written, expected);
}

// Every engineering text reads back within its rounding over fifty decades, through the SI
// reader the command line uses.
TEST(FormatEngineering, ReadsBackWithinItsRounding) {
    for (int decimals = 0; decimals <= 6; ++decimals) {
        const double tolerance = 0.5 * std::pow(10.0, -decimals) * (1.0 + 1e-9);
        for (double x = 1.234567e-25; x < 1e25; x *= 3.1622777) {
            for (double value : {x, -x * 9.87654}) {
                std::string text = FormatEngineering(value, decimals, "");
                const std::string mantissa = text.substr(0, text.find(' '));
                ASSERT_TRUE(std::fabs(std::stod(mantissa)) < 1000.0 &&
                            std::fabs(std::stod(mantissa)) >= 1.0)
                    << text;
                std::erase(text, ' ');
                const std::optional<double> back = ParseSiValue(text, "");
                ASSERT_TRUE(back.has_value()) << text;
                ASSERT_LE(std::fabs(*back / value - 1.0), tolerance) << value << " -> " << text;
            }
        }
    }
}

TEST_F(Formatting, OnlyPlainDecimalNumbersAreRead) {
    const std::pair<const char*, double> read[] = {{"4.7", 4.7},
                                                   {"  -4.7\t", -4.7},
                                                   {"+4.7", 4.7},
                                                   {".5", 0.5},
                                                   {"5.", 5.0},
                                                   {"1e3", 1000.0},
                                                   {"1.5E-3", 0.0015},
                                                   {"2e+2", 200.0},
                                                   {"1e-400", 0.0},
                                                   {"1e400", HUGE_VAL},
                                                   {"-1e99999999999999999999", -HUGE_VAL}};
    for (const auto& [text, value] : read) {
        EXPECT_TRUE(ParseLocaleFloat(text).ok) << text;
        EXPECT_EQ(ParseLocaleFloat(text).value, value) << text;
    }
    for (const char* text : {"", "   ", ".", "-", "e3", "1e", "1e+", "1.2.3", "4,7", "1 000",
                             "4.7k", "--1", "inf", "nan", "0x1A"})
        EXPECT_FALSE(ParseLocaleFloat(text).ok) << '"' << text << '"';
    EXPECT_EQ(ParseFloatOr("2.5", 1.0), 2.5);
    EXPECT_EQ(ParseFloatOr("2,5", 1.0), 1.0);

    // With a decimal comma the first point is read as one too, but not by ParseFloatOr.
    SetNumberFormat({',', '.'});
    EXPECT_EQ(ParseLocaleFloat("4,7").value, 4.7);
    EXPECT_EQ(ParseLocaleFloat("4.7").value, 4.7);
    EXPECT_FALSE(ParseLocaleFloat("1.5.3").ok);
    EXPECT_FALSE(ParseLocaleFloat("1,5.3").ok);
    EXPECT_EQ(ParseFloatOr("4,7", 1.0), 4.7);
    EXPECT_EQ(ParseFloatOr("4.7", 1.0), 1.0);
}

TEST(NumberFormatForLocaleName, KnowsWhichLocalesUseADecimalComma) {
    for (const char* name : {"", "C", "POSIX", "C.UTF-8", "en_US.UTF-8", "en_GB", "ja_JP.eucJP",
                             "de_CH.UTF-8", "it_CH.UTF-8", "es_MX.UTF-8"})
        EXPECT_EQ(NumberFormatForLocaleName(name).decimalSeparator, '.') << '"' << name << '"';
    for (const char* name : {"de_DE.UTF-8", "de_AT", "de", "fr_FR@euro", "fr_CA.UTF-8",
                             "pt_BR.UTF-8", "ru_RU.KOI8-R", "sv_SE.UTF-8", "nb_NO.UTF-8",
                             "tr_TR.UTF-8", "DE_de.utf8", "de-DE", "es_ES.UTF-8", "en_ZA.UTF-8"})
        EXPECT_EQ(NumberFormatForLocaleName(name).decimalSeparator, ',') << '"' << name << '"';
}

// The first non-empty of LC_ALL, LC_NUMERIC and LANG names the locale, read once until reset.
TEST_F(Formatting, TheFirstLocaleVariableSetIsReadOnce) {
    const char* names[] = {"LC_ALL", "LC_NUMERIC", "LANG"};
    std::vector<std::optional<std::string>> saved;
    for (const char* name : names)
        saved.push_back(std::getenv(name) ? std::optional<std::string>(std::getenv(name))
                                          : std::nullopt);
    const auto set = [&](const char* name, const char* value) {
        value ? setenv(name, value, 1) : unsetenv(name);
    };
    const std::pair<std::array<const char*, 3>, char> rows[] = {
        {{"de_DE.UTF-8", "en_US.UTF-8", "en_US.UTF-8"}, ','},
        {{"", "de_DE.UTF-8", "C"}, ','},
        {{nullptr, "en_US.UTF-8", "de_DE.UTF-8"}, '.'},
        {{nullptr, nullptr, "fr_FR.UTF-8"}, ','},
        {{"C", "de_DE.UTF-8", "de_DE.UTF-8"}, '.'},
        {{nullptr, nullptr, nullptr}, '.'}};
    for (const auto& [values, separator] : rows) {
        for (int i = 0; i < 3; ++i) set(names[i], values[i]);
        ResetNumberFormat();
        EXPECT_EQ(CurrentNumberFormat().decimalSeparator, separator) << values[2];
        set("LC_ALL", "de_DE.UTF-8");  // read once: no effect until the next reset
        EXPECT_EQ(CurrentNumberFormat().decimalSeparator, separator);
    }
    for (int i = 0; i < 3; ++i) set(names[i], saved[i] ? saved[i]->c_str() : nullptr);
}

struct BoxRow {
    const char* text;
    double value;
    const char* finalText;  // nullptr: the text stays as typed
};

// A box keeps what it can read within its limits; anything else is replaced by the default or
// the nearer limit and marked repaired (a mark from an earlier read does not linger).
TEST_F(Formatting, BoxesRepairWhatTheyCannotTake) {
    // clang-format off
    const BoxRow doubles[] = {
        {"50", 50.0, nullptr}, {" 2.5e1", 25.0, nullptr}, {"1", 1.0, nullptr},
        {"100", 100.0, nullptr}, {"abc", 10.0, "10"}, {"", 10.0, "10"}, {"0.5", 1.0, "1"},
        {"-7", 1.0, "1"}, {"500", 100.0, "100"}, {"1e400", 100.0, "100"},
    };
    const BoxRow ints[] = {
        {"42", 42, nullptr}, {" +42 ", 42, nullptr}, {"-2147483648", -2147483648.0, nullptr},
        {"0x1F", 31, nullptr}, {"0X1f", 31, nullptr}, {"$1F", 31, nullptr}, {"-$10", -16, nullptr},
        {"2147483648", 2147483647, "$7FFFFFFF"}, {"-2147483649", -2147483648.0, "-2147483648"},
        {"0x80000000", 2147483647, "$7FFFFFFF"},
        {"99999999999999999999999", 2147483647, "$7FFFFFFF"},
        {"1.5", 7, "7"}, {"1e3", 7, "7"}, {"0x", 7, "7"}, {"$-5", 7, "7"}, {"--5", 7, "7"},
        {"", 7, "7"},
    };
    // clang-format on
    for (const BoxRow& row : doubles) {
        TextBox box(row.text);
        box.SetRepaired(true);
        EXPECT_EQ(EditBoxToDouble(box, "1", "10", "100", messages), row.value) << row.text;
        EXPECT_EQ(box.Text(), row.finalText ? row.finalText : row.text);
        EXPECT_EQ(box.Repaired(), row.finalText != nullptr) << row.text;
    }
    for (const BoxRow& row : ints) {
        TextBox box(row.text);
        EXPECT_EQ(EditBoxToInt(box, "-2147483648", "7", "$7FFFFFFF", messages), row.value)
            << row.text;
        EXPECT_EQ(box.Text(), row.finalText ? row.finalText : row.text);
        EXPECT_EQ(box.Repaired(), row.finalText != nullptr) << row.text;
    }
    TextBox low("0"), high("21");
    EXPECT_EQ(EditBoxToInt(low, "2", "4", "20", messages), 2);
    EXPECT_EQ(EditBoxToInt(high, "2", "4", "20", messages), 20);
    EXPECT_EQ(high.Text(), "20");
    EXPECT_TRUE(messages.empty());

    // A point typed under a decimal comma is kept; two points are not a number.
    SetNumberFormat({',', '.'});
    TextBox point("1.5"), twoPoints("1.5.3");
    EXPECT_EQ(EditBoxToDouble(point, "0", "2", "10", messages), 1.5);
    EXPECT_FALSE(point.Repaired());
    EXPECT_EQ(EditBoxToDouble(twoPoints, "0", "2,5", "10", messages), 2.5);
    EXPECT_EQ(twoPoints.Text(), "2,5");
}

TEST_F(Formatting, NearestIntRoundsHalfAwayAndReportsOnlyTheFirstOverflow) {
    // clang-format off
    const std::pair<double, std::int32_t> rows[] = {{2.5, 3}, {-2.5, -3}, {2.4999, 2}, {-0.4, 0},
        {3e9, 2147483647}, {-3e9, -2147483647}, {-2147483648.0, -2147483647}};
    // clang-format on
    ResetNearestIntOverflowReport();
    EXPECT_EQ(NearestInt(2147483647.0, &messages), 2147483647);
    EXPECT_TRUE(messages.empty());
    for (const auto& [x, expected] : rows) EXPECT_EQ(NearestInt(x, &messages), expected) << x;
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].text, "ERROR: Value out of range in NearestInt() UtilityFunctions");
}

TEST(ParseSiValue, ReadsPrefixesAndUnits) {
    // clang-format off
    const struct { const char* text; const char* unit; double value; } cases[] = {
        {"5k",     "Hz", 5e3},   {"1.5M",  "Hz", 1.5e6}, {"250",   "Hz", 250.0},
        {"2.2kHz", "Hz", 2.2e3}, {"5hz",   "Hz", 5.0},   {"10n",   "F",  10e-9},
        {"2.2nF",  "F",  2.2e-9},{"100p",  "F",  100e-12},{"10F",  "F",  10.0},
        {"10f",    "F",  10e-15},{"22n",   "F",  22e-9}, {"4.7u",  "F",  4.7e-6},
        {"+3",     "ohm", 3.0},  {"1e3k",  "Hz", 1e6},   {"-2m",   "F",  -2e-3},
    };
    // clang-format on
    for (const auto& c : cases) {
        const std::optional<double> value = ParseSiValue(c.text, c.unit);
        ASSERT_TRUE(value.has_value()) << c.text;
        EXPECT_EQ(*value, c.value) << c.text;
    }
}

TEST(ParseSiValue, RefusesWhatIsNotAValue) {
    for (const char* text : {"", "k", "abc", "5x", "5kx", "5 k", "nan", "inf", "1e400", "5kF"})
        EXPECT_FALSE(ParseSiValue(text, "Hz").has_value()) << text;
}

TEST(ParseTypedValue, ReadsWhatAPersonTypes) {
    // clang-format off
    const struct { const char* text; const char* unit; double value; } cases[] = {
        {"0,022 \u00B5F", "F", 22e-9}, {"4.7\u03BCF", "F", 4.7e-6}, {"10 k\u2126", "\u03A9", 1e4},
        {" 2 k \u03A9 ", "\u03A9", 2e3}, {"1\t5 n", "F", 15e-9},
    };
    // clang-format on
    for (const auto& c : cases) EXPECT_EQ(ParseTypedValue(c.text, c.unit), c.value) << c.text;
}

// What SiText writes reads back to the value within its digits, over the whole range.
TEST(SiText, ReadsBackWithinItsDigits) {
    // clang-format off
    const struct { double value; const char* text; } cases[] = {
        {6666.666, "6.667k\u03A9"}, {4.0, "4\u03A9"}, {400e-6, "400u\u03A9"}, {0.1, "100m\u03A9"},
        {1e-16, "1e-16\u03A9"}, {-2.5e7, "-25M\u03A9"}, {999.96, "1k\u03A9"}, {3e12, "3e+12\u03A9"},
    };
    // clang-format on
    for (const auto& c : cases) EXPECT_EQ(SiText(c.value, 4, "\u03A9"), c.text) << c.value;
    double x = 1.234567e-20;
    for (int i = 0; i < 2000; ++i, x *= 1.0517) {
        const std::optional<double> back = ParseSiValue(SiText(x, 4, "F"), "F");
        ASSERT_TRUE(back.has_value()) << SiText(x, 4, "F");
        EXPECT_NEAR(*back, x, 5e-4 * x) << SiText(x, 4, "F");
    }
}

TEST(ExactText, ReadsBackToTheSameDouble) {
    for (double x : {0.1, 1.0 / 3.0, 2.2e-9, 12345.678901234567})
        EXPECT_EQ(std::stod(ExactText(x)), x);
}

}  // namespace
}  // namespace nerivane
