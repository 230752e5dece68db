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

TEST(ExactText, ReadsBackToTheSameDouble) {
    for (double x : {0.1, 1.0 / 3.0, 2.2e-9, 12345.678901234567})
        EXPECT_EQ(std::stod(ExactText(x)), x);
}

}  // namespace
}  // namespace nerivane
