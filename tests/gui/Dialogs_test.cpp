// The small dialogs: the classes the component dialog reports and which of its actions ask for
// a recalculation, the math-error window's log, and the DC bias tool solving what was typed.
#include <QComboBox>
#include <QSignalSpy>

#include "WindowTest.h"
#include "gui/CompSelectForm.h"
#include "gui/DCBiasForm.h"
#include "gui/MathErrForm.h"
#include "numerics/Sivalue.h"

namespace nerivane {
namespace {

QAbstractButton& Button(const QWidget& dialog, const std::string& name) {
    return Find<QAbstractButton>(dialog, name);
}

// Each button of a series reads back as its class, the other series untouched; clicking one
// asks for a recalculation, checking one as loading a design does asks for none.
TEST(CompSelectForm, ClassButtonsReadBackAndOnlyClicksAskForARecalculation) {
    TCompSelectForm form;
    const QSignalSpy changes(&form, &TCompSelectForm::ComponentChanged);
    const std::string stems[] = {"TwentyPercent", "TenPercent", "FivePercent", "TwoPercent",
                                 "OnePercent"};
    const int percents[] = {20, 10, 5, 2, 1};
    for (int c = 0, r = 4; c < 5; ++c, --r) {
        Button(form, stems[c] + "CapacitorButton").click();
        Button(form, stems[r] + "ResistorButton").click();
        ComponentSettings settings;
        form.ReadClasses(settings);
        EXPECT_EQ(settings.capacitorClass.percent, percents[c]);
        EXPECT_EQ(settings.resistorClass.percent, percents[r]);
        form.SelectClasses(percents[r], percents[c]);
        EXPECT_TRUE(Button(form, stems[r] + "CapacitorButton").isChecked());
        EXPECT_TRUE(Button(form, stems[c] + "ResistorButton").isChecked());
        EXPECT_EQ(changes.count(), 2 * (c + 1));
    }
    Button(form, "Button1").click();  // Apply
    Button(form, "CloseButton").click();
    EXPECT_EQ(changes.count(), 11);
}

TEST(MathErrForm, EveryLineBringsTheWindowUpAndTheLogKeepsGrowing) {
    TMathErrForm form;
    MathErrorLog& log = form;
    log.AppendLine("type= DOMAIN    name= log");
    EXPECT_TRUE(form.isVisible());
    Button(form, "Button1").click();  // Close
    EXPECT_FALSE(form.isVisible());
    log.AppendLine("Math Error was Side Stepped.");
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(form.MemoText(), "type= DOMAIN    name= log\nMath Error was Side Stepped.");
}

// Typed at the cursor as a person types; QTest's key clicks take no micro or ohm sign.
void Type(const QWidget& form, std::initializer_list<std::pair<const char*, const char*>> texts) {
    for (const auto& [box, text] : texts) {
        Find<QLineEdit>(form, box).clear();
        Find<QLineEdit>(form, box).insert(QString::fromUtf8(text));
    }
}

double ReadBack(const QWidget& form, const std::string& box, const char* unit) {
    return ParseSiValue(Find<QLineEdit>(form, box).text().toStdString(), unit).value_or(-1.0);
}

TEST(DCBiasForm, SolveFillsTheEmptyBoxWithAValueThatReadsBack) {
    TDCBiasForm form;
    Type(form, {{"DividerVsBox", "12"}, {"DividerR1Box", "20k"}, {"DividerR2Box", "10 kΩ"}});
    QTest::keyClick(&Find(form, "DividerR2Box"), Qt::Key_Return);
    EXPECT_NEAR(ReadBack(form, "DividerVbBox", "V"), 4.0, 1e-12);
    const QLabel& result = Find<QLabel>(form, "DividerResult");
    EXPECT_TRUE(result.text().contains("400.0 uA") && result.text().contains("E12 (10 %)"));
    Find<QComboBox>(form, "SeriesBox").setCurrentIndex(2);  // rounds the solved design again
    EXPECT_TRUE(result.text().contains("E24 (5 %)")) << result.text().toStdString();
}

}  // namespace
}  // namespace nerivane
