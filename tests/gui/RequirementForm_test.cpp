// The requirement dialog as a person uses it: a mask typed in, the orders that meet it, one
// applied to the design and checked by every calculation, and a mask that is not one.
#include <QCheckBox>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <cmath>

#include "WindowTest.h"
#include "gui/RequirementForm.h"

namespace nerivane {
namespace {

class RequirementFormTest : public ProgramWindowTest {
  protected:
    void SetUp() override {
        Start();
        Act("RequirementMenu");
        dialog = &Find<TRequirementForm>("RequirementForm");
    }
    QString Cell(int row, int column) {
        const QTableWidgetItem* item = Table().item(row, column);
        return item == nullptr ? QString() : item->text();
    }
    QTableWidget& Table() { return nerivane::Find<QTableWidget>(*dialog, "OrdersTable"); }
    QPushButton& Button(const char* name) { return nerivane::Find<QPushButton>(*dialog, name); }
    QString Problem() { return nerivane::Find<QLabel>(*dialog, "ProblemLabel").text(); }
    QString Status() { return Find<QLabel>("RequirementStatus").text(); }

    TRequirementForm* dialog = nullptr;
};

// The fewest poles of the closed forms, an oracle apart from the search's prototypes.
int ButterworthPoles(double ap, double as, double ratio) {
    const double e = (std::pow(10.0, as / 10.0) - 1.0) / (std::pow(10.0, ap / 10.0) - 1.0);
    return static_cast<int>(std::ceil(std::log10(e) / (2.0 * std::log10(ratio))));
}
int ChebyshevPoles(double ap, double as, double ratio) {
    const double e = (std::pow(10.0, as / 10.0) - 1.0) / (std::pow(10.0, ap / 10.0) - 1.0);
    return static_cast<int>(std::ceil(std::acosh(std::sqrt(e)) / std::acosh(ratio)));
}

TEST_F(RequirementFormTest, AnOrderAppliedFromTheTableIsDesignedCheckedAndMet) {
    ASSERT_TRUE(dialog->isVisible());
    EXPECT_EQ(Find<QComboBox>("KindBox").currentText(), "Low pass");  // the design's kind
    EXPECT_FALSE(Problem().isEmpty());                                // nothing typed yet
    Type("PassEdge1Box", "1k");
    Type("StopEdge1Box", "3 kHz");
    Type("PassDbBox", "1");
    Type("StopDbBox", "40");
    EXPECT_TRUE(Problem().isEmpty()) << Problem().toStdString();
    ASSERT_EQ(Table().rowCount(), 6);
    EXPECT_EQ(Cell(0, 0), "Butterworth");
    EXPECT_EQ(Cell(0, 1).toInt(), ButterworthPoles(1, 40, 3));
    EXPECT_EQ(Cell(1, 0), "Chebyshev");
    EXPECT_EQ(Cell(1, 1).toInt(), ChebyshevPoles(1, 40, 3));
    EXPECT_TRUE(Cell(1, 4).endsWith(" dB"));
    EXPECT_FALSE(Button("ApplyButton").isEnabled());  // no order chosen yet
    EXPECT_TRUE(Status().isEmpty());                  // not checked yet

    Act("VCVSHighPass");  // Apply turns the design back into a low pass
    Table().selectRow(1);
    QTest::mouseClick(&Button("ApplyButton"), Qt::LeftButton);
    const DesignState& state = form().State();
    EXPECT_EQ(state.TopologyIndex, Topology::VcvsLowPass);
    EXPECT_EQ(state.ResponseIndex, Response::Chebyshev);
    EXPECT_EQ(state.NumPoles, 4);
    EXPECT_TRUE(nerivane::Find<QCheckBox>(*dialog, "CheckRequirementBox").isChecked());
    const RequirementCheck& check = form().Results().requirement;
    ASSERT_TRUE(check.active);
    EXPECT_TRUE(check.nominal.Meets());
    EXPECT_TRUE(Find<QPlainTextEdit>("Memo").toPlainText().contains("\n  met, margin"));
    EXPECT_EQ(Status(), "requirement met");

    Act("WorstButton");
    EXPECT_TRUE(Status().contains(QStringLiteral("yield %1 % (%2 of %3 runs)")
                                      .arg(100.0 * check.runsMeeting / check.runs, 0, 'f', 1)
                                      .arg(check.runsMeeting)
                                      .arg(check.runs)))
        << Status().toStdString();
    EXPECT_GT(check.runs, 1);
}

TEST_F(RequirementFormTest, AMaskThatIsNotOneIsExplainedAndNotChecked) {
    nerivane::Find<QCheckBox>(*dialog, "CheckRequirementBox").click();
    Type("PassEdge1Box", "1k");
    Type("StopEdge1Box", "3k");
    Type("PassDbBox", "1");
    Type("StopDbBox", "40");
    EXPECT_FALSE(Status().isEmpty());
    // clang-format off
    const struct { const char* box; const char* typed; const char* problem; } rows[] = {
        {"StopEdge1Box", "500",  "fp < fs"},
        {"StopEdge1Box", "3x",   "fs: \"3x\" is not"},
        {"StopEdge1Box", "",     "fs: type"},
        {"PassDbBox",    "-1",   "ap must be"},
    };
    // clang-format on
    for (const auto& row : rows) {
        Type("StopEdge1Box", "3k");
        Type("PassDbBox", "1");
        Find<QLineEdit>(row.box).selectAll();
        QTest::keyClick(&Find<QLineEdit>(row.box), Qt::Key_Delete);
        Type(row.box, row.typed);
        EXPECT_TRUE(Problem().contains(row.problem))
            << row.typed << ": " << Problem().toStdString();
        EXPECT_EQ(Table().rowCount(), 0);
        EXPECT_TRUE(Status().isEmpty()) << row.typed;
        EXPECT_FALSE(form().Results().requirement.active);
    }
    // A band pass needs its second edges.
    auto& kind = Find<QComboBox>("KindBox");
    kind.setCurrentIndex(2);
    emit kind.activated(2);
    EXPECT_TRUE(Problem().contains("fp2")) << Problem().toStdString();
}

}  // namespace
}  // namespace nerivane
