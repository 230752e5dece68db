#include "files/Settingsfile.h"

#include <gtest/gtest.h>

#include <set>

namespace nerivane {
namespace {

const auto Everything = [](const std::string&) { return true; };

TEST(SettingsText, EightIdentifiedLines) {
    ProgramSettings settings;
    settings.versionText = "Version 2.2";
    settings.samplingFrequencyText = "44,1";
    settings.thresholdText = "20,5";
    settings.readOutMode = 1;
    settings.recentFiles = {"/d/a.kq_opamp", "/d/b.kq_opamp", "", ""};
    EXPECT_EQ(SettingsText(settings),
              "1 , Version 2.2 , Version String\n"
              "10 , 44,1 , Sampling Frequency\n"
              "12 , 20,5 , Plot Threshold\n"
              "30 , 1 , Mouse Read Out Menu\n"
              "50 , /d/a.kq_opamp , Previous File\n"
              "50 , /d/b.kq_opamp , Previous File\n"
              "50 ,  , Previous File\n"
              "50 ,  , Previous File\n");
}

TEST(ApplySettingsText, RoundTripsTextsAsTypedAndDropsMissingFiles) {
    ProgramSettings written;
    written.samplingFrequencyText = "48,0";
    written.thresholdText = "35,5";
    written.readOutMode = 1;
    written.recentFiles = {"/x/gone.kq_opamp", "/x/kept, with comma.kq_opamp", "/x/b.kq_opamp", ""};
    ProgramSettings read;
    const std::set<std::string> existing = {"/x/kept, with comma.kq_opamp", "/x/b.kq_opamp"};
    const auto messages = ApplySettingsText(
        SettingsText(written), read, [&](const std::string& p) { return existing.count(p) > 0; });
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(read.samplingFrequencyText, "48,0");
    EXPECT_EQ(read.thresholdText, "35,5");
    EXPECT_EQ(read.readOutMode, 1);
    EXPECT_EQ(read.recentFiles[0], "/x/kept, with comma.kq_opamp");
    EXPECT_EQ(read.recentFiles[1], "/x/b.kq_opamp");
    EXPECT_EQ(read.recentFiles[2], "");
}

TEST(ApplySettingsText, BadFilesRaiseTheirMessages) {
    ProgramSettings settings;
    EXPECT_EQ(ApplySettingsText("1 , V , Version String\n99 , x , What\n", settings, Everything),
              (std::vector<std::string>{InvalidIdentifierMessage, IncompleteSettingsMessage}));
    EXPECT_EQ(ApplySettingsText("garbage without separators", settings, Everything),
              std::vector<std::string>{IncompleteSettingsMessage});
    EXPECT_TRUE(ApplySettingsText(SettingsText(ProgramSettings{}), settings, Everything).empty());
}

TEST(RecentFiles, NewestFirstNoTitleTwiceAndRemoval) {
    std::array<std::string, RecentFileCount> recent{};
    for (const char* path :
         {"/a/1.kq_opamp", "/a/2.kq_opamp", "/a/3.kq_opamp", "/a/4.kq_opamp", "/a/5.kq_opamp"})
        AddRecentFile(recent, path);
    EXPECT_EQ(recent, (std::array<std::string, 4>{"/a/5.kq_opamp", "/a/4.kq_opamp", "/a/3.kq_opamp",
                                                  "/a/2.kq_opamp"}));
    AddRecentFile(recent, "/elsewhere/3.kq_opamp");  // same file name in another folder
    EXPECT_EQ(recent, (std::array<std::string, 4>{"/elsewhere/3.kq_opamp", "/a/5.kq_opamp",
                                                  "/a/4.kq_opamp", "/a/2.kq_opamp"}));
    RemoveRecentFile(recent, "/a/5.kq_opamp");
    EXPECT_EQ(recent, (std::array<std::string, 4>{"/elsewhere/3.kq_opamp", "/a/4.kq_opamp",
                                                  "/a/2.kq_opamp", ""}));
}

}  // namespace
}  // namespace nerivane
