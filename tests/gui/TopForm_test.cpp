// The main window as a person uses it: captions, hints and menus, which controls each
// selection enables, the keys, the spinners and the mouse wheel, typed values and their
// repairs, the read-out over the plot, and that no sequence of inputs breaks it.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "WidgetsEnvironment.h"
#include "app/Plotview.h"
#include "gui/CompSelectForm.h"
#include "gui/OptionsForm.h"
#include "gui/PlotBox.h"
#include "gui/ProgramWindows.h"
#include "gui/UpDownButtons.h"
#include "numerics/Formatfunctions.h"
#include "numerics/MessageSink.h"
#include "response/Readout.h"

namespace nerivane {
namespace {

const QColor Silver(192, 192, 192);

class TopFormTest : public ::testing::Test {
  protected:
    void SetUp() override {
        windows_ = CreateProgramWindows();
        // The window installs message boxes; a test must never wait for one.
        InstallMessageSink(&messages_);
        form().show();
        QApplication::processEvents();
    }
    void TearDown() override {
        windows_.topForm.reset();
        InstallMessageSink(nullptr);
    }

    TTopForm& form() { return *windows_.topForm; }

    template <class Widget>
    Widget& Find(const char* name) {
        auto* widget = form().findChild<Widget*>(QString::fromLatin1(name));
        if (widget == nullptr) ADD_FAILURE() << "no control named " << name;
        return *widget;
    }
    QLineEdit& Box(const char* name) { return Find<QLineEdit>(name); }
    QString Text(const char* name) { return Box(name).text(); }
    QAction& Item(const char* name) { return Find<QAction>(name); }
    bool Enabled(const char* name) { return Find<QWidget>(name).isEnabled(); }

    void Trigger(const char* name) { Item(name).trigger(); }
    void ClickButton(const char* name) {
        QTest::mouseClick(&Find<QAbstractButton>(name), Qt::LeftButton);
    }
    void Spin(const char* name, bool up, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        auto& spinner = Find<UpDownButtons>(name);
        QTest::mouseClick(up ? spinner.UpButton() : spinner.DownButton(), Qt::LeftButton,
                          modifiers);
    }
    // Replaces a box's text by typing, then Enter.
    void Type(const char* name, const QString& text) {
        QLineEdit& box = Box(name);
        box.selectAll();
        QTest::keyClick(&box, Qt::Key_Backspace);
        QTest::keyClicks(&box, text);
        QTest::keyClick(&box, Qt::Key_Return);
    }
    void Key(Qt::Key key, const char* target = "Memo") {
        QTest::keyClick(&Find<QWidget>(target), key);
    }
    bool Silver(const char* name) {
        return Box(name).palette().color(QPalette::Base) == nerivane::Silver;
    }
    PlotBox& Plot() { return Find<PlotBox>("BitMap"); }
    // The plot rectangle the window drew, as the core lays it out.
    PlotGeometry Geometry() {
        DesignState state = form().State();
        const ControlStates controls = UpdateControlStates(state);
        PlotView view =
            PlotViewFor(state, controls, form().Results(), Plot().width(), Plot().height());
        return GeometryFor(view);
    }
    QString ReadoutAt(int x, int y) {
        QTest::mouseMove(&Plot(), QPoint(x, y));
        return Plot().Readout();
    }

