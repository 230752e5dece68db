#include "numerics/Formatfunctions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "numerics/MessageSink.h"

namespace nerivane {
namespace {

constexpr double Inf = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

// The messages recorded by the test main's sink, emptied before each test that looks at them.
std::vector<RecordingMessageSink::Message>& RecordedMessages() {
    return static_cast<RecordingMessageSink&>(Messages()).messages;
}

class RecordedMessagesTest : public ::testing::Test {
  protected:
    void SetUp() override { RecordedMessages().clear(); }
};

// Switches to a decimal comma and back to the point the test main pins.
class CommaLocaleTest : public RecordedMessagesTest {
  protected:
    void SetUp() override {
        RecordedMessagesTest::SetUp();
        SetNumberFormat({',', '.'});
    }
    void TearDown() override { SetNumberFormat({'.', ','}); }
};

TEST(SplitMantissaExponent, GivesOneDigitBeforeThePointOverTheWholeRange) {
    for (double x = 1e-300; x < 1e300; x *= 7.3) {
        for (double sign : {1.0, -1.0}) {
            const MantissaExponent split = SplitMantissaExponent(sign * x);
            EXPECT_GE(std::fabs(split.mantissa), 1.0) << x;
            EXPECT_LT(std::fabs(split.mantissa), 10.0) << x;
            EXPECT_NEAR(split.mantissa * std::pow(10.0, split.exponent) / (sign * x), 1.0, 1e-13)
                << x;
        }
    }
}

TEST(SplitMantissaExponent, GivesZeroForZero) {
    const MantissaExponent split = SplitMantissaExponent(0.0);
    EXPECT_EQ(split.mantissa, 0.0);
    EXPECT_EQ(split.exponent, 0);
}

TEST(RoundToSignificant, RoundsHalfAwayFromZeroAndClampsTheDigits) {
    struct Row {
        double x;
        int digits;
        double expected;
    };
    // clang-format off
    const Row rows[] = {
        {1234.5678,     3, 1230.0},
        {1234.5678,     6, 1234.57},
        {0.000123456,   2, 0.00012},
        {2.5,           1, 3.0},
        {-2.5,          1, -3.0},
        {-0.0347,       2, -0.035},
        {987.0,         0, 1000.0},           // at least one digit
        {0.1234567890123456789, 20, 0.123456789012346},  // at most fifteen
        {0.0,           3, 0.0},
    };
    // clang-format on
    for (const Row& row : rows)
        EXPECT_NEAR(RoundToSignificant(row.x, row.digits), row.expected,
                    1e-14 * std::fabs(row.expected))
            << row.x << " to " << row.digits;
}

TEST(FormatEngineering, ShowsSignificantDigitsWithAnSIPrefix) {
    struct Row {
        double x;
        int decimals;
        const char* unit;
        const char* expected;
    };
    // clang-format off
    const Row rows[] = {
        {4700.0,   2,  "Hz", "4.70 kHz"},
        {1e-10,    2,  "F",  "100 pF"},
        {0.00047,  2,  "F",  "470 uF"},
        {0.0047,   2,  "F",  "4.70 mF"},
        {-0.00047, 2,  "F",  "-470 uF"},
        {1.5e-15,  2,  "F",  "1.50 fF"},
        {22e6,     2,  "",   "22.0 M"},
        {1e9,      3,  "Hz", "1.000 GHz"},
        {12345.0,  0,  "",   "10 k"},         // shifting the point leaves no decimals
        {1.0,      -1, "V",  "1 V"},
        {1.0,      20, "V",  "1.000000000000000 V"},
        {0.0,      2,  "V",  "0.00 V"},
    };
    // clang-format on
    for (const Row& row : rows)
        EXPECT_EQ(FormatEngineering(row.x, row.decimals, row.unit), row.expected) << row.x;
}

TEST(FormatEngineering, MovesToTheNextPrefixWhenRoundingCarries) {
    EXPECT_EQ(FormatEngineering(999.96, 2, "Hz"), "1.00 kHz");
    EXPECT_EQ(FormatEngineering(9.9996, 3, ""), "10.00 ");
    EXPECT_EQ(FormatEngineering(0.99996, 2, "V"), "1.00 V");
}

TEST(FormatEngineering, WritesExponentsBeyondThePrefixes) {
    EXPECT_EQ(FormatEngineering(2.2e-18, 2, "F"), "2.20 E-18F");
    EXPECT_EQ(FormatEngineering(1.5e12, 2, "Hz"), "1.50 E12Hz");
    EXPECT_EQ(FormatEngineering(1e47, 2, ""), "100 E45");
    EXPECT_EQ(FormatEngineering(-5e47, 2, "V"), "-500 E45V");
}

TEST(FormatEngineering, ShowsHugePositiveValuesAsNotUsed) {
    EXPECT_EQ(FormatEngineering(5e47, 2, "F"), "Not Used");
    EXPECT_EQ(FormatEngineering(Inf, 2, "F"), "Not Used");
}

// Parses what FormatEngineering wrote, with its own prefix table.
std::optional<double> ReadEngineering(const std::string& text) {
    static const std::map<std::string, int> prefixes = {{"G", 9},  {"M", 6},   {"k", 3},
                                                        {"", 0},   {"m", -3},  {"u", -6},
                                                        {"n", -9}, {"p", -12}, {"f", -15}};
    const std::size_t space = text.find(' ');
    if (space == std::string::npos) return std::nullopt;
    const double mantissa = std::strtod(text.substr(0, space).c_str(), nullptr);
    if (!(std::fabs(mantissa) < 1000.0) || (mantissa != 0.0 && std::fabs(mantissa) < 1.0))
        return std::nullopt;
    const std::string prefix = text.substr(space + 1);
    const int exponent =
        prefix.starts_with('E') ? std::atoi(prefix.c_str() + 1) : prefixes.at(prefix);
    if (exponent % 3 != 0) return std::nullopt;
    return mantissa * std::pow(10.0, exponent);
}

TEST(FormatEngineering, ReadsBackWithinRoundingOverManyMagnitudes) {
    for (int decimals = 0; decimals <= 6; ++decimals) {
        const double tolerance = 0.5 * std::pow(10.0, -decimals) * (1.0 + 1e-9);
        for (double x = 1.234567e-25; x < 1e25; x *= 3.1622777) {
            for (double value : {x, -x, x * 9.87654}) {
                const std::string text = FormatEngineering(value, decimals, "");
                const std::optional<double> back = ReadEngineering(text);
                ASSERT_TRUE(back.has_value()) << value << " -> " << text;
                EXPECT_LE(std::fabs(*back - value) / std::fabs(value), tolerance)
                    << value << " -> " << text;
            }
        }
    }
}

TEST(FormatExponent3, WritesAnEngineeringExponentWithoutSpaceOrUnit) {
    struct Row {
        double x;
        int decimals;
        const char* expected;
    };
    // clang-format off
    const Row rows[] = {
        {4.7e-4,   2, "470E-6"},
        {1234.0,   3, "1.234E3"},
        {1.0,      2, "1.00E0"},
        {-0.0022,  1, "-2.2E-3"},
        {9.9996,   2, "10.0E0"},     // the carry moves the exponent, then back to a multiple of 3
        {56789.0,  0, "60E3"},       // no decimals left: the mantissa is rounded to one digit
        {0.0,      2, "0.00E0"},
    };
    // clang-format on
    for (const Row& row : rows)
        EXPECT_EQ(FormatExponent3(row.x, row.decimals), row.expected) << row.x;
}

TEST(FormatScientific, WritesOneDigitBeforeThePoint) {
    struct Row {
        double x;
        int decimals;
        const char* expected;
    };
    // clang-format off
    const Row rows[] = {
        {4.7e-7,    3,  "4.700E-7"},
        {-1234.56,  1,  "-1.2E3"},
        {9.9999,    2,  "1.00E1"},       // rounding carries into the exponent
        {0.0,       2,  "0.00E0"},
        {2.0,       -3, "2E0"},
        {1.0,       30, "1.000000000000000E0"},
    };
    // clang-format on
    for (const Row& row : rows)
        EXPECT_EQ(FormatScientific(row.x, row.decimals), row.expected) << row.x;
}

TEST(FormatFixed, ShowsTooSmallValuesInScientificAndTinyOnesAsZero) {
    struct Row {
        double x;
        int decimals;
        const char* expected;
    };
    // clang-format off
    const Row rows[] = {
        {12.3456,  2,  "12.35"},
        {-12.3456, 1,  "-12.3"},
        {0.01,     2,  "0.01"},
        {0.0004,   2,  "4.00E-4"},
        {-0.0004,  2,  "-4.00E-4"},
        {2e-18,    0,  "2E-18"},
        {1e-20,    3,  "0.000"},
        {1e-20,    0,  "0"},
        {0.0,      2,  "0.00"},
        {1.5,      25, "1.500000000000000000"},
    };
    // clang-format on
    for (const Row& row : rows) EXPECT_EQ(FormatFixed(row.x, row.decimals), row.expected) << row.x;
}

TEST(FormatFixedPlain, HasNoSmallValueGuard) {
    EXPECT_EQ(FormatFixedPlain(0.0004, 2), "0.00");
    EXPECT_EQ(FormatFixedPlain(-3.14159, 3), "-3.142");
    EXPECT_EQ(FormatFixedPlain(1234567.0, -1), "1234567");
    EXPECT_EQ(FormatFixedPlain(0.25, 30), "0.250000000000000000");
}

TEST(FormatGeneral, ChoosesFixedOrExponentAndWritesTheExponentShort) {
    struct Row {
        double x;
        int digits;
        const char* expected;
    };
    // clang-format off
    const Row rows[] = {
        {1234.5678,  4,  "1235"},
        {123456.0,   4,  "1.235E5"},
        {0.0001,     4,  "0.0001"},
        {1e-300,     4,  "1E-300"},
        {-1.5e12,    4,  "-1.5E12"},
        {0.1,        15, "0.1"},
        {0.0,        4,  "0"},
        {NaN,        4,  "NAN"},
        {Inf,        4,  "INF"},
        {-Inf,       4,  "-INF"},
    };
    // clang-format on
    for (const Row& row : rows) EXPECT_EQ(FormatGeneral(row.x, row.digits), row.expected) << row.x;
}

TEST(ParseLocaleFloat, AcceptsOnlyPlainDecimalNumbers) {
    struct Row {
        const char* text;
        bool ok;
        double value;
    };
    // clang-format off
    const Row rows[] = {
        {"4.7",        true,  4.7},
        {"  -4.7\t",   true,  -4.7},
        {"+4.7",       true,  4.7},
        {".5",         true,  0.5},
        {"5.",         true,  5.0},
        {"1e3",        true,  1000.0},
        {"1.5E-3",     true,  0.0015},
        {"2e+2",       true,  200.0},
        {"1e-400",     true,  0.0},       // underflow reads as zero
        {"1e400",      true,  HUGE_VAL},  // too large to hold: limited like any large value
        {"-1e99999999999999999999", true, -HUGE_VAL},
        {"",           false, 0.0},
        {"   ",        false, 0.0},
        {".",          false, 0.0},
        {"-",          false, 0.0},
        {"e3",         false, 0.0},
        {"1e",         false, 0.0},
        {"1e+",        false, 0.0},
        {"1.2.3",      false, 0.0},
        {"4,7",        false, 0.0},       // a comma is not the separator here
        {"1 000",      false, 0.0},
        {"4.7k",       false, 0.0},
        {"--1",        false, 0.0},
        {"inf",        false, 0.0},
        {"nan",        false, 0.0},
        {"0x1A",       false, 0.0},
    };
    // clang-format on
    for (const Row& row : rows) {
        const ParsedFloat parsed = ParseLocaleFloat(row.text);
        EXPECT_EQ(parsed.ok, row.ok) << '"' << row.text << '"';
        if (row.ok) {
            EXPECT_EQ(parsed.value, row.value) << '"' << row.text << '"';
        }
    }
}

TEST(ParseFloatOr, ReturnsTheFallbackForBadText) {
    EXPECT_DOUBLE_EQ(ParseFloatOr("2.5", 1.0), 2.5);
    EXPECT_DOUBLE_EQ(ParseFloatOr("2,5", 1.0), 1.0);
    EXPECT_DOUBLE_EQ(ParseFloatOr("", -7.0), -7.0);
}

TEST_F(CommaLocaleTest, ReadsAPointOrACommaAsTheSeparator) {
    EXPECT_DOUBLE_EQ(ParseLocaleFloat("4,7").value, 4.7);
    EXPECT_DOUBLE_EQ(ParseLocaleFloat("4.7").value, 4.7);
    EXPECT_FALSE(ParseLocaleFloat("1.5.3").ok);  // only the first point is adapted
    EXPECT_FALSE(ParseLocaleFloat("1,5.3").ok);
}

TEST_F(CommaLocaleTest, ParseFloatOrDoesNotAdaptAPoint) {
    EXPECT_DOUBLE_EQ(ParseFloatOr("4,7", 1.0), 4.7);
    EXPECT_DOUBLE_EQ(ParseFloatOr("4.7", 1.0), 1.0);
}

TEST_F(CommaLocaleTest, FormatsWithTheComma) {
    EXPECT_EQ(FormatEngineering(4700.0, 2, "Hz"), "4,70 kHz");
    EXPECT_EQ(FormatEngineering(999.96, 2, "Hz"), "1,00 kHz");  // the carry test re-reads a comma
    EXPECT_EQ(FormatScientific(9.9999, 2), "1,00E1");
    EXPECT_EQ(FormatFixed(0.0004, 2), "4,00E-4");
    EXPECT_EQ(FormatFixedPlain(1234.5, 1), "1234,5");
    EXPECT_EQ(FormatGeneral(0.125, 4), "0,125");
}

TEST_F(CommaLocaleTest, BoxKeepsAPointTypedEntry) {
    TextBox box("1.5");
    EXPECT_DOUBLE_EQ(EditBoxToDouble(box, "0", "2", "10"), 1.5);
    EXPECT_EQ(box.Text(), "1.5");
    EXPECT_FALSE(box.Repaired());
    EXPECT_TRUE(RecordedMessages().empty());
}

TEST_F(CommaLocaleTest, BoxWithTwoPointsIsResetToTheDefault) {
    TextBox box("1.5.3");
    EXPECT_DOUBLE_EQ(EditBoxToDouble(box, "0", "2,5", "10"), 2.5);
    EXPECT_EQ(box.Text(), "2,5");
    EXPECT_TRUE(box.Repaired());
}

TEST(NumberFormatForLocaleName, KnowsWhichLocalesUseADecimalComma) {
    struct Row {
        const char* name;
        char separator;
    };
    // clang-format off
    const Row rows[] = {
        {"",               '.'},
        {"C",              '.'},
        {"POSIX",          '.'},
        {"C.UTF-8",        '.'},
        {"en_US.UTF-8",    '.'},
        {"en_GB",          '.'},
        {"ja_JP.eucJP",    '.'},
        {"de_DE.UTF-8",    ','},
        {"de_AT",          ','},
        {"de",             ','},
        {"fr_FR@euro",     ','},
        {"fr_CA.UTF-8",    ','},
        {"pt_BR.UTF-8",    ','},
        {"ru_RU.KOI8-R",   ','},
        {"sv_SE.UTF-8",    ','},
        {"nb_NO.UTF-8",    ','},
        {"tr_TR.UTF-8",    ','},
        {"DE_de.utf8",     ','},
        {"de-DE",          ','},
        {"de_CH.UTF-8",    '.'},
        {"it_CH.UTF-8",    '.'},
        {"es_MX.UTF-8",    '.'},
        {"es_ES.UTF-8",    ','},
        {"en_ZA.UTF-8",    ','},
    };
    // clang-format on
    for (const Row& row : rows)
        EXPECT_EQ(NumberFormatForLocaleName(row.name).decimalSeparator, row.separator)
            << '"' << row.name << '"';
}

// Sets the locale variables for one test and puts back what the process had.
class LocaleEnvironmentTest : public ::testing::Test {
  protected:
    static constexpr const char* Variables[] = {"LC_ALL", "LC_NUMERIC", "LANG"};

