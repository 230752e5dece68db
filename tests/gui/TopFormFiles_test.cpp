// The window's files as a person meets them: designs saved and reopened through the menus and
// exchanged with the command line, rejected files and failed saves that leave everything as it
// was, recent files across a restart, the exports and the printed page, and the run-time files
// shown: each circuit's help page and picture, the user guide, the schematic. What the files
// hold is the file-format and command-line tests' concern.
#include <unistd.h>

#include <QCheckBox>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QPrinter>
#include <QTextBrowser>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "WindowTest.h"
#include "circuit/Sectioncircuits.h"
#include "gui/HelpForm.h"
#include "gui/PlotBox.h"
#include "gui/SchematicForm.h"
#include "support/ImageCompare.h"

namespace nerivane {
namespace {

namespace fs = std::filesystem;

std::string Read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

class WindowFiles : public ProgramWindowTest {
  protected:
    void SetUp() override {
        fs::remove_all(root);
        fs::create_directories(root / "Files");
        directories.userFilesDir = directories.currentDir = (root / "Files").string();
    }
    void TearDown() override {
        ProgramWindowTest::TearDown();
        fs::remove_all(root);
    }
    void Restart(const std::string& design = "") {
        form().close();
        windows.topForm.reset();
        Start(&directories, design);
    }
    std::string Path(const std::string& name) const { return (root / name).string(); }
    QString HelpText() { return Find<QTextBrowser>("HelpText").toPlainText(); }
    bool NoPicture(const char* label) { return Find<QLabel>(label).pixmap().isNull(); }