    RecordingMessageSink messages_;
    ProgramWindows windows_;
};

TEST_F(TopFormTest, OpensWithTheDefaultDesignAtItsStartedWidth) {
    EXPECT_EQ(form().windowTitle(), QStringLiteral("Nerivane"));
    EXPECT_EQ(form().width(), 725);
    EXPECT_EQ(Text("NumPolesBox"), QStringLiteral("3"));
    EXPECT_EQ(form().State().ResponseIndex, AdjustableGauss);
    EXPECT_EQ(form().State().F0, 5000.0);
    EXPECT_EQ(Find<QLabel>("OpAmpBWLabel").text(), QStringLiteral("BW 100 MHz"));
    EXPECT_EQ(Find<QLabel>("RCToleranceLabel").text(), QStringLiteral("C 10%   R 1%"));
    EXPECT_EQ(Find<QLabel>("GammaLabel").text(), QStringLiteral("Adj Gauss"));
    EXPECT_TRUE(Find<QPlainTextEdit>("Memo").toPlainText().contains(QStringLiteral("Section 1")));
    EXPECT_TRUE(Find<QPlainTextEdit>("Memo").isReadOnly());
    EXPECT_FALSE(Text("ScaleBox").isEmpty());
    // The picture fills the plot box at the screen's density.
    const QImage& image = Plot().Image();
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.size(), Plot().size() * Plot().devicePixelRatioF());
}

TEST_F(TopFormTest, ControlsCarryTheirCaptionsAndHints) {
    // clang-format off
    const std::vector<std::pair<const char*, const char*>> captions = {
        {"Label3",             "Adj with F1 F2 or Arrows"},
        {"CalcButton",         "Calc"},
        {"IdealOpAmpCheckBox", "Ideal Op Amp"},
        {"ExactButton",        "Exact R"},
        {"StdButton",          "Standard R"},
        {"WorstButton",        "Worst Case"},
        {"ToleranceButton",    "Tolerances"},
        {"PlotMagBox",         "Mag 10 dB"},
        {"PlotMag1dBBox",      "Mag   1 dB"},
        {"PlotPhaseBox",       "Phase"},
        {"PlotGDBox",          "Group Delay"},
        {"PlotPulseBox",       "Sq Pulse"},
        {"ReferenceLabel",     "Butterworth"},
        {"SetReferenceButton", "Set Ref"},
        {"ExchangeRefButton",  "Exhange Ref"},
        {"PlotReferenceBox",   "Plot Ref"},
        {"AutoScaleCheckBox",  "Auto Scale"},
        {"RippleLabel",        "Ripple"},
        {"BandWidthLabel",     "BW (kHz)"},
        {"TestBox",            "Test"},
    };
    const std::vector<std::pair<const char*, const char*>> hints = {
        {"PlotGDBox",          "Displays the Group Delay of the response."},
        {"PlotPhaseBox",       "Displays the Phase of the response."},
        {"PlotMagBox",         "Displays 20 Log() of the magnitude of the response."},
        {"PlotMag1dBBox",      "Displays 20 Log() of the magnitude of the response."},
        {"PlotPulseBox",       "Displays the response to a square pulse input."},
        {"PlotPulseBox",       "The input starts at t=0 and stops at  3/ 2  N_Taps except for Tap counts < 12."},
        {"ReferenceLabel",     "Displays the name of the filter stored as the reference."},
        {"SetReferenceButton", "Use Set Reference to compare two filter designs."},
        {"ExchangeRefButton",  "Use Exchange Ref to switch the current filter design with the one stored as the reference."},
        {"PlotReferenceBox",   "Plot Reference plots the response of the filter stored as a reference."},
    };
    // clang-format on
    for (const auto& [name, caption] : captions) {
        const QWidget& widget = Find<QWidget>(name);
        const auto* label = qobject_cast<const QLabel*>(&widget);
        const auto* button = qobject_cast<const QAbstractButton*>(&widget);
        EXPECT_EQ(label ? label->text() : button->text(), QString::fromLatin1(caption)) << name;
    }
    for (const auto& [name, hint] : hints)
        EXPECT_TRUE(Find<QWidget>(name).toolTip().contains(QString::fromLatin1(hint))) << name;
    for (const char* name :
         {"NumPolesUpDown", "RippleUpDown", "GammaUpDown", "F0UpDown", "BandWidthUpDown",
          "GainUpDown", "SectionUpDown", "C1UpDown", "C2UpDown", "TestUpDown"})
        EXPECT_NE(form().findChild<UpDownButtons*>(QString::fromLatin1(name)), nullptr) << name;
    EXPECT_NE(Find<QWidget>("C2Panel").findChild<QLineEdit*>("C2ValueBox"), nullptr);
    // The test panel and the sampling box exist for the record but are never shown.
    EXPECT_FALSE(Find<QWidget>("TestBox").isVisible());
    EXPECT_FALSE(Find<QWidget>("SamplingFreqBox").isVisible());
    // Until a reference is set there is nothing to exchange or plot.
    EXPECT_TRUE(Enabled("SetReferenceButton"));
    for (const char* name : {"ExchangeRefButton", "PlotReferenceBox"})
        EXPECT_FALSE(Enabled(name)) << name;
    EXPECT_EQ(Find<QPlainTextEdit>("Memo").palette().color(QPalette::Base), QColor(245, 245, 245));
    EXPECT_EQ(Find<QCheckBox>("PlotGDBox").palette().color(QPalette::WindowText), QColor(0, 96, 0));
}

TEST_F(TopFormTest, MenusListTheirItemsInOrder) {
    // clang-format off
    const std::vector<std::pair<QString, QStringList>> menus = {
        {"File  ",        {"Open Design File", "Save Design File", "Save As  Design File",
                           "Save Circuit Values", "Save Parts List", "", "Save Plot Bitmap",
                           "Print Screen", "",
                           "", "", "", "", "", "Exit"}},
        {"Circuit  ",     {"VCVS Low Pass", "MFB Low Pass", "VCVS High Pass", "MFB High Pass",
                           "VCVS Band Pass", "MFB Band Pass", "VCVS Notch"}},
        {"Response F5  ", {"Adjustable Gauss", "Butterworth", "Chebyshev", "Gaussian", "Bessel",
                           "", "Papoulis"}},
        {"Sweep F7 ",     {"Linear", "Two Octaves", "Three Octaves", "One Decade", "Two Decades"}},
        {"Parts  ",       {"Components", "DC Bias Tool", "Schematic"}},
        {"Plot Options",  {"Graph Position Read Out", "Value at Frequency Read Out", "", "dB Mag",
                           "Linear Mag", "", "Phase", "Hilbert Phase", "",
                           "Phase Plot Threshold"}},
        {"Help  ",        {"Circuit Info", "Program Info", "About"}},
    };
    // clang-format on
    const QList<QAction*> bar = form().menuBar()->actions();
    ASSERT_EQ(bar.size(), static_cast<qsizetype>(menus.size()));
    for (std::size_t m = 0; m < menus.size(); ++m) {
        EXPECT_EQ(bar[m]->text(), menus[m].first);
        QStringList items;
        for (const QAction* item : bar[m]->menu()->actions()) items << item->text();
        EXPECT_EQ(items, menus[m].second) << menus[m].first.toStdString();
    }
    EXPECT_TRUE(Item("GraphPositionReadOutMenu").isChecked());
    EXPECT_TRUE(Item("dBMagMenu").isChecked());
    EXPECT_TRUE(Item("PhaseMenu").isChecked());
    EXPECT_FALSE(Item("PrevFile0Menu").isVisible());
}

TEST_F(TopFormTest, SelectionsEnableTheBoxesTheyUse) {
    struct Case {
        const char* item;
        bool bandWidth;
        bool ripple;
        bool gamma;
    };
    // clang-format off
    const Case cases[] = {
        {"ChebyshevMenu",   false, true,  false},
        {"VCVSBandPass",    true,  true,  false},
        {"ButterworthMenu", true,  false, false},
        {"VCVSNotch",       true,  false, false},
        {"PapoulisMenu",    true,  true,  false},
        {"MFBHighPass",     false, true,  false},
        {"AdjustableMenu",  false, false, true},
        {"BesselMenu",      false, false, false},
    };
    // clang-format on
    for (const Case& c : cases) {
        Trigger(c.item);
        for (const char* name : {"BandWidthBox", "BandWidthUpDown", "BandWidthLabel"})
            EXPECT_EQ(Enabled(name), c.bandWidth) << c.item << " " << name;
        for (const char* name : {"RippleBox", "RippleUpDown", "RippleLabel"})
            EXPECT_EQ(Enabled(name), c.ripple) << c.item << " " << name;
        for (const char* name : {"GammaBox", "GammaUpDown", "GammaLabel"})
            EXPECT_EQ(Enabled(name), c.gamma) << c.item << " " << name;
    }
    Trigger("TwoDecadeSweep");
    EXPECT_EQ(form().State().SweepIndex, 5);
    EXPECT_DOUBLE_EQ(form().State().FreqMin, 0.01 * form().State().F0);
}

TEST_F(TopFormTest, BandPassFallsBackFromHilbertPhase) {
    Trigger("HilbertPhaseMenu");
    EXPECT_EQ(Find<QCheckBox>("PlotPhaseBox").text(), QStringLiteral("Hilbert Phase"));
    EXPECT_TRUE(Find<QCheckBox>("PlotPhaseBox").isChecked());
    EXPECT_TRUE(Item("HilbertPhaseMenu").isChecked());
    EXPECT_FALSE(Item("PhaseMenu").isChecked());

    Trigger("MFBBandPass");
    EXPECT_FALSE(Item("HilbertPhaseMenu").isEnabled());
    EXPECT_FALSE(Item("HilbertPhaseMenu").isChecked());
    EXPECT_TRUE(Item("PhaseMenu").isChecked());
    EXPECT_EQ(Find<QCheckBox>("PlotPhaseBox").text(), QStringLiteral("Phase"));

    Trigger("VCVSLowPass");
    EXPECT_TRUE(Item("HilbertPhaseMenu").isEnabled());
    EXPECT_TRUE(Item("PhaseMenu").isChecked());
    EXPECT_EQ(Find<QCheckBox>("PlotPhaseBox").text(), QStringLiteral("Phase"));
}

TEST_F(TopFormTest, WorstCaseDisablesThePulseBox) {
    ClickButton("WorstButton");
    EXPECT_EQ(form().State().Tolerance, ToleranceMode::WorstCase);
    EXPECT_FALSE(Enabled("PlotPulseBox"));
    EXPECT_GT(form().Results().runs, 1);
    ClickButton("StdButton");
    EXPECT_TRUE(Enabled("PlotPulseBox"));
    EXPECT_EQ(form().State().Tolerance, ToleranceMode::Standard);
}

TEST_F(TopFormTest, MagnitudeModesSwapTheMagnitudeBoxes) {
    Trigger("LinearMagMenu");
    EXPECT_EQ(Find<QCheckBox>("PlotMag1dBBox").text(), QStringLiteral("Linear Mag"));
    EXPECT_TRUE(Find<QCheckBox>("PlotMag1dBBox").isChecked());
    EXPECT_FALSE(Find<QCheckBox>("PlotMagBox").isChecked());
    EXPECT_FALSE(Enabled("PlotMagBox"));
    EXPECT_TRUE(Item("LinearMagMenu").isChecked());
    EXPECT_FALSE(Item("dBMagMenu").isChecked());

    Trigger("dBMagMenu");
    EXPECT_EQ(Find<QCheckBox>("PlotMag1dBBox").text(), QStringLiteral("Mag   1 dB"));
    EXPECT_FALSE(Find<QCheckBox>("PlotMag1dBBox").isChecked());
    EXPECT_TRUE(Find<QCheckBox>("PlotMagBox").isChecked());
    EXPECT_TRUE(Enabled("PlotMagBox"));
}

TEST_F(TopFormTest, FunctionKeysCycleFamilyAndSweepBackToTheStart) {
    const int response = form().State().ResponseIndex;
    const int sweep = form().State().SweepIndex;
    Key(Qt::Key_F5);
    EXPECT_EQ(form().State().ResponseIndex, (response + 1) % 9);
    for (int i = 1; i < 9; ++i) Key(Qt::Key_F5);
    EXPECT_EQ(form().State().ResponseIndex, response);
    EXPECT_TRUE(Enabled("GammaBox"));
    for (int i = 0; i < 6; ++i) {
        Key(Qt::Key_F7, "F0Box");
        EXPECT_EQ(form().State().SweepIndex, (sweep + i + 1) % 6);
    }
    EXPECT_EQ(form().State().SweepIndex, sweep);
}

TEST_F(TopFormTest, ArrowKeysStepOnlyTheChosenBox) {
    Type("NumPolesBox", QStringLiteral("6"));
    ASSERT_EQ(form().State().NumSections, 3);
    const QString c1 = Text("C1ValueBox");
    const QString c2 = Text("C2ValueBox");

    // At start the keys step the section.
    Key(Qt::Key_Up);
    EXPECT_EQ(Text("SectionBox"), QStringLiteral("1"));
    Key(Qt::Key_F1);
    EXPECT_EQ(Text("SectionBox"), QStringLiteral("2"));
    Key(Qt::Key_F2);
    EXPECT_EQ(Text("SectionBox"), QStringLiteral("1"));
    EXPECT_EQ(form().State().SelectedSection, 1);

    QTest::mouseClick(&Box("C1ValueBox"), Qt::LeftButton);
    Key(Qt::Key_Up, "C1ValueBox");
    EXPECT_NE(Text("C1ValueBox"), c1);
    EXPECT_GT(form().State().SectionC1[1], 1e-10);
    EXPECT_EQ(Text("SectionBox"), QStringLiteral("1"));
    Key(Qt::Key_Down, "C1ValueBox");
    EXPECT_EQ(Text("C1ValueBox"), c1);

    QTest::mouseClick(&Box("C2ValueBox"), Qt::LeftButton);
    Key(Qt::Key_F2, "C2ValueBox");
    EXPECT_LT(form().State().SectionC2[1], 1e-9);
    EXPECT_NE(Text("C2ValueBox"), c2);

    // After a click into another box the keys adjust nothing.
    QTest::mouseClick(&Box("F0Box"), Qt::LeftButton);
    const DesignState before = form().State();
    for (Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_F1, Qt::Key_F2}) Key(key, "F0Box");
    EXPECT_EQ(form().State().SelectedSection, before.SelectedSection);
    EXPECT_EQ(form().State().SectionC1[1], before.SectionC1[1]);
    EXPECT_EQ(form().State().SectionC2[1], before.SectionC2[1]);
    EXPECT_EQ(form().State().F0, before.F0);

