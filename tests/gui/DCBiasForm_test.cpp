// The DC bias window as a person uses it: type the known values, press Solve, read the filled
// box back; bad text shows a message in the window and never an infinity.
#include "gui/DCBiasForm.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <string>

#include "WidgetsEnvironment.h"
#include "numerics/Sivalue.h"

namespace nerivane {
namespace {

template <class Widget = QLineEdit>
Widget* Find(const QWidget& form, const char* name) {
    auto* widget = form.findChild<Widget*>(QString::fromLatin1(name));
    EXPECT_NE(widget, nullptr) << name;
    return widget;
}

// Typed at the cursor as a person types; QTest's key clicks take no micro or ohm sign.
void Type(const QWidget& form, const char* box, const char* text) {
    QLineEdit* edit = Find(form, box);
    edit->clear();
    edit->insert(QString::fromUtf8(text));
}

double ReadBack(const QWidget& form, const char* box, const char* unit) {
    return ParseSiValue(Find(form, box)->text().toStdString(), unit).value_or(-1.0);
}

TEST(DCBiasForm, SolveFillsTheEmptyBoxesWithValuesThatReadBack) {
    TDCBiasForm form;
    EXPECT_EQ(form.windowTitle(), "DC Bias Tool");
    Type(form, "DividerVsBox", "12");
    Type(form, "DividerR1Box", "20k");
    Type(form, "DividerR2Box", "10 kΩ");
    QTest::keyClick(Find(form, "DividerR2Box"), Qt::Key_Return);
    EXPECT_NEAR(ReadBack(form, "DividerVbBox", "V"), 4.0, 1e-12);
    const QLabel* result = Find<QLabel>(form, "DividerResult");
    EXPECT_TRUE(result->text().contains("400.0 uA") && result->text().contains("E12 (10 %)"));
    // A new series rounds the solved design again.
    Find<QComboBox>(form, "SeriesBox")->setCurrentIndex(2);
    EXPECT_TRUE(result->text().contains("E24 (5 %)")) << result->text().toStdString();

    // R1 = R2 = 22k, so R1 || R2 = 11k; 1.5 uF puts the corner at 1 / (2 pi 16.5 ms).
    Type(form, "DecoupledVsBox", "12");
    Type(form, "DecoupledVbBox", "6V");
    Type(form, "DecoupledR1Box", "22k");
    Type(form, "DecoupledCBox", "1,5µF");
    Find<QPushButton>(form, "DecoupledSolveButton")->click();
    EXPECT_NEAR(ReadBack(form, "DecoupledR2Box", "Ω"), 22e3, 1e-9);
    EXPECT_NEAR(ReadBack(form, "DecoupledFcBox", "Hz"), 9.646, 1e-12);
}

TEST(DCBiasForm, BadInputShowsAMessageAndNoInfinity) {
    TDCBiasForm form;
    Type(form, "DividerVsBox", "12");
    Type(form, "DividerR2Box", "10k");
    // The text typed into R1 and the message it gives.
    const char* const cases[][2] = {
        {"abc", "R1: \"abc\" is not a value"},    {"1e999", "R1: \"1e999\" is not a value"},
        {"0", "R1 must be a positive"},           {"1e308G", "R1 must be a positive, finite"},
        {"", "all but one of Vs, R1, R2 and Vb"},
    };
    for (const auto& [text, message] : cases) {
        Type(form, "DividerR1Box", text);
        Find<QPushButton>(form, "DividerSolveButton")->click();
        QString shown = Find<QLabel>(form, "DividerResult")->text();
        EXPECT_TRUE(shown.contains(QString::fromUtf8(message))) << shown.toStdString();
        for (const QLineEdit* edit : form.findChildren<QLineEdit*>()) shown += edit->text();
        EXPECT_FALSE(shown.contains("inf", Qt::CaseInsensitive) ||
                     shown.contains("nan", Qt::CaseInsensitive));
        EXPECT_EQ(Find(form, "DividerVbBox")->text(), "");
    }
}

}  // namespace
}  // namespace nerivane
