#include "response/Valuesreport.h"

#include <gtest/gtest.h>

namespace nerivane {
namespace {

using Lines = std::vector<std::string>;

SectionComponents Parts(std::initializer_list<WorkingComponents> sections) {
    SectionComponents parts{};
    int i = 0;
    for (const WorkingComponents& c : sections) parts.Store(i++, c);
    return parts;
}

TEST(CircuitValuesReport, ListsEachSectionsPartsAndLeavesOutAbsentOnes) {
    // clang-format off
    const struct { const char* what; WorkingComponents parts; Lines expected; } cases[] = {
        {"MFB low pass", {1500.0, 2200.0, 4700.0, AbsentMarker, 1e-8, 2.2e-8},
         {"Section 0", "R1 = 1.50 k\u03A9", "R2 = 2.20 k\u03A9", "R3 = 4.70 k\u03A9",
          "C1 = 10.0 nF", "C2 = 22.0 nF", ""}},
        {"unity-gain VCVS, first order", {254000.0, 0.0, OpenMarker, 0.0, 1e-10, OpenMarker},
         {"Section 0", "R1 = 254 k\u03A9", "R2 = 0.00 \u03A9", "R3 = Not Used",
          "R4 = 0.00 \u03A9", "C1 = 100 pF", "C2 = Not Used", ""}},
        {"notch", {7958.0, 31830.0, 6366.0, AbsentMarker, 1e-8, 2.2e-8},
         {"Section 0", "R1 = 7.96 k\u03A9", "R2 = 31.8 k\u03A9", "R3 = 6.37 k\u03A9",
          "C1 = 10.0 nF", "C2 = 22.0 nF", ""}},
        {"VCVS band pass", {1e5, 1e4, 2e4, 4e4, 1e-8, AbsentMarker},
         {"Section 0", "R1 = 100 k\u03A9", "R2 = 10.0 k\u03A9", "R3 = 20.0 k\u03A9",
          "R4 = 40.0 k\u03A9", "C1 = 10.0 nF", ""}},
    };
    // clang-format on
    for (const auto& c : cases)
        EXPECT_EQ(CircuitValuesReport(Parts({c.parts}), 1), c.expected) << c.what;
}

TEST(CircuitValuesReport, NumbersSectionsFromZeroAndNoSectionsGiveNoLines) {
    const SectionComponents parts = Parts({{1, 1, 1, 1, 1, 1}, {2, 2, 2, 2, 2, 2}});
    const Lines lines = CircuitValuesReport(parts, 2);
    ASSERT_EQ(lines.size(), 16u);
    EXPECT_EQ(lines[0], "Section 0");
    EXPECT_EQ(lines[8], "Section 1");
    EXPECT_TRUE(CircuitValuesReport(parts, 0).empty());
}

}  // namespace
}  // namespace nerivane
