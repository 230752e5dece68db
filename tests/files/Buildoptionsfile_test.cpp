// The build options' own settings file: what it writes it reads back, in any line order, and a
// line it cannot use is named while its option keeps its value.
#include "files/Buildoptionsfile.h"

#include <gtest/gtest.h>

namespace nerivane {
namespace {

TEST(BuildOptionsFile, ReadsBackWhatItWritesInAnyOrder) {
    BuildOptions options;
    options.opAmpModel = OpAmpModel::SinglePole;
    options.resistorSeries = ResistorSeries::E192;
    options.minPracticalOhms = 2e7;  // above the default top: the order of the lines matters
    options.maxPracticalOhms = 1e8;
    options.inputAmplitudeVolts = 0.1;
    options.notchPartsIndependent = true;
    options.bestStandardValues = true;
    std::string text = BuildOptionsText(options);
    BuildOptions read;
    EXPECT_TRUE(ApplyBuildOptionsText(text, read).empty());
    EXPECT_EQ(read, options);
    // The last line first.
    const std::size_t last = text.rfind('\n', text.size() - 2);
    text = text.substr(last + 1) + text.substr(0, last + 1);
    read = {};
    EXPECT_TRUE(ApplyBuildOptionsText(text, read).empty());
    EXPECT_EQ(read, options);
}

TEST(BuildOptionsFile, NamesEveryLineItCannotUse) {
    const struct {
        const char* text;
        const char* named;
    } cases[] = {
        {"opamp-model = two-pole\n", "line 1: \"opamp-model = two-pole\""},
        {"\n# a note\nresistor-series = e24\n", "line 3"},
        {"colour = blue\n", "line 1"},
        {"input-amplitude-volts = -1\n", "line 1"},
        {"input-amplitude-volts = 1,5\n", "line 1"},
        {"notch-parts-independent = maybe\n", "line 1"},
        {"best-standard-values = 1\n", "line 1"},
        {"just words\n", "line 1"},
        {"min-practical-ohms = 1e6\nmax-practical-ohms = 1e3\n", "lines 1 and 2"},
    };
    for (const auto& c : cases) {
        BuildOptions read;
        const std::vector<std::string> messages = ApplyBuildOptionsText(c.text, read);
        ASSERT_EQ(messages.size(), 1u) << c.text;
        EXPECT_NE(messages[0].find(c.named), std::string::npos) << messages[0];
        EXPECT_EQ(read, BuildOptions{}) << c.text;
    }
}

}  // namespace
}  // namespace nerivane