    QTest::mouseClick(&Box("SectionBox"), Qt::LeftButton);
    Key(Qt::Key_Down, "SectionBox");
    EXPECT_EQ(Text("SectionBox"), QStringLiteral("0"));
}

// Keys held down step the design at once; the long calculation follows the last of them.
TEST_F(TopFormTest, KeysFasterThanTheCalculationAreCalculatedOnceAfterTheLast) {
    Trigger("ButterworthMenu");
    ClickButton("WorstButton");
    Type("NumPolesBox", QStringLiteral("20"));
    const qint64 before = Plot().Image().cacheKey();
    for (int i = 0; i < 30; ++i) Key(Qt::Key_Up);
    EXPECT_EQ(Text("SectionBox"), QStringLiteral("9"));
    EXPECT_EQ(Plot().Image().cacheKey(), before);
    QApplication::processEvents();
    EXPECT_NE(Plot().Image().cacheKey(), before);
    // Stepping the section watches the nominal curve: one run, not the whole analysis.
    EXPECT_EQ(form().Results().runs, 1);
}

TEST_F(TopFormTest, RepairedBoxesTurnSilverAndBack) {
    Type("NumPolesBox", QStringLiteral("25"));
    EXPECT_EQ(Text("NumPolesBox"), QStringLiteral("20"));
    EXPECT_TRUE(Silver("NumPolesBox"));
    Type("NumPolesBox", QStringLiteral("5"));
    EXPECT_EQ(Text("NumPolesBox"), QStringLiteral("5"));
    EXPECT_FALSE(Silver("NumPolesBox"));
    EXPECT_EQ(form().State().NumSections, 3);

    Trigger("VCVSBandPass");
    Type("NumPolesBox", QStringLiteral("25"));
    EXPECT_EQ(Text("NumPolesBox"), QStringLiteral("10"));
    EXPECT_TRUE(Silver("NumPolesBox"));

    Type("FilterGainBox", QStringLiteral("-5"));
    EXPECT_TRUE(Silver("FilterGainBox"));
    Trigger("MFBLowPass");
    Type("FilterGainBox", QStringLiteral("-5"));
    EXPECT_FALSE(Silver("FilterGainBox"));
}

