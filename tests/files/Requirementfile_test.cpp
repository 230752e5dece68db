// The requirement's own settings file: what it writes it reads back, a line it cannot use is
// named and leaves the requirement as it was, and no file is no requirement.
#include "files/Requirementfile.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace nerivane {
namespace {

TEST(RequirementFile, ReadsBackWhatItWrites) {
    for (const char* mask : {"fp=1k,fs=3k,ap=1,as=40",
                             "fp1=9k,fp2=11.5k,fs1=7k,fs2=14k,ap=0.5,"
                             "as=30,f0=10.2k"}) {
        const Requirement written{ParseMask(mask).mask, true};
        ASSERT_TRUE(written.mask) << mask;
        Requirement read;
        EXPECT_TRUE(ApplyRequirementText(RequirementText(written), read).empty());
        EXPECT_EQ(read, written) << RequirementText(written);
    }
    Requirement read{ParseMask("fp=1k,fs=3k,ap=1,as=40").mask, true};
    EXPECT_TRUE(ApplyRequirementText(RequirementText({}), read).empty());
    EXPECT_FALSE(read.check);  // a file without a mask keeps the one held
}

TEST(RequirementFile, NamesEveryLineItCannotUse) {
    const struct {
        const char* text;
        const char* named;
    } cases[] = {
        {"mask = fp=3k,fs=1k,ap=1\n", "line 1: \"mask = fp=3k,fs=1k,ap=1\""},
        {"# note\n\nmask = fp=1k,fs=3k,ap=40,as=1\n", "line 3"},
        {"check = maybe\n", "line 1"},
        {"colour = blue\n", "line 1"},
        {"check yes\n", "line 1"},
    };
    for (const auto& c : cases) {
        Requirement read;
        const std::vector<std::string> messages = ApplyRequirementText(c.text, read);
        ASSERT_EQ(messages.size(), 1u) << c.text;
        EXPECT_NE(messages[0].find(std::string("Requirement.txt, ") + c.named), std::string::npos)
            << messages[0];
        EXPECT_EQ(read, Requirement{}) << c.text;
    }
}

TEST(RequirementFile, AMissingFileIsNoRequirement) {
    Requirement read;
    EXPECT_TRUE(ReadRequirementFile(
                    (std::filesystem::temp_directory_path() / "no such folder").string(), read)
                    .empty());
    EXPECT_EQ(read, Requirement{});
}

}  // namespace
}  // namespace nerivane
