#include "numerics/Sivalue.h"

#include <gtest/gtest.h>

namespace nerivane {
namespace {

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