    const fs::path root =
        fs::temp_directory_path() / ("nerivane_window_files_" + std::to_string(::getpid()));
    ProgramDirectories directories;
};

TEST_F(WindowFiles, ADesignComesBackWholeThroughTheMenusAndFromTheCommandLine) {
    Start(&directories);
    const std::string path = Path("five.kq_opamp");
    Type("NumPolesBox", "5");
    ASSERT_TRUE(form().SaveDesignTo(path));  // as Save As does once a name is chosen
    Type("F0Box", "2.2");
    Act("FileSaveMenu");  // saves under the name it has
    const DesignState saved = form().State();
    Type("NumPolesBox", "2");
    Act("PrevFile0Menu");
    EXPECT_EQ(Text("NumPolesBox"), "5");
    EXPECT_TRUE(Same(form().State(), saved));
    Restart(path);  // named when the program starts
    EXPECT_TRUE(Same(form().State(), saved));

    // The command line opens what the window saved, and the window what it saves.
    const std::string fromCli = Path("cli.kq_opamp");
    const std::string command = std::string(NERIVANE_CLI_PATH) + " --open '" + path +
                                "' --poles 7 --save '" + fromCli + "' >/dev/null 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0);
    ASSERT_TRUE(form().OpenDesignFile(fromCli));
    EXPECT_EQ(Text("NumPolesBox"), "7");
    EXPECT_EQ(form().State().F0, 2200.0);
    EXPECT_TRUE(messages.messages.empty());
}

TEST_F(WindowFiles, ARejectedOrMissingFileOrAFailedSaveLeavesEverythingAsItWas) {
    Start(&directories);
    Type("F0Box", "3.3");
    const DesignState before = form().State();
    std::ofstream(Path("bad.kq_opamp"), std::ios::binary) << std::string(2016, 'x');
    EXPECT_FALSE(form().OpenDesignFile(Path("bad.kq_opamp")));
    EXPECT_TRUE(Same(form().State(), before));
    EXPECT_EQ(Text("F0Box"), "3.300");

    const std::string path = Path("keep.kq_opamp");
    ASSERT_TRUE(form().SaveDesignTo(path));
    const std::string original = Read(path);
    fs::create_directories(Path("blocked.kq_opamp/inside"));
    EXPECT_FALSE(form().SaveDesignTo(Path("blocked.kq_opamp")));
    EXPECT_TRUE(form().DesignFile().empty());  // the next Save asks for a name
    EXPECT_EQ(Read(path), original);
    // Each says what went wrong; a failed save names the file and the system's reason.
    ASSERT_EQ(messages.messages.size(), 2u);
    EXPECT_EQ(messages.messages[0].text,
              "Open File operation failed due to an incompatibility with this program.");
    EXPECT_EQ(messages.messages[1].text,
              "Save File operation failed.\n\"" + Path("blocked.kq_opamp") + "\": Is a directory.");
    Restart(Path("none.kq_opamp"));
    EXPECT_EQ(messages.messages.back().text.rfind("This file doesn't exist.", 0), 0u);
}

// The list's own rules are the settings tests'; the window must keep it across a restart.
TEST_F(WindowFiles, RecentFilesSurviveARestartAndMissingOnesAreDropped) {
    Start(&directories);
    for (const char* name : {"a.kq_opamp", "b.kq_opamp", "c.kq_opamp"})
        form().SaveDesignTo(Path(name));
    fs::remove(Path("b.kq_opamp"));
    Restart();
    const std::string expected[] = {Path("c.kq_opamp"), Path("a.kq_opamp"), ""};
    for (int i = 0; i < 3; ++i) EXPECT_EQ(form().RecentFiles()[i], expected[i]) << i;
    EXPECT_TRUE(messages.messages.empty());
}

// The build options are chosen in the dialogs, kept in their own file beside the settings file
// (which keeps its own lines) and back after a restart; the status line names the design held
// and its warnings; "Choose Capacitors" brings a 60 Hz notch's megohms down.
TEST_F(WindowFiles, BuildOptionsSurviveARestartAndTheStatusLineFollowsTheDesign) {
    Start(&directories);
    Find<QComboBox>("OpAmpModelBox").setCurrentIndex(1);
    Find<QComboBox>("ResistorSeriesBox").setCurrentIndex(2);
    Find<QLineEdit>("MaxResistanceBox").setText("1M");
    Find<QCheckBox>("BestStandardBox").click();
    Act("IdealOpAmpCheckBox");
    Type("F0Box", "0.06");
    Act("VCVSNotch");
    const std::string written = Read(directories.userFilesDir + "/Build Options.txt");
    EXPECT_NE(written.find("opamp-model = single-pole\n"), std::string::npos) << written;
    EXPECT_NE(written.find("resistor-series = e96\n"), std::string::npos) << written;
    EXPECT_NE(written.find("max-practical-ohms = 1e+06\n"), std::string::npos) << written;
    EXPECT_NE(written.find("best-standard-values = yes\n"), std::string::npos) << written;
    EXPECT_TRUE(Find<QLabel>("DesignStatus").text().startsWith("VCVS Notch, Adjustable Gauss, 3"));
    EXPECT_TRUE(Find<QLabel>("WarningsStatus").text().contains("outside the practical range"));

    Act("ChooseCapacitorsMenu");
    EXPECT_FALSE(Find<QLabel>("WarningsStatus").text().contains("outside the practical range"))
        << Find<QLabel>("WarningsStatus").text().toStdString();
    Restart();
    EXPECT_EQ(Find<QComboBox>("OpAmpModelBox").currentIndex(), 1);
    EXPECT_EQ(Find<QComboBox>("ResistorSeriesBox").currentIndex(), 2);
    EXPECT_EQ(Find<QLineEdit>("MaxResistanceBox").text(), "1M\u03A9");
    EXPECT_TRUE(Find<QCheckBox>("BestStandardBox").isChecked());
    EXPECT_EQ(Read(directories.userFilesDir + "/Settings.txt").find("opamp"), std::string::npos);
    EXPECT_TRUE(messages.messages.empty());
}

// The requirement is kept in its own file beside the settings file, which keeps exactly the
// lines it had, and the design is checked against it again after a restart.
TEST_F(WindowFiles, TheRequirementSurvivesARestartInItsOwnFile) {
    Start(&directories);
    Restart();
    const std::string settings = Read(directories.userFilesDir + "/Settings.txt");
    Act("RequirementMenu");
    for (const auto& [box, typed] : {std::pair{"PassEdge1Box", "1k"},
                                     {"StopEdge1Box", "3k"},
                                     {"PassDbBox", "1"},
                                     {"StopDbBox", "40"}})
        Type(box, typed);
    Find<QAbstractButton>("CheckRequirementBox").click();
    const std::string written = Read(directories.userFilesDir + "/Requirement.txt");
    EXPECT_NE(written.find("\nmask = fp=1k,fs=3k,ap=1,as=40\ncheck = yes\n"), std::string::npos)
        << written;
    Restart();
    EXPECT_EQ(Read(directories.userFilesDir + "/Settings.txt"), settings);
    EXPECT_EQ(Text("StopEdge1Box"), "3k");
    EXPECT_TRUE(Find<QAbstractButton>("CheckRequirementBox").isChecked());
    EXPECT_TRUE(form().Results().requirement.active);
    EXPECT_FALSE(Find<QLabel>("RequirementStatus").text().isEmpty());
    EXPECT_TRUE(messages.messages.empty());
}

TEST_F(WindowFiles, ExportsAndThePrintedPageAreWritten) {
    Start(&directories);
    ASSERT_TRUE(form().SaveCircuitValuesTo(Path("values.txt")));
    ASSERT_TRUE(form().SavePartsListTo(Path("parts.csv")));
    ASSERT_TRUE(form().SavePlotBitmapTo(Path("plot.bmp")));
    const QImage bitmap(QString::fromStdString(Path("plot.bmp")));
    EXPECT_EQ(bitmap.pixelColor(1, 1), QColor(Qt::white));
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QString::fromStdString(Path("window.pdf")));
    form().PrintWindow(printer);
    const std::string pdf = Read(Path("window.pdf"));
    EXPECT_TRUE(pdf.starts_with("%PDF-"));
    EXPECT_GT(pdf.size(), 10000u);  // the window's picture, not an empty page
}

// Output of a shell command.
std::string Output(const std::string& command) {
    std::string out;
    FILE* pipe = ::popen(command.c_str(), "r");
    for (char buffer[4096]; std::fgets(buffer, sizeof buffer, pipe) != nullptr;) out += buffer;
    ::pclose(pipe);
    return out;
}

TEST_F(WindowFiles, ThePlotReportAndNetlistExportsHoldWhatTheWindowShows) {
    Start(&directories);
    Type("NumPolesBox", "5");
    Act("WorstButton");
    const std::string design = Path("worst.kq_opamp");
    ASSERT_TRUE(form().SaveDesignTo(design));
    // The netlist is the command line's for the same design.
    ASSERT_TRUE(form().SaveSpiceNetlistTo(Path("window.cir")));
    Output(std::string(NERIVANE_CLI_PATH) + " --open '" + design + "' --spice '" + Path("cli.cir") +
           "' 2>&1");
    EXPECT_EQ(Read(Path("window.cir")), Read(Path("cli.cir")));
    EXPECT_TRUE(Read(Path("window.cir")).starts_with("Nerivane 5-pole"));

    // The plot as SVG and PDF looks as the window's picture does, every run and band included.
    const QImage shown = Find<PlotBox>("BitMap").Image().convertToFormat(QImage::Format_RGB32);
    ASSERT_TRUE(form().SavePlotVectorTo(Path("plot.svg")));
    ASSERT_TRUE(form().SavePlotVectorTo(Path("plot.pdf")));
    Output("rsvg-convert -o '" + Path("svg.png") + "' '" + Path("plot.svg") + "'");
    Output("pdftoppm -r 72 -aaVector no -png -singlefile '" + Path("plot.pdf") + "' '" +
           Path("pdf") + "'");
    for (const auto& [rendered, most] : {std::pair{"svg.png", 1}, {"pdf.png", 10}}) {
        const QImage image(QString::fromStdString(Path(rendered)));
        EXPECT_LE(Mismatch(shown, image.convertToFormat(QImage::Format_RGB32)),
                  most * MostMismatched)
            << rendered;
    }

    // The report keeps its symbols.
    ASSERT_TRUE(form().SaveReportPdfTo(Path("report.pdf")));
    const std::string report = Output("pdftotext -layout '" + Path("report.pdf") + "' -");
    const QStringList lines = Find<QPlainTextEdit>("Memo").toPlainText().split('\n');
    const auto ohms = std::find_if(lines.begin(), lines.end(),
                                   [](const QString& line) { return line.contains("kΩ"); });
    ASSERT_NE(ohms, lines.end());
    EXPECT_NE(report.find(ohms->trimmed().toStdString()), std::string::npos) << report;
    EXPECT_TRUE(messages.messages.empty());
}

TEST_F(WindowFiles, CircuitInfoShowsEachCircuitsPageAndPictureOrNamesTheMissingOne) {
    directories.runTimeFilesDir = NERIVANE_RUNTIME_DIR;
    Start(&directories);
    Act("CircuitInfoMenu");
    const THelpForm& help = Find<THelpForm>("HelpForm");
    ASSERT_TRUE(help.isVisible());
    const char* const circuits[] = {"VCVSLowPass",  "MFBLowPass",  "VCVSHighPass", "MFBHighPass",
                                    "VCVSBandPass", "MFBBandPass", "VCVSNotch"};
    for (int index = TopologyCount - 1; index >= 0; --index) {
        const Topology topology = Topologies[index];
        Act(circuits[index]);
        EXPECT_TRUE(help.ShownFile().ends_with(CircuitOf(topology).helpPage)) << help.ShownFile();
        EXPECT_GT(HelpText().size(), 500) << help.ShownFile();
        EXPECT_FALSE(NoPicture("CircuitPicture")) << index;
    }
    // The guide stays on show when the circuit changes.
    Act("ProgramInfoMenu");
    Act(circuits[2]);
    EXPECT_TRUE(help.ShownFile().ends_with("Program Help.md"));
    EXPECT_TRUE(HelpText().contains("nerivane-cli"));
    EXPECT_TRUE(messages.messages.empty());
    // Without them the missing page is named and the picture left empty.
    directories.runTimeFilesDir = root.string();
    Restart();
    Act("CircuitInfoMenu");
    EXPECT_TRUE(HelpText().contains(QString::fromStdString(Path("Help Files/VCVS_LPF.md"))));
    EXPECT_TRUE(NoPicture("CircuitPicture"));
}

TEST_F(WindowFiles, TheSchematicFollowsTheDesignAndSavesAsSvgOnly) {
    directories.runTimeFilesDir = NERIVANE_RUNTIME_DIR;
    Start(&directories);
    Act("SchematicMenu");
    const int twoSections = Find<QLabel>("CascadeSchematic").pixmap().height();
    ASSERT_GT(twoSections, 0);
    Type("NumPolesBox", "12");
    EXPECT_GT(Find<QLabel>("CascadeSchematic").pixmap().height(), twoSections);
    EXPECT_FALSE(NoPicture("SectionSchematic"));
    auto& schematic = Find<TSchematicForm>("SchematicForm");
    ASSERT_TRUE(schematic.SaveCascadeTo(Path("cascade.svg")));
    EXPECT_NE(Read(Path("cascade.svg")).find("id=\"R601\""), std::string::npos);  // 6th R1
    EXPECT_FALSE(schematic.SaveCascadeTo(Path("cascade.gif")));
}

}  // namespace
}  // namespace nerivane
