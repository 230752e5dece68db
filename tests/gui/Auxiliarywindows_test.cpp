// The windows that help a person build the design: the help viewer with every circuit's page
// and picture and the user guide, and the schematic view following the design.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QLabel>
#include <QTextBrowser>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "WindowTest.h"
#include "circuit/Sectioncircuits.h"
#include "gui/HelpForm.h"
#include "gui/SchematicForm.h"

namespace nerivane {
namespace {

namespace fs = std::filesystem;

class AuxiliaryWindows : public ProgramWindowTest {
  protected:
    void SetUp() override {
        fs::create_directories(scratch / "empty");
        directories.currentDir = scratch.string();
        directories.runTimeFilesDir = NERIVANE_RUNTIME_DIR;
    }
    void TearDown() override {
        ProgramWindowTest::TearDown();
        fs::remove_all(scratch);
    }
    QString HelpText() { return Find<QTextBrowser>("HelpText").toPlainText(); }
    bool NoPicture(const char* label) { return Find<QLabel>(label).pixmap().isNull(); }

    const fs::path scratch =
        fs::temp_directory_path() / ("nerivane_auxiliary_" + std::to_string(::getpid()));
    ProgramDirectories directories;
};

TEST_F(AuxiliaryWindows, CircuitInfoShowsEachCircuitsPageAndPictureAndFollowsTheCircuit) {
    Start(&directories);
    Act("CircuitInfoMenu");
    const THelpForm& help = Find<THelpForm>("HelpForm");
    ASSERT_TRUE(help.isVisible());
    const char* const circuits[] = {"VCVSLowPass",  "MFBLowPass",  "VCVSHighPass", "MFBHighPass",
                                    "VCVSBandPass", "MFBBandPass", "VCVSNotch"};
    for (int topology = TopologyCount - 1; topology >= 0; --topology) {
        Act(circuits[topology]);
        EXPECT_TRUE(help.ShownFile().ends_with(CircuitOf(topology).helpPage)) << help.ShownFile();
        EXPECT_GT(HelpText().size(), 500) << help.ShownFile();
        EXPECT_FALSE(NoPicture("CircuitPicture")) << topology;
    }
    // The guide stays on show when the circuit changes.
    Act("ProgramInfoMenu");
    Act(circuits[2]);
    EXPECT_TRUE(help.ShownFile().ends_with("Program Help.md"));
    EXPECT_TRUE(HelpText().contains("nerivane-cli"));
    EXPECT_TRUE(messages.messages.empty());
}

TEST_F(AuxiliaryWindows, AMissingHelpFileOrPictureIsNamedNotFatal) {
    directories.runTimeFilesDir = (scratch / "empty").string();
    Start(&directories);
    Act("CircuitInfoMenu");
    EXPECT_TRUE(HelpText().contains(QString::fromStdString(directories.runTimeFilesDir) +
                                    "/Help Files/VCVS_LPF.md"))
        << HelpText().toStdString();
    EXPECT_TRUE(NoPicture("CircuitPicture"));
    Act("ProgramInfoMenu");
    EXPECT_TRUE(HelpText().contains("Program Help.md"));
}

TEST_F(AuxiliaryWindows, TheSchematicFollowsTheDesignAndSavesAsSvgOnly) {
    Start(&directories);
    Act("SchematicMenu");
    const int twoSections = Find<QLabel>("CascadeSchematic").pixmap().height();
    ASSERT_GT(twoSections, 0);
    Type("NumPolesBox", "12");
    EXPECT_GT(Find<QLabel>("CascadeSchematic").pixmap().height(), twoSections);
    EXPECT_FALSE(NoPicture("SectionSchematic"));
    auto& schematic = Find<TSchematicForm>("SchematicForm");
    ASSERT_TRUE(schematic.SaveCascadeTo((scratch / "cascade.svg").string()));
    std::ostringstream svg;
    svg << std::ifstream(scratch / "cascade.svg").rdbuf();
    EXPECT_NE(svg.str().find("id=\"R601\""), std::string::npos);  // the sixth section's R1
    EXPECT_FALSE(schematic.SaveCascadeTo((scratch / "x.gif").string()));
}

}  // namespace
}  // namespace nerivane