    void SetUp() override {
        for (const char* variable : Variables) {
            const char* value = std::getenv(variable);
            saved_.push_back(value ? std::optional<std::string>(value) : std::nullopt);
        }
    }
    void TearDown() override {
        for (std::size_t i = 0; i < saved_.size(); ++i) Set(Variables[i], saved_[i]);
        SetNumberFormat({'.', ','});
    }
    static void Set(const char* variable, const std::optional<std::string>& value) {
        if (value)
            setenv(variable, value->c_str(), 1);
        else
            unsetenv(variable);
    }

  private:
    std::vector<std::optional<std::string>> saved_;
};

TEST_F(LocaleEnvironmentTest, FirstNonEmptyVariableNamesTheLocale) {
    struct Row {
        const char* lcAll;
        const char* lcNumeric;
        const char* lang;
        char separator;
    };
    // clang-format off
    const Row rows[] = {
        {"de_DE.UTF-8", "en_US.UTF-8", "en_US.UTF-8", ','},
        {"",            "de_DE.UTF-8", "en_US.UTF-8", ','},
        {nullptr,       "en_US.UTF-8", "de_DE.UTF-8", '.'},
        {nullptr,       nullptr,       "fr_FR.UTF-8", ','},
        {"C",           "de_DE.UTF-8", "de_DE.UTF-8", '.'},
        {nullptr,       nullptr,       nullptr,       '.'},
    };
    // clang-format on
    for (const Row& row : rows) {
        const auto value = [](const char* text) {
            return text ? std::optional<std::string>(text) : std::nullopt;
        };
        Set("LC_ALL", value(row.lcAll));
        Set("LC_NUMERIC", value(row.lcNumeric));
        Set("LANG", value(row.lang));
        ResetNumberFormat();
        EXPECT_EQ(CurrentNumberFormat().decimalSeparator, row.separator)
            << (row.lcAll ? row.lcAll : "unset") << " / "
            << (row.lcNumeric ? row.lcNumeric : "unset") << " / "
            << (row.lang ? row.lang : "unset");
    }
}

TEST_F(LocaleEnvironmentTest, SettingsAreReadOnceUntilReset) {
    Set("LC_ALL", "de_DE.UTF-8");
    ResetNumberFormat();
    EXPECT_EQ(CurrentNumberFormat().decimalSeparator, ',');
    Set("LC_ALL", "en_US.UTF-8");
    EXPECT_EQ(CurrentNumberFormat().decimalSeparator, ',');
    EXPECT_EQ(FormatFixedPlain(0.5, 1), "0,5");
}

struct BoxRow {
    const char* text;
    double value;
    const char* finalText;
    bool repaired;
};

using EditBoxToDoubleTest = RecordedMessagesTest;

TEST_F(EditBoxToDoubleTest, RepairsUnreadableAndOutOfRangeEntries) {
    // clang-format off
    const BoxRow rows[] = {
        {"50",     50.0,  "50",     false},
        {" 2.5e1", 25.0,  " 2.5e1", false},
        {"1",      1.0,   "1",      false},   // the limits themselves are legal
        {"100",    100.0, "100",    false},
        {"abc",    10.0,  "10",     true},
        {"",       10.0,  "10",     true},
        {"0.5",    1.0,   "1",      true},
        {"-7",     1.0,   "1",      true},
        {"500",    100.0, "100",    true},
        {"1e400",  100.0, "100",    true},    // too large is too large, however large
    };
    // clang-format on
    for (const BoxRow& row : rows) {
        TextBox box(row.text);
        box.SetRepaired(true);  // a repair from an earlier read must not linger
        EXPECT_DOUBLE_EQ(EditBoxToDouble(box, "1", "10", "100"), row.value) << row.text;
        EXPECT_EQ(box.Text(), row.finalText) << row.text;
        EXPECT_EQ(box.Repaired(), row.repaired) << row.text;
    }
    EXPECT_TRUE(RecordedMessages().empty());
}

TEST_F(EditBoxToDoubleTest, BadLimitTextIsReportedAndCountsAsOne) {
    TextBox box("0.5");
    EXPECT_DOUBLE_EQ(EditBoxToDouble(box, "low", "10", "100"), 1.0);
    EXPECT_EQ(box.Text(), "low");
    EXPECT_TRUE(box.Repaired());
    ASSERT_EQ(RecordedMessages().size(), 1u);
    EXPECT_EQ(RecordedMessages()[0].text, "Invalid String Argument in EditBoxToDouble function.");

    TextBox unreadable("x");
    EXPECT_DOUBLE_EQ(EditBoxToDouble(unreadable, "0", "none", "5"), 1.0);
    EXPECT_EQ(unreadable.Text(), "none");
    EXPECT_TRUE(unreadable.Repaired());
    EXPECT_EQ(RecordedMessages().size(), 2u);
}

using EditBoxToIntTest = RecordedMessagesTest;

TEST_F(EditBoxToIntTest, ReadsDecimalAndHexAndRepairsTheRest) {
    // clang-format off
    const BoxRow rows[] = {
        {"42",          42.0,          "42",          false},
        {" +42 ",       42.0,          " +42 ",       false},
        {"-2147483648", -2147483648.0, "-2147483648", false},
        {"2147483647",  2147483647.0,  "2147483647",  false},
        {"0x1F",        31.0,          "0x1F",        false},
        {"0X1f",        31.0,          "0X1f",        false},
        {"$1F",         31.0,          "$1F",         false},
        {"-$10",        -16.0,         "-$10",        false},
        {"2147483648",  2147483647.0,  "$7FFFFFFF",   true},
        {"-2147483649", -2147483648.0, "-2147483648", true},
        {"0x80000000",  2147483647.0,  "$7FFFFFFF",   true},
        {"99999999999999999999999", 2147483647.0, "$7FFFFFFF", true},
        {"1.5",         7.0,           "7",           true},
        {"1e3",         7.0,           "7",           true},
        {"0x",          7.0,           "7",           true},
        {"$-5",         7.0,           "7",           true},
        {"--5",         7.0,           "7",           true},
        {"",            7.0,           "7",           true},
    };
    // clang-format on
    for (const BoxRow& row : rows) {
        TextBox box(row.text);
        EXPECT_EQ(EditBoxToInt(box, "-2147483648", "7", "$7FFFFFFF"), row.value) << row.text;
        EXPECT_EQ(box.Text(), row.finalText) << row.text;
        EXPECT_EQ(box.Repaired(), row.repaired) << row.text;
    }
    EXPECT_TRUE(RecordedMessages().empty());
}

TEST_F(EditBoxToIntTest, ClampsToTheLimitTexts) {
    TextBox low("0");
    EXPECT_EQ(EditBoxToInt(low, "2", "4", "20"), 2);
    EXPECT_EQ(low.Text(), "2");
    EXPECT_TRUE(low.Repaired());

    TextBox high("21");
    EXPECT_EQ(EditBoxToInt(high, "2", "4", "20"), 20);
    EXPECT_EQ(high.Text(), "20");
    EXPECT_TRUE(high.Repaired());
}

TEST_F(EditBoxToIntTest, BadLimitTextIsReported) {
    TextBox box("3");
    EXPECT_EQ(EditBoxToInt(box, "2", "4", "2.5"), 1);  // the bad maximum counts as 1
    EXPECT_EQ(box.Text(), "2.5");
    ASSERT_EQ(RecordedMessages().size(), 1u);
    EXPECT_EQ(RecordedMessages()[0].text, "Invalid String Argument in EditBoxToInt function.");
}

TEST(NearestInt, RoundsHalfAwayFromZeroAndSaturatesSymmetrically) {
    struct Row {
        double x;
        std::int32_t expected;
    };
    // clang-format off
    const Row rows[] = {
        {2.5,            3},
        {-2.5,           -3},
        {2.4999,         2},
        {-0.4,           0},
        {2147483647.0,   2147483647},
        {-2147483647.0,  -2147483647},
        {3e9,            2147483647},
        {-3e9,           -2147483647},
        {-2147483648.0,  -2147483647},
    };
    // clang-format on
    for (const Row& row : rows) EXPECT_EQ(NearestInt(row.x), row.expected) << row.x;
}

using NearestIntTest = RecordedMessagesTest;

TEST_F(NearestIntTest, ReportsOnlyTheFirstOverflow) {
    ResetNearestIntOverflowReport();
    NearestInt(1.0);
    EXPECT_TRUE(RecordedMessages().empty());
    NearestInt(-3e9);
    NearestInt(3e9);
    NearestInt(-1e300);
    ASSERT_EQ(RecordedMessages().size(), 1u);
    EXPECT_EQ(RecordedMessages()[0].text,
              "ERROR: Value out of range in NearestInt() UtilityFunctions");
}

}  // namespace
}  // namespace nerivane