TEST_F(TopFormTest, SpinnersStepTheirBoxesCoarserWithCtrl) {
    Spin("F0UpDown", true);
    EXPECT_DOUBLE_EQ(form().State().F0, 5100.0);
    Spin("F0UpDown", true, Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(form().State().F0, 6100.0);
    Spin("F0UpDown", false);
    EXPECT_DOUBLE_EQ(form().State().F0, 6000.0);
    Spin("NumPolesUpDown", true);
    EXPECT_EQ(Text("NumPolesBox"), QStringLiteral("4"));
    EXPECT_TRUE(Find<QPlainTextEdit>("Memo").toPlainText().contains(QStringLiteral("Section 1")));
    Spin("GammaUpDown", false, Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(form().State().Gamma, -0.5);
    EXPECT_EQ(Find<QLabel>("GammaLabel").text(), QStringLiteral("Adj Gauss"));
}

TEST_F(TopFormTest, MouseWheelStepsTheBoxUnderIt) {
    QLineEdit& box = Box("F0Box");
    const QPoint centre = box.rect().center();
    for (int delta : {120, 60, 60, -120}) {
        QWheelEvent wheel(centre, box.mapToGlobal(centre), QPoint(), QPoint(0, delta), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&box, &wheel);
    }
    EXPECT_DOUBLE_EQ(form().State().F0, 5100.0);
}

TEST_F(TopFormTest, TypedCapacitorsAreTakenForTheSelectedSection) {
    // clang-format off
    const std::vector<std::pair<QString, double>> entries = {
        {"22n", 22e-9}, {"22nF", 22e-9}, {"0.022u", 22e-9}, {"22e-9", 22e-9}, {"22 nF", 22e-9},
        {"4.7u", 4.7e-6}, {"470p", 470e-12},
    };
    // clang-format on
    for (const auto& [typed, farads] : entries) {
        Type("C2ValueBox", typed);
        EXPECT_NEAR(form().State().SectionC2[0], farads, farads * 1e-12) << typed.toStdString();
        EXPECT_FALSE(Silver("C2ValueBox"));
    }
    Type("C1ValueBox", QStringLiteral("330p"));
    EXPECT_EQ(Text("C1ValueBox"), QStringLiteral("330 pF"));
    for (const char* bad : {"abc", "-22n", "0", "22x", "2F"}) {
        Type("C1ValueBox", QString::fromLatin1(bad));
        EXPECT_TRUE(Silver("C1ValueBox")) << bad;
        EXPECT_EQ(Text("C1ValueBox"), QStringLiteral("330 pF")) << bad;
        EXPECT_DOUBLE_EQ(form().State().SectionC1[0], 330e-12) << bad;
    }
    Spin("C1UpDown", true);
    EXPECT_FALSE(Silver("C1ValueBox"));
}

TEST_F(TopFormTest, TypedGroupDelayScaleIsKeptWithinAFactorOfAHundred) {
    ClickButton("PlotGDBox");
    const double automatic = form().State().GroupDelayScale;
    ClickButton("AutoScaleCheckBox");
    Type("ScaleBox", QString::fromStdString(FormatGeneral(2.0 * automatic, 6)));
    EXPECT_NEAR(form().State().GroupDelayScale, 2.0 * automatic, 1e-9 * automatic);
    EXPECT_FALSE(Silver("ScaleBox"));
    Type("ScaleBox", QStringLiteral("1000"));
    EXPECT_NEAR(form().State().GroupDelayScale, 100.0 * automatic, 1e-4 * automatic);
    EXPECT_TRUE(Silver("ScaleBox"));
    ClickButton("AutoScaleCheckBox");
    EXPECT_DOUBLE_EQ(form().State().GroupDelayScale, automatic);
}

TEST_F(TopFormTest, ReadoutFollowsThePointerAtThePlotEdges) {
    ClickButton("PlotPhaseBox");
    ClickButton("PlotMag1dBBox");
    const PlotGeometry g = Geometry();
    const int right = g.left + g.width;
    const QString top = ReadoutAt(g.left, g.top);
    EXPECT_TRUE(top.startsWith(QStringLiteral("f = "))) << top.toStdString();
    EXPECT_TRUE(top.contains(QStringLiteral("Mag = 10.00 dB"))) << top.toStdString();
    EXPECT_TRUE(top.contains(QStringLiteral("Mag = 1.00 dB"))) << top.toStdString();
    EXPECT_TRUE(top.contains(QStringLiteral("Phase = 180.0 deg"))) << top.toStdString();
    const QString bottom = ReadoutAt(right, g.Bottom());
    EXPECT_TRUE(bottom.contains(QStringLiteral("Mag = -90.00 dB"))) << bottom.toStdString();
    EXPECT_TRUE(bottom.contains(QStringLiteral("Mag = -9.00 dB"))) << bottom.toStdString();
    EXPECT_TRUE(bottom.contains(QStringLiteral("Phase = -180.0 deg"))) << bottom.toStdString();
    EXPECT_TRUE(ReadoutAt(g.left - 1, g.top).isEmpty());
    EXPECT_TRUE(ReadoutAt(g.left, g.Bottom() + 1).isEmpty());

    // Value mode reports the traces under the pointer, whatever its height.
    Trigger("ValueAtFrquencyReadOutMenu");
    EXPECT_FALSE(Item("GraphPositionReadOutMenu").isChecked());
    const Traces& traces = form().Results().traces;
    for (int x : {g.left, right}) {
        const int k = ReadoutIndex(g, x);
        const QString text = ReadoutAt(x, g.top + g.height / 2);
        const QString mag =
            QString::fromStdString("Mag = " + FormatFixed(traces.magnitudeDb[k], 2) + " dB");
        EXPECT_TRUE(text.contains(mag)) << text.toStdString();
    }

    // Leaving the plot erases it.
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&Plot(), &leave);
    EXPECT_TRUE(Plot().Readout().isEmpty());
}

TEST_F(TopFormTest, OpAmpAndToleranceLabelsFollowTheirChoices) {
    ClickButton("IdealOpAmpCheckBox");
    EXPECT_FALSE(form().State().IdealOpAmp);
    EXPECT_NE(Find<QLabel>("OpAmpBWLabel").text(), QStringLiteral("BW 100 MHz"));
    ClickButton("IdealOpAmpCheckBox");
    EXPECT_EQ(Find<QLabel>("OpAmpBWLabel").text(), QStringLiteral("BW 100 MHz"));
    EXPECT_EQ(Find<QLabel>("RCToleranceLabel").text(), QStringLiteral("C 10%   R 1%"));

    // The dialogs ask for a recalculation when their choices change.
    ClickButton("ToleranceButton");
    auto& dialog = *windows_.dialogs.compSelect;
    EXPECT_TRUE(dialog.isVisible());
    dialog.findChild<QRadioButton*>("FivePercentCapacitorButton")->click();
    EXPECT_EQ(Find<QLabel>("RCToleranceLabel").text(), QStringLiteral("C 5%   R 1%"));
    auto& options = *windows_.dialogs.options;
    Trigger("ThresholdMenu");
    EXPECT_TRUE(options.isVisible());
    options.findChild<QLineEdit*>("GDPhaseThresholdBox")->setText(QStringLiteral("45"));
    options.findChild<QPushButton*>("ApplyButton")->click();
    EXPECT_DOUBLE_EQ(form().State().PhaseThreshold, -45.0);
}

TEST_F(TopFormTest, GarbageInEveryBoxIsRepairedAndTheNextCalculationRecovers) {
    for (const char* name :
         {"NumPolesBox", "RippleBox", "GammaBox", "F0Box", "BandWidthBox", "FilterGainBox",
          "SectionBox", "C1ValueBox", "C2ValueBox", "ScaleBox"}) {
        Box(name).setText(QStringLiteral("x!1e999,,"));
    }
    ClickButton("CalcButton");
    EXPECT_EQ(Text("NumPolesBox"), QStringLiteral("3"));
    for (const char* name : {"NumPolesBox", "RippleBox", "GammaBox", "F0Box", "BandWidthBox",
                             "FilterGainBox", "SectionBox"})
        EXPECT_TRUE(Silver(name)) << name;
    ClickButton("CalcButton");
    for (const char* name : {"NumPolesBox", "F0Box", "SectionBox"})
        EXPECT_FALSE(Silver(name)) << name;
    EXPECT_TRUE(Find<QPlainTextEdit>("Memo").toPlainText().contains(QStringLiteral("Section 0")));
    EXPECT_FALSE(Plot().Image().isNull());
}

TEST_F(TopFormTest, RandomInputSequencesNeverBreakTheWindow) {
    const std::vector<const char*> items = {"VCVSLowPass",
                                            "MFBLowPass",
                                            "VCVSHighPass",
                                            "MFBHighPass",
                                            "VCVSBandPass",
                                            "MFBBandPass",
                                            "VCVSNotch",
                                            "ButterworthMenu",
                                            "ChebyshevMenu",
                                            "PapoulisMenu",
                                            "BesselMenu",
                                            "GaussMenu",
                                            "AdjustableMenu",
                                            "LinearSweep",
                                            "TwoOctaveSweep",
                                            "ThreeOctaveSweep",
                                            "OneDecadeSweep",
                                            "TwoDecadeSweep",
                                            "dBMagMenu",
                                            "LinearMagMenu",
                                            "PhaseMenu",
                                            "HilbertPhaseMenu",
                                            "GraphPositionReadOutMenu",
                                            "ValueAtFrquencyReadOutMenu"};
    const std::vector<const char*> buttons = {
        "PlotMagBox",  "PlotMag1dBBox", "PlotPhaseBox",       "PlotGDBox",        "PlotPulseBox",
        "ExactButton", "StdButton",     "IdealOpAmpCheckBox", "AutoScaleCheckBox"};
    const std::vector<const char*> spinners = {"NumPolesUpDown", "RippleUpDown",    "GammaUpDown",
                                               "F0UpDown",       "BandWidthUpDown", "GainUpDown",
                                               "SectionUpDown",  "C1UpDown",        "C2UpDown"};
    const std::vector<Qt::Key> keys = {Qt::Key_F1, Qt::Key_F2, Qt::Key_F5,
                                       Qt::Key_F7, Qt::Key_Up, Qt::Key_Down};
    std::mt19937 random(20240611);
    const auto pick = [&random](std::size_t n) {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(random);
    };
    for (int i = 0; i < 300; ++i) {
        switch (pick(5)) {
            case 0: Trigger(items[pick(items.size())]); break;
            case 1: ClickButton(buttons[pick(buttons.size())]); break;
            case 2: Spin(spinners[pick(spinners.size())], pick(2) == 0); break;
            case 3: Key(keys[pick(keys.size())]); break;
            default: QTest::mouseMove(&Plot(), QPoint(int(pick(700)), int(pick(450)))); break;
        }
    }
    Trigger("VCVSLowPass");
    Trigger("ButterworthMenu");
    ClickButton("ExactButton");
    Type("NumPolesBox", QStringLiteral("4"));
    EXPECT_EQ(form().State().NumSections, 2);
    EXPECT_TRUE(Find<QPlainTextEdit>("Memo").toPlainText().contains(QStringLiteral("Section 1")));
    EXPECT_FALSE(Plot().Image().isNull());
}

}  // namespace
}  // namespace nerivane
