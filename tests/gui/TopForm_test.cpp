// The main window as a person uses it: the controls each selection enables, the keys, spinners
// and wheel, typed values and their repairs, the read-out over the plot, and that no garbage
// or sequence of inputs breaks it.
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QToolButton>
#include <QWheelEvent>
#include <random>
#include <vector>

#include "WindowTest.h"
#include "app/Plotview.h"
#include "gui/PlotBox.h"
#include "gui/UpDownButtons.h"
#include "numerics/Formatfunctions.h"
#include "response/Readout.h"

namespace nerivane {
namespace {

class TopFormTest : public ProgramWindowTest {
  protected:
    void SetUp() override { Start(); }

    // Of labels, buttons and menu items alike.
    QString Caption(const char* name) { return Find<QObject>(name).property("text").toString(); }
    bool Enabled(const QString& name) {
        return Find<QObject>(name.toStdString()).property("enabled").toBool();
    }
    bool Silver(const char* box) {
        return Find<QLineEdit>(box).palette().color(QPalette::Base) == RepairedBoxColour;
    }
    QString Memo() { return Find<QPlainTextEdit>("Memo").toPlainText(); }
    void Spin(const char* name, bool up, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        auto& spinner = Find<UpDownButtons>(name);
        QTest::mouseClick(up ? spinner.UpButton() : spinner.DownButton(), Qt::LeftButton,
                          modifiers);
    }
    void Key(Qt::Key key, const char* target = "Memo") { QTest::keyClick(&Find(target), key); }
    PlotBox& Plot() { return Find<PlotBox>("BitMap"); }
};

// Which controls a selection uses is the app layer's rule; the window must apply it.
TEST_F(TopFormTest, SelectionsEnableOnlyTheControlsTheyUse) {
    // clang-format off
    const char* const rows[][3] = {  // action, then enabled and disabled controls
        {"ChebyshevMenu",  "RippleBox RippleUpDown RippleLabel", "GammaBox GammaUpDown BandWidthBox"},
        {"VCVSBandPass",   "BandWidthBox BandWidthUpDown BandWidthLabel", "HilbertPhaseMenu"},
        {"AdjustableMenu", "GammaBox GammaUpDown GammaLabel", "RippleBox RippleUpDown RippleLabel"},
        {"VCVSLowPass",    "HilbertPhaseMenu", "BandWidthBox BandWidthUpDown ExchangeRefButton"},
        {"WorstButton",    "", "PlotPulseBox"},
        {"LinearMagMenu",  "", "PlotMagBox"},
        {"SetReferenceButton", "ExchangeRefButton PlotReferenceBox", ""},
    };
    // clang-format on
    for (const auto& [action, enabled, disabled] : rows) {
        Act(action);
        for (const QString& name : QString(enabled).split(' ', Qt::SkipEmptyParts))
            EXPECT_TRUE(Enabled(name)) << action << " " << name.toStdString();
        for (const QString& name : QString(disabled).split(' ', Qt::SkipEmptyParts))
            EXPECT_FALSE(Enabled(name)) << action << " " << name.toStdString();
    }
    EXPECT_EQ(Caption("PlotMag1dBBox"), "Linear Mag");
    Act("HilbertPhaseMenu");
    EXPECT_EQ(Caption("PlotPhaseBox"), "Hilbert Phase");
    Act("MFBBandPass");  // a band pass has no Hilbert phase: back to the plain one
    EXPECT_EQ(Caption("PlotPhaseBox"), "Phase");
}

// F5 and F7 cycle family and sweep from any box; the arrows and F1/F2 step the section, or the
// capacitor box last clicked; after a click into any other box they step nothing.
TEST_F(TopFormTest, KeysStepOnlyTheChosenBox) {
    const DesignState start = form().State();
    for (int i = 1; i <= 9; ++i) {
        Key(Qt::Key_F5);
        Key(Qt::Key_F7, "F0Box");
        EXPECT_EQ(Index(form().State().ResponseIndex), (Index(start.ResponseIndex) + i) % 9);
        EXPECT_EQ(Index(form().State().SweepIndex), (Index(start.SweepIndex) + i) % 6);
    }

    Type("NumPolesBox", "6");
    const QString c1 = Text("C1ValueBox");
    for (Qt::Key key : {Qt::Key_Up, Qt::Key_F1}) Key(key);
    EXPECT_EQ(Text("SectionBox"), "2");
    Key(Qt::Key_F2);
    QTest::mouseClick(&Find<QLineEdit>("C1ValueBox"), Qt::LeftButton);
    Key(Qt::Key_Up, "C1ValueBox");
    EXPECT_NE(Text("C1ValueBox"), c1);
    EXPECT_EQ(Text("SectionBox"), "1");
    QTest::mouseClick(&Find<QLineEdit>("F0Box"), Qt::LeftButton);
    const DesignState before = form().State();
    for (Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_F1, Qt::Key_F2}) Key(key, "F0Box");
    EXPECT_TRUE(Same(before, form().State()));
}

// Keys held down step the design at once; the long calculation follows the last of them.
TEST_F(TopFormTest, KeysFasterThanTheCalculationAreCalculatedOnceAfterTheLast) {
    for (const char* action : {"ButterworthMenu", "WorstButton"}) Act(action);
    Type("NumPolesBox", "20");
    const qint64 before = Plot().Image().cacheKey();
    for (int i = 0; i < 30; ++i) Key(Qt::Key_Up);
    EXPECT_EQ(Text("SectionBox"), "9");
    EXPECT_EQ(Plot().Image().cacheKey(), before);
    QApplication::processEvents();
    EXPECT_NE(Plot().Image().cacheKey(), before);
    // Stepping the section watches the nominal curve: one run, not the whole analysis.
    EXPECT_EQ(form().Results().runs, 1);
}

TEST_F(TopFormTest, TypedValuesAreTakenOrRepairedAndRepairsTurnSilver) {
    struct Row {
        const char* action;
        const char* box;
        const char* typed;
        const char* shown;  // empty: not checked
        bool silver;
    };
    // clang-format off
    const Row rows[] = {
        {"AutoScaleCheckBox", "ScaleBox", "1000", "",        true},   // 100 times automatic at most
        {"",             "NumPolesBox", "25",     "20",      true},
        {"",             "NumPolesBox", "5",      "5",       false},
        {"VCVSBandPass", "NumPolesBox", "25",     "10",      true},
        {"",             "C1ValueBox",  "0.022u", "22.0 nF", false},
        {"",             "C1ValueBox",  "-22n",   "22.0 nF", true},
        {"",             "C2ValueBox",  "22x",    "",        true},
    };
    // clang-format on
    Act("PlotGDBox");  // the scale is the group delay's
    for (const Row& row : rows) {
        if (*row.action != '\0') Act(row.action);
        Type(row.box, row.typed);
        EXPECT_TRUE(*row.shown == '\0' || Text(row.box) == row.shown)
            << row.box << " " << row.typed << " shows " << Text(row.box).toStdString();
        EXPECT_EQ(Silver(row.box), row.silver) << row.box << " " << row.typed;
    }
    Spin("C1UpDown", true);  // a step by the spinner is a good value again
    EXPECT_FALSE(Silver("C1ValueBox"));
}

TEST_F(TopFormTest, SpinnersAndTheWheelStepTheirBoxCoarserWithCtrl) {
    Spin("F0UpDown", true);
    Spin("F0UpDown", true, Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(form().State().F0, 6100.0);
    QLineEdit& box = Find<QLineEdit>("F0Box");
    const QPoint at = box.rect().center();
    for (int delta : {120, 60, 60, -120}) {  // half notches add up
        QWheelEvent wheel(at, box.mapToGlobal(at), {}, {0, delta}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&box, &wheel);
    }
    EXPECT_DOUBLE_EQ(form().State().F0, 6200.0);
}

TEST_F(TopFormTest, ReadoutFollowsThePointerAtThePlotEdges) {
    for (const char* action : {"PlotPhaseBox", "PlotMag1dBBox"}) Act(action);
    DesignState state = form().State();
    const PlotGeometry g = GeometryFor(PlotViewFor(
        state, UpdateControlStates(state), form().Results(), Plot().width(), Plot().height()));
    const int right = g.left + g.width;
    const auto expect = [&](int x, int y, std::vector<std::string> parts) {
        QTest::mouseMove(&Plot(), QPoint(x, y));
        const std::string text = Plot().Readout().toStdString();
        EXPECT_EQ(text.empty(), parts.empty()) << text;
        for (const std::string& part : parts) EXPECT_NE(text.find(part), text.npos) << text;
    };
    expect(g.left, g.top, {"f = ", "Mag = 10.00 dB", "Mag = 1.00 dB", "Phase = 180.0 deg"});
    expect(right, g.Bottom(), {"Mag = -90.00 dB", "Mag = -9.00 dB", "Phase = -180.0 deg"});
    expect(g.left - 1, g.top, {});
    expect(g.left, g.Bottom() + 1, {});
    // The linear scale reads the gain itself: 10 dB above unity, the top, is a gain of 1.111,
    // and the pass band under the pointer in value mode a gain of 1.
    Act("LinearMagMenu");
    state = form().State();
    const PlotGeometry linear = GeometryFor(PlotViewFor(
        state, UpdateControlStates(state), form().Results(), Plot().width(), Plot().height()));
    expect(linear.left, linear.top, {"Mag = 1.111"});
    Act("ValueAtFrquencyReadOutMenu");
    expect(linear.left, linear.Bottom(), {"Mag = 1.000"});
    Act("dBMagMenu");
    // Value mode reports the traces under the pointer, whatever its height.
    const double db = form().Results().traces.magnitudeDb[ReadoutIndex(g, right)];
    expect(right, g.top + g.height / 2, {"Mag = " + FormatFixed(db, 2) + " dB"});
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&Plot(), &leave);
    EXPECT_TRUE(Plot().Readout().isEmpty());
}

// Garbage in every box, then every menu item but the File menu's (those ask for files) and
// every button on show, the spinners' among them, in any order.
TEST_F(TopFormTest, GarbageAndRandomInputSequencesNeverBreakTheWindow) {
    const char* const boxes[] = {"NumPolesBox",  "RippleBox",     "GammaBox",   "F0Box",
                                 "BandWidthBox", "FilterGainBox", "SectionBox", "C1ValueBox",
                                 "C2ValueBox",   "ScaleBox"};
    for (const char* name : boxes) Find<QLineEdit>(name).setText("x!1e999,,");
    Act("CalcButton");
    for (int i = 0; i < 7; ++i) EXPECT_TRUE(Silver(boxes[i])) << boxes[i];  // the design's own
    EXPECT_EQ(Text("NumPolesBox"), "3");
    std::vector<QAction*> items;
    for (QAction* menu : form().menuBar()->actions().mid(1))
        for (QAction* item : menu->menu()->actions())
            if (!item->isSeparator()) items.push_back(item);
    std::vector<QAbstractButton*> buttons;
    for (QAbstractButton* button : form().findChildren<QAbstractButton*>())
        if (button->isVisible()) buttons.push_back(button);
    const Qt::Key keys[] = {Qt::Key_F1, Qt::Key_F2, Qt::Key_F5, Qt::Key_F7, Qt::Key_Up};
    std::mt19937 random(20240611);
    const auto pick = [&random](std::size_t n) {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(random);
    };
    for (int i = 0; i < 300; ++i) {
        switch (pick(4)) {
            case 0: items[pick(items.size())]->trigger(); break;
            case 1: QTest::mouseClick(buttons[pick(buttons.size())], Qt::LeftButton); break;
            case 2: Key(keys[pick(5)]); break;
            default: QTest::mouseMove(&Plot(), QPoint(int(pick(700)), int(pick(450)))); break;
        }
    }
    for (const char* action : {"VCVSLowPass", "ButterworthMenu", "ExactButton"}) Act(action);
    Type("NumPolesBox", "4");
    EXPECT_EQ(form().State().NumSections, 2);
    EXPECT_FALSE(Silver("NumPolesBox"));
    EXPECT_TRUE(Memo().contains("Section 1"));
}

}  // namespace
}  // namespace nerivane
