// The files a user keeps: design files saved and opened byte for byte, rejected whole, never
// torn by a failed or killed save; the settings file's lines and the recent-files list.
#include "files/Filesaveread.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>

#include "app/Initializevars.h"
#include "files/Atomicwrite.h"
#include "files/Settingsfile.h"

namespace nerivane {
namespace {

namespace fs = std::filesystem;

// Two designs are the same when their saved records are, byte for byte (NaN included).
bool Same(const DesignState& a, const DesignState& b) {
    const DesignRecord first = ToRecord(a), second = ToRecord(b);
    return std::memcmp(&first, &second, sizeof first) == 0;
}

class DesignFiles : public ::testing::Test {
  protected:
    void SetUp() override {
        folder = fs::temp_directory_path() /
                 ("nerivane_files_" + std::to_string(::getpid()) + "_" +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    void TearDown() override { fs::remove_all(folder); }
    std::string Path(const std::string& name) const { return (folder / name).string(); }

    // Every byte drawn at random, then made usable as an opened file would be: no field keeps
    // its default, so a field lost on the way shows.
    static DesignRecord UnusualRecord() {
        DesignRecord r;
        std::mt19937 generator(7);
        for (std::size_t i = 0; i < sizeof r; ++i)
            reinterpret_cast<unsigned char*>(&r)[i] = static_cast<unsigned char>(generator());
        SanitizeDesignRecord(r);
        return ToRecord(FromRecord(r));
    }
    static DesignState Unusual() { return FromRecord(UnusualRecord()); }

    void WriteBytes(const std::string& path, const void* bytes, std::size_t count) {
        std::ofstream(path, std::ios::binary).write(static_cast<const char*>(bytes), count);
    }

    fs::path folder;
};

TEST_F(DesignFiles, EveryFieldSurvivesSaveAndOpenByteForByte) {
    const DesignState saved = Unusual();
    ASSERT_TRUE(WriteDesignFile(Path("a.kq_opamp"), saved));
    EXPECT_EQ(fs::file_size(Path("a.kq_opamp")), 2016u);
    std::ifstream file(Path("a.kq_opamp"), std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)), {});
    const DesignRecord record = ToRecord(saved);
    EXPECT_EQ(std::memcmp(bytes.data(), &record, sizeof record), 0);
    DesignState opened = DefaultDesignState();
    ASSERT_EQ(ReadDesignFile(Path("a.kq_opamp"), opened).outcome, OpenOutcome::Opened);
    EXPECT_TRUE(Same(opened, saved));
}

struct Rejection {
    const char* what;
    std::size_t size;
    std::int32_t sizeField;
    std::int32_t major;
    std::int32_t minor;
    bool foreign;
};

TEST_F(DesignFiles, RejectionsLeaveTheDesignUntouched) {
    // clang-format off
    const Rejection cases[] = {
        {"short file",            2000, 2016, 2, 2, false},
        {"long file",             2017, 2016, 2, 2, false},
        {"foreign identity",      2016, 2016, 2, 2, true},
        {"version 2.3",           2016, 2016, 2, 3, false},
        {"version 1.2",           2016, 2016, 1, 2, false},
        {"version 3.0",           2016, 2016, 3, 0, false},
        {"1248 bytes saying 2016",1248, 2016, 2, 2, false},
        {"2016 bytes saying 1248",2016, 1248, 2, 2, false},
        {"empty file",            0,    2016, 2, 2, false},
    };
    // clang-format on
    for (const Rejection& c : cases) {
        DesignRecord record = UnusualRecord();
        record.RecordSize = c.sizeField;
        record.VersionMajor = c.major;
        record.VersionMinor = c.minor;
        if (c.foreign) record.Identity[0] = u'X';
        std::vector<unsigned char> bytes(c.size, 0x5A);
        if (c.size > 0) std::memcpy(bytes.data(), &record, std::min(c.size, sizeof record));
        WriteBytes(Path("r.kq_opamp"), bytes.data(), bytes.size());
        const DesignState before = DefaultDesignState();
        DesignState design = before;
        EXPECT_EQ(ReadDesignFile(Path("r.kq_opamp"), design).outcome, OpenOutcome::Incompatible)
            << c.what;
        EXPECT_TRUE(Same(design, before)) << c.what;
    }
}

TEST_F(DesignFiles, OlderVersionsAndTheShorterFormatOpen) {
    for (const auto& [major, minor] : {std::pair{2, -2}, {2, 0}, {1, 1}, {1, -1}, {1, 0}}) {
        DesignRecord record = UnusualRecord();
        record.VersionMajor = major;
        record.VersionMinor = minor;
        WriteBytes(Path("v.kq_opamp"), &record, sizeof record);
        DesignState design = DefaultDesignState();
        EXPECT_EQ(ReadDesignFile(Path("v.kq_opamp"), design).outcome, OpenOutcome::Opened)
            << major << "." << minor;
    }
    DesignRecord older = UnusualRecord();
    older.RecordSize = 1248;
    WriteBytes(Path("old.kq_opamp"), &older, 1248);
    DesignState design = DefaultDesignState();
    design.Sections.NumS0[19] = 7.5;  // beyond the older record's end: keeps its value
    ASSERT_EQ(ReadDesignFile(Path("old.kq_opamp"), design).outcome, OpenOutcome::Opened);
    EXPECT_EQ(design.F0, older.F0);
    EXPECT_EQ(design.SectionC2[19], older.SectionC2[19]);
    EXPECT_EQ(design.Sections.NumS0[19], 7.5);
}

TEST_F(DesignFiles, FailedSavesLeaveTheOldFileWhole) {
    const DesignState old = Unusual();
    ASSERT_TRUE(WriteDesignFile(Path("keep.kq_opamp"), old));
    // A folder where the file should be cannot be replaced by a file.
    fs::create_directories(Path("busy.kq_opamp/inside"));
    EXPECT_FALSE(WriteDesignFile(Path("busy.kq_opamp"), DefaultDesignState()));
    EXPECT_TRUE(fs::is_directory(Path("busy.kq_opamp/inside")));
    // A folder nobody may write into, and one that does not exist.
    EXPECT_FALSE(WriteDesignFile("/proc/nerivane.kq_opamp", old));
    EXPECT_FALSE(WriteDesignFile(Path("missing/x.kq_opamp"), old));
    DesignState design = DefaultDesignState();
    ASSERT_EQ(ReadDesignFile(Path("keep.kq_opamp"), design).outcome, OpenOutcome::Opened);
    EXPECT_TRUE(Same(design, old));
    for (const auto& entry : fs::directory_iterator(folder))  // no half-written leftovers
        EXPECT_EQ(entry.path().string().find(".nerivane-saving-"), std::string::npos);
}

// A pipe a script reads (or a device) is written into, not replaced by a file.
TEST_F(DesignFiles, APipeIsWrittenIntoAndStaysAPipe) {
    const std::string path = Path("pipe");
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    // Held open for reading and writing, so the writer's open does not wait for a reader.
    const int reader = ::open(path.c_str(), O_RDWR | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    EXPECT_TRUE(WriteFileAtomically(path, "abc"));
    char bytes[8] = {};
    EXPECT_EQ(::read(reader, bytes, sizeof bytes), 3);
    EXPECT_STREQ(bytes, "abc");
    ::close(reader);
    EXPECT_TRUE(fs::is_fifo(path));
}

// A save killed at any moment leaves either the old design or the new one, never a torn file.
TEST_F(DesignFiles, ASaveKilledHalfWayLeavesAWholeFile) {
    const DesignState oldDesign = Unusual();
    DesignState newDesign = DefaultDesignState();
    const std::string path = Path("killed.kq_opamp");
    ASSERT_TRUE(WriteDesignFile(path, oldDesign));
    for (int attempt = 0; attempt < 10; ++attempt) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (int i = 0;; ++i) WriteDesignFile(path, i % 2 ? oldDesign : newDesign);
        }
        ::usleep(2000 + 1500 * attempt);
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        DesignState design = DefaultDesignState();
        ASSERT_EQ(ReadDesignFile(path, design).outcome, OpenOutcome::Opened) << attempt;
        const bool isOld = Same(design, oldDesign);
        const bool isNew = Same(design, newDesign);
        EXPECT_TRUE(isOld || isNew) << attempt;
    }
}

TEST(ProposedFileName, CountFamilyAndTopology) {
    DesignState s = DefaultDesignState();
    s.NumPoles = 2;
    s.ResponseIndex = static_cast<Response>(8);
    s.TopologyIndex = Topology::MfbBandPass;
    EXPECT_EQ(ProposedFileName(s), "2 Pole Elliptic MFB_BPF");
    EXPECT_EQ(DesignTitle("/home/a/Kestrune/4 Pole Bessel VCVS LPF.kq_opamp"),
              "4 Pole Bessel VCVS LPF");
}

// Whatever bytes a valid header carries, the record comes out usable.
TEST(SanitizeDesignRecord, AnyBytesBecomeAUsableDesign) {
    std::mt19937 generator(99);
    for (int trial = 0; trial < 500; ++trial) {
        DesignRecord s;
        auto* bytes = reinterpret_cast<unsigned char*>(&s);
        for (std::size_t i = 0; i < sizeof s; ++i)
            bytes[i] = static_cast<unsigned char>(generator());
        SanitizeDesignRecord(s);
        ASSERT_GE(s.TopologyIndex, 0);
        ASSERT_LE(s.TopologyIndex, 6);
        ASSERT_GE(s.NumPoles, 1);
        ASSERT_LE(s.NumPoles, 20);
        ASSERT_LT(s.SelectedSection, s.NumSections);
        ASSERT_TRUE(s.F0 >= 1.0 && s.F0 <= 1e8);
        for (int i = 0; i < MaxSections; ++i) ASSERT_TRUE(s.SectionC1[i] > 0.0);
    }
}

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
