// The windows that help a person build the design: the help viewer with every circuit's page
// and picture and the user guide, the schematic view following the design, and the parts
// list export.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QTextBrowser>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "WidgetsEnvironment.h"
#include "circuit/Sectioncircuits.h"
#include "gui/HelpForm.h"
#include "gui/ProgramWindows.h"
#include "gui/SchematicForm.h"
#include "numerics/MessageSink.h"

namespace nerivane {
namespace {

namespace fs = std::filesystem;

constexpr const char* CircuitItems[] = {"VCVSLowPass", "MFBLowPass",   "VCVSHighPass",
                                        "MFBHighPass", "VCVSBandPass", "MFBBandPass",
                                        "VCVSNotch"};

class AuxiliaryWindows : public ::testing::Test {
  protected:
    void Start(const std::string& runTimeFiles) {
        scratch_ = fs::temp_directory_path() / ("nerivane_auxiliary_" + std::to_string(::getpid()));
        fs::create_directories(scratch_);
        ProgramDirectories directories;
        directories.runTimeFilesDir = runTimeFiles;
        directories.currentDir = scratch_.string();
        windows_ = CreateProgramWindows();
        InstallMessageSink(&messages_);
        windows_.topForm->SetStartup(directories, "");
        windows_.topForm->show();
        QApplication::processEvents();
    }
    void TearDown() override {
        windows_.topForm.reset();
        InstallMessageSink(nullptr);
        fs::remove_all(scratch_);
    }
    template <typename Widget>
    Widget& Find(const char* name) {
        auto* widget = windows_.topForm->findChild<Widget*>(QString::fromLatin1(name));
        if (widget == nullptr) ADD_FAILURE() << "no " << name;
        return *widget;
    }
    void Trigger(const char* item) { Find<QAction>(item).trigger(); }
    QString HelpText() { return Find<QTextBrowser>("HelpText").toPlainText(); }
    std::string Read(const fs::path& path) {
        std::ifstream file(path);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

    fs::path scratch_;
    ProgramWindows windows_;
    RecordingMessageSink messages_;
};

TEST_F(AuxiliaryWindows, CircuitInfoShowsEachCircuitsPageAndPictureAndFollowsTheCircuit) {
    Start(NERIVANE_RUNTIME_DIR);
    Trigger("CircuitInfoMenu");
    const THelpForm& help = Find<THelpForm>("HelpForm");
    ASSERT_TRUE(help.isVisible());
    for (int topology = TopologyCount - 1; topology >= 0; --topology) {
        Trigger(CircuitItems[topology]);
        EXPECT_TRUE(help.ShownFile().ends_with(CircuitOf(topology).helpPage)) << help.ShownFile();
        EXPECT_GT(HelpText().size(), 500) << help.ShownFile();
        EXPECT_FALSE(HelpText().contains(QStringLiteral("cannot be read"))) << help.ShownFile();
        EXPECT_FALSE(Find<QLabel>("CircuitPicture").pixmap().isNull()) << topology;
    }
    // The guide stays on show when the circuit changes.
    Trigger("ProgramInfoMenu");
    Trigger(CircuitItems[2]);
    EXPECT_TRUE(help.ShownFile().ends_with("Program Help.md"));
    EXPECT_TRUE(HelpText().contains(QStringLiteral("nerivane-cli")));
    EXPECT_TRUE(messages_.messages.empty());
}

TEST_F(AuxiliaryWindows, AMissingHelpFileOrPictureIsNamedNotFatal) {
    const fs::path empty =
        fs::temp_directory_path() / ("nerivane_no_runtime_" + std::to_string(::getpid()));
    fs::create_directories(empty);
    Start(empty.string());
    Trigger("CircuitInfoMenu");
    EXPECT_TRUE(
        HelpText().contains(QString::fromStdString(empty.string() + "/Help Files/VCVS_LPF.md")))
        << HelpText().toStdString();
    EXPECT_TRUE(Find<QLabel>("CircuitPicture").pixmap().isNull());
    Trigger("ProgramInfoMenu");
    EXPECT_TRUE(HelpText().contains(QStringLiteral("Program Help.md")));
    fs::remove_all(empty);
}

TEST_F(AuxiliaryWindows, SchematicViewAndPartsListFollowTheDesign) {
    Start(NERIVANE_RUNTIME_DIR);
    Trigger("SchematicMenu");
    const QLabel& cascade = Find<QLabel>("CascadeSchematic");
    ASSERT_FALSE(cascade.pixmap().isNull());
    const int twoSections = cascade.pixmap().height();
    Find<QLineEdit>("NumPolesBox").setText(QStringLiteral("12"));
    windows_.topForm->CalcButtonClick();
    EXPECT_GT(cascade.pixmap().height(), twoSections);
    EXPECT_FALSE(Find<QLabel>("SectionSchematic").pixmap().isNull());

    const fs::path svg = scratch_ / "cascade.svg";
    ASSERT_TRUE(Find<TSchematicForm>("SchematicForm").SaveCascadeTo(svg.string()));
    EXPECT_NE(Read(svg).find("id=\"R601\""), std::string::npos);
    EXPECT_FALSE(
        Find<TSchematicForm>("SchematicForm").SaveCascadeTo((scratch_ / "x.gif").string()));

    const fs::path parts = scratch_ / "parts.csv";
    ASSERT_TRUE(windows_.topForm->SavePartsListTo(parts.string()));
    // Six unity-gain followers: R1, R2, C1, C2 and the op amp each.
    const std::string list = Read(parts);
    EXPECT_EQ(std::count(list.begin(), list.end(), '\n'), 1 + 6 * 5) << list;
}

}  // namespace
}  // namespace nerivane
