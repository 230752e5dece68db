// The small dialogs: their names, captions and default texts, the classes the component
// dialog reports for each pair of buttons, which actions ask for a recalculation, the boxes
// the calculation reads through EditBox, and the math-error window's log.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QStringList>
#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "WidgetsEnvironment.h"
#include "gui/AboutForm.h"
#include "gui/CompSelectForm.h"
#include "gui/LineEditBox.h"
#include "gui/MathErrForm.h"
#include "gui/OptionsForm.h"

namespace nerivane {
namespace {

template <class Widget = QWidget>
Widget* Find(const QWidget& dialog, const char* name) {
    auto* widget = dialog.findChild<Widget*>(QString::fromLatin1(name));
    EXPECT_NE(widget, nullptr) << name;
    return widget;
}

// The caption or text of a named control, whatever kind of control it is.
std::string TextOf(const QWidget& dialog, const char* name) {
    const QWidget* widget = Find(dialog, name);
    if (auto* button = qobject_cast<const QAbstractButton*>(widget))
        return button->text().toStdString();
    if (auto* edit = qobject_cast<const QLineEdit*>(widget)) return edit->text().toStdString();
    if (auto* label = qobject_cast<const QLabel*>(widget)) return label->text().toStdString();
    ADD_FAILURE() << name << " has no text";
    return {};
}

QStringList LabelTexts(const QWidget& dialog) {
    QStringList texts;
    for (const QLabel* label : dialog.findChildren<QLabel*>()) texts << label->text();
    for (const QGroupBox* group : dialog.findChildren<QGroupBox*>()) texts << group->title();
    return texts;
}

// Counts the emissions of a signal.
template <class Sender, class Signal>
std::shared_ptr<int> CountEmissions(Sender* sender, Signal signal) {
    auto count = std::make_shared<int>(0);
    QObject::connect(sender, signal, [count] { ++*count; });
    return count;
}

struct NamedText {
    const char* name;
    const char* text;
};

TEST(CompSelectForm, HasItsCaptionNamesAndDefaultTexts) {
    TCompSelectForm form;
    EXPECT_EQ(form.windowTitle(), "Component Selection");
    // clang-format off
    const std::vector<NamedText> controls = {
        {"OnePercentResistorButton",     "1 %"},
        {"TwoPercentResistorButton",     "2 %"},
        {"FivePercentResistorButton",    "5 %"},
        {"TenPercentResistorButton",     "10 %"},
        {"TwentyPercentResistorButton",  "20 %"},
        {"OnePercentCapacitorButton",    "1 %"},
        {"TwoPercentCapacitorButton",    "2 %"},
        {"FivePercentCapacitorButton",   "5 %"},
        {"TenPercentCapacitorButton",    "10 %"},
        {"TwentyPercentCapacitorButton", "20 %"},
        {"WorstCaseMaxBox",              "100"},
        {"GainBWBox",                    "10"},
        {"OutputZBox",                   "10"},
        {"Button1",                      "Apply"},
        {"CloseButton",                  "Close"},
    };
    // clang-format on
    for (const NamedText& control : controls) EXPECT_EQ(TextOf(form, control.name), control.text);
    const QStringList labels = LabelTexts(form);
    for (const char* label : {"Resistors", "Capacitors", "Op Amp", "BW  MHz", "Output Z",
                              "Number of Worst Case Simulations  <= 1000"}) {
        EXPECT_TRUE(labels.contains(QString::fromLatin1(label))) << label;
    }
}

TEST(CompSelectForm, StartsOnTenPercentCapacitorsAndOnePercentResistors) {
    TCompSelectForm form;
    std::vector<std::string> checked;
    for (const QRadioButton* button : form.findChildren<QRadioButton*>()) {
        if (button->isChecked()) checked.push_back(button->objectName().toStdString());
    }
    EXPECT_EQ(checked.size(), 2u);
    EXPECT_TRUE(Find<QRadioButton>(form, "TenPercentCapacitorButton")->isChecked());
    EXPECT_TRUE(Find<QRadioButton>(form, "OnePercentResistorButton")->isChecked());
}

struct ClassRow {
    const char* stem;
    int percent;
    double fraction;
    int stride;
};

// clang-format off
const std::vector<ClassRow> ClassRows = {
    {"TwentyPercent", 20, 0.2,  16},
    {"TenPercent",    10, 0.1,   8},
    {"FivePercent",    5, 0.05,  4},
    {"TwoPercent",     2, 0.02,  2},
    {"OnePercent",     1, 0.01,  1},
};
// clang-format on

// Every pair of checked buttons, set by hand as a user would, reads back as its two classes;
// the series are read independently of each other.
TEST(CompSelectForm, ReadClassesReportsTheCheckedButtonOfEachSeries) {
    TCompSelectForm form;
    for (const ClassRow& capacitor : ClassRows) {
        for (const ClassRow& resistor : ClassRows) {
            const std::string capacitorName = std::string(capacitor.stem) + "CapacitorButton";
            const std::string resistorName = std::string(resistor.stem) + "ResistorButton";
            Find<QRadioButton>(form, capacitorName.c_str())->setChecked(true);
            Find<QRadioButton>(form, resistorName.c_str())->setChecked(true);
            ComponentSettings settings;
            form.ReadClasses(settings);
            SCOPED_TRACE(capacitorName + " " + resistorName);
            EXPECT_EQ(settings.capacitorClass.percent, capacitor.percent);
            EXPECT_EQ(settings.capacitorClass.fraction, capacitor.fraction);
            EXPECT_EQ(settings.capacitorClass.stride, capacitor.stride);
            EXPECT_EQ(settings.resistorClass.percent, resistor.percent);
            EXPECT_EQ(settings.resistorClass.fraction, resistor.fraction);
            EXPECT_EQ(settings.resistorClass.stride, resistor.stride);
        }
    }
}

TEST(CompSelectForm, SelectClassesChecksTheButtonsWithoutAskingForARecalculation) {
    TCompSelectForm form;
    const auto changes = CountEmissions(&form, &TCompSelectForm::ComponentChanged);
    for (const ClassRow& capacitor : ClassRows) {
        for (const ClassRow& resistor : ClassRows) {
            form.SelectClasses(capacitor.percent, resistor.percent);
            const std::string capacitorName = std::string(capacitor.stem) + "CapacitorButton";
            const std::string resistorName = std::string(resistor.stem) + "ResistorButton";
            EXPECT_TRUE(Find<QRadioButton>(form, capacitorName.c_str())->isChecked());
            EXPECT_TRUE(Find<QRadioButton>(form, resistorName.c_str())->isChecked());
        }
    }
    EXPECT_EQ(*changes, 0);
}

TEST(CompSelectForm, EveryClassButtonAndApplyAskForOneRecalculation) {
    TCompSelectForm form;
    std::vector<std::string> names = {"Button1"};
    for (const ClassRow& row : ClassRows) {
        names.push_back(std::string(row.stem) + "CapacitorButton");
        names.push_back(std::string(row.stem) + "ResistorButton");
    }
    for (const std::string& name : names) {
        const auto changes = CountEmissions(&form, &TCompSelectForm::ComponentChanged);
        Find<QAbstractButton>(form, name.c_str())->click();
        EXPECT_EQ(*changes, 1) << name;
    }
}

TEST(CompSelectForm, CloseHidesWithoutAskingForARecalculation) {
    TCompSelectForm form;
    form.show();
    const auto changes = CountEmissions(&form, &TCompSelectForm::ComponentChanged);
    Find<QAbstractButton>(form, "CloseButton")->click();
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(*changes, 0);
}

using BoxAccessor = EditBox& (TCompSelectForm::*)();

struct BoxRow {
    BoxAccessor accessor;
    const char* name;
    const char* text;
};

TEST(CompSelectForm, BoxAccessorsReadWriteAndPaintTheirLineEdits) {
    // clang-format off
    const std::vector<BoxRow> rows = {
        {&TCompSelectForm::GainBandwidthBox,    "GainBWBox",       "10"},
        {&TCompSelectForm::OutputResistanceBox, "OutputZBox",      "10"},
        {&TCompSelectForm::WorstCaseRunsBox,    "WorstCaseMaxBox", "100"},
    };
    // clang-format on
    TCompSelectForm form;
    for (const BoxRow& row : rows) {
        SCOPED_TRACE(row.name);
        EditBox& box = (form.*row.accessor)();
        QLineEdit* edit = Find<QLineEdit>(form, row.name);
        EXPECT_EQ(box.Text(), row.text);
        box.SetText("1.0E4");
        EXPECT_EQ(edit->text(), "1.0E4");
        edit->setText(QStringLiteral("abc"));
        EXPECT_EQ(box.Text(), "abc");
        box.SetRepaired(true);
        EXPECT_EQ(edit->palette().color(QPalette::Base), QColor(192, 192, 192));
        box.SetRepaired(false);
        EXPECT_NE(edit->palette().color(QPalette::Base), QColor(192, 192, 192));
    }
}

int DistanceBetweenCentres(const QWidget& window, const QWidget& mainWindow) {
    return (window.frameGeometry().center() - mainWindow.frameGeometry().center())
        .manhattanLength();
}

// Opened again after the main window has moved, the dialog follows it.
TEST(CompSelectForm, OpensCentredOnTheMainWindowEveryTime) {
    QWidget mainWindow;
    mainWindow.setGeometry(100, 80, 725, 619);
    mainWindow.show();
    TCompSelectForm form(&mainWindow);
    form.show();
    EXPECT_LE(DistanceBetweenCentres(form, mainWindow), 2);
    form.hide();
    mainWindow.move(300, 200);
    form.show();
    EXPECT_LE(DistanceBetweenCentres(form, mainWindow), 2);
}

TEST(OptionsForm, HasItsCaptionNamesAndDefaultTexts) {
    TOptionsForm form;
    EXPECT_EQ(form.windowTitle(), "Phase Plot Threshold");
    // clang-format off
    const std::vector<NamedText> controls = {
        {"Label2",              "Cutoff for Phase and Group delay plots. (dB) Stops the phase "
                                "and GD plots in the stop band."},
        {"GDPhaseThresholdBox", "20"},
        {"ApplyButton",         "Apply"},
        {"CloseButton",         "Close"},
    };
    // clang-format on
    for (const NamedText& control : controls) EXPECT_EQ(TextOf(form, control.name), control.text);
    EXPECT_EQ(form.ThresholdBox().Text(), "20");
}

TEST(OptionsForm, ApplyAsksForARecalculationAndCloseHides) {
    TOptionsForm form;
    form.show();
    const auto applied = CountEmissions(&form, &TOptionsForm::Applied);
    Find<QAbstractButton>(form, "ApplyButton")->click();
    EXPECT_EQ(*applied, 1);
    EXPECT_TRUE(form.isVisible());
    Find<QAbstractButton>(form, "CloseButton")->click();
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(*applied, 1);
}

TEST(OptionsForm, ThresholdBoxWritesTheLineEdit) {
    TOptionsForm form;
    form.ThresholdBox().SetText("200.0");
    form.ThresholdBox().SetRepaired(true);
    const QLineEdit* edit = Find<QLineEdit>(form, "GDPhaseThresholdBox");
    EXPECT_EQ(edit->text(), "200.0");
    EXPECT_EQ(edit->palette().color(QPalette::Base), RepairedBoxColour);
}

TEST(AboutForm, ShowsTheProgramAndItsVersionInABoxThatFitsThem) {
    TAboutForm form;
    EXPECT_EQ(form.windowTitle(), "About");
    EXPECT_EQ(TextOf(form, "CloseButton"), "Close");
    form.show();
    const QLabel* label = Find<QLabel>(form, "AboutLabel");
    const QStringList lines = label->text().split(QLatin1Char('\n'));
    ASSERT_GE(lines.size(), 4);
    EXPECT_EQ(lines[0], "Nerivane");
    EXPECT_EQ(lines[1], "Version 2.2");
    EXPECT_TRUE(lines[2].startsWith("Release Date: ")) << lines[2].toStdString();
    EXPECT_TRUE(lines[3].contains("Jenkins-Traub")) << lines[3].toStdString();
    EXPECT_GE(label->width(), label->sizeHint().width());
    EXPECT_GE(label->height(), label->sizeHint().height());
    Find<QAbstractButton>(form, "CloseButton")->click();
    EXPECT_FALSE(form.isVisible());
}

TEST(MathErrForm, HasItsCaptionNamesAndTexts) {
    TMathErrForm form;
    EXPECT_EQ(form.windowTitle(), "Math Err");
    EXPECT_EQ(TextOf(form, "Label2"),
              "If permissable, please save your circuit file and email it to Kestrune so that "
              "the problem that caused this window to appear can be replicated. Thank you.");
    EXPECT_EQ(TextOf(form, "Button1"), "Close");
    EXPECT_TRUE(Find<QPlainTextEdit>(form, "MathErrMemo")->isReadOnly());
    EXPECT_FALSE(form.isVisible());
}

TEST(MathErrForm, EveryLineBringsTheWindowUpAndTheLogKeepsGrowing) {
    TMathErrForm form;
    MathErrorLog& log = form;
    log.AppendLine("type= DOMAIN    name= log");
    log.AppendLine("Math Error was Side Stepped. ReturnValue = -1E99");
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(form.MemoText(),
              "type= DOMAIN    name= log\nMath Error was Side Stepped. ReturnValue = -1E99");

    Find<QAbstractButton>(form, "Button1")->click();
    EXPECT_FALSE(form.isVisible());
    log.AppendLine("Nothing was done with the error.");
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(form.MemoText().split(QLatin1Char('\n')).size(), 3);
}

}  // namespace
}  // namespace nerivane
