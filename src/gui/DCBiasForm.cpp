#include "gui/DCBiasForm.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QShowEvent>
#include <QVBoxLayout>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "circuit/Componentsettings.h"
#include "circuit/Dcbias.h"
#include "gui/NamedWidget.h"
#include "gui/WindowPlacement.h"
#include "numerics/Formatfunctions.h"
#include "numerics/Sivalue.h"
#include "render/SchematicImage.h"

namespace nerivane {

namespace {

using Field = std::optional<double> BiasInputs::*;
using Value = double BiasSolution::*;

struct Quantity {
    const char* name;  // as the messages call it
    const char* stem;  // of the box's name
    const char* label;
    Field input;
    Value output;
    const char* unit;     // the unit a value may be typed with, and is written with
    const char* example;  // a value as it may be typed
};

// clang-format off
constexpr std::array<Quantity, 6> Quantities = {{
    {"Vs", "Vs", "Vs  supply",          &BiasInputs::supply,      &BiasSolution::supply,      "V",  "12"},
    {"R1", "R1", "R1  supply to tap",   &BiasInputs::upper,       &BiasSolution::upper,       "Ω",  "10k"},
    {"R2", "R2", "R2  tap to ground",   &BiasInputs::lower,       &BiasSolution::lower,       "Ω",  "10k"},
    {"Vb", "Vb", "Vb  bias at the tap", &BiasInputs::bias,        &BiasSolution::bias,        "V",  "6"},
    {"C",  "C",  "C  tap to ground",    &BiasInputs::capacitance, &BiasSolution::capacitance, "F",  "4.7uF"},
    {"fc", "Fc", "fc  corner",          &BiasInputs::corner,      &BiasSolution::corner,      "Hz", "100Hz"},
}};

// clang-format on
constexpr int DefaultSeries = 1;

// "E12 (10 %)": a series as the series box lists it.
std::string SeriesCaption(std::size_t index) {
    const ToleranceClass& series = ToleranceClasses[index];
    return std::string(SeriesName(series)) + " (" + ToleranceCaption(series) + ")";
}

std::optional<double> ReadValue(const QString& text, const Quantity& quantity) {
    const std::string typed = text.toStdString();
    if (const std::optional<double> value = ParseTypedValue(typed, quantity.unit)) return value;
    if (quantity.unit == std::string_view("Ω")) return ParseTypedValue(typed, "ohm");
    return std::nullopt;
}

// Four significant digits, which the boxes read back as they read typing.
QString BoxText(double value, const char* unit) {
    return QString::fromStdString(SiText(value, 4, unit));
}

QString ResultText(const BiasSolution& s, bool decoupled, const std::string& seriesName) {
    const StandardBias& parts = s.standard;
    // Rounding noise of an exact standard divider is shown as no error at all.
    const bool exact = std::fabs(parts.error) <= 1e-12 * s.bias;
    const std::string sign = !exact && parts.error > 0.0 ? "+" : "";
    std::string text = "Divider current " + FormatEngineering(s.current, 3, "A") +
                       "\nR1 ∥ R2 = " + FormatEngineering(s.thevenin, 3, "Ω") + "\n\n" +
                       seriesName + ": R1 = " + FormatEngineering(parts.upper, 3, "Ω") +
                       ", R2 = " + FormatEngineering(parts.lower, 3, "Ω");
    if (decoupled) text += "\nand C = " + FormatEngineering(parts.capacitance, 3, "F");
    text += "\nThey give Vb = " + FormatEngineering(parts.bias, 3, "V") + ", error " + sign +
            FormatEngineering(exact ? 0.0 : parts.error, 2, "V") + " (" + sign +
            FormatFixedPlain(exact ? 0.0 : parts.errorPercent, 2) + " %)";
    if (decoupled) text += "\nand fc = " + FormatEngineering(parts.corner, 3, "Hz");
    return QString::fromStdString(text);
}

struct QuantityBox {
    const Quantity* quantity;
    QLineEdit* edit;
};

}  // namespace

struct TDCBiasForm::Circuit {
    bool decoupled = false;
    std::vector<QuantityBox> boxes;
    QLabel* result = nullptr;
    // What the last solved design was typed as; a new series rounds it again.
    std::optional<BiasInputs> solved;

    BiasSolution SolveFor(const BiasInputs& inputs, const ToleranceClass& series) const {
        return decoupled ? SolveDecoupledDivider(inputs, series) : SolveDivider(inputs, series);
    }
};

namespace {

// A group box of the first count quantities as named line edits (DividerVsBox ...
// DecoupledFcBox), a Solve button and the result label; Enter in a box solves as the button
// does.
QGroupBox* NewCircuitGroup(QDialog& form, std::vector<QuantityBox>& circuitBoxes, QLabel*& result,
                           const char* stem, const QString& title, const QString& caption,
                           std::size_t count, const std::function<void()>& solve) {
    auto* group = new QGroupBox(title, &form);
    const std::string name = stem;
    auto* picture = NewNamed<QLabel>((name + "Picture").c_str(), QString(), group);
    picture->setPixmap(QPixmap::fromImage(
        RenderSchematic(BiasDividerPicture(count > 4), form.devicePixelRatioF())));
    picture->setAlignment(Qt::AlignCenter);
    auto* captionLabel = NewNamed<QLabel>((name + "Caption").c_str(), caption, group);
    auto* boxes = new QFormLayout;
    for (std::size_t i = 0; i < count; ++i) {
        const Quantity& quantity = Quantities[i];
        auto* edit = NewNamed<QLineEdit>((name + quantity.stem + "Box").c_str(), QString(), group);
        edit->setPlaceholderText(QStringLiteral("solve"));
        QObject::connect(edit, &QLineEdit::returnPressed, &form, solve);
        boxes->addRow(QString::fromUtf8(quantity.label), edit);
        circuitBoxes.push_back({&quantity, edit});
    }
    auto* solveButton =
        NewNamed<QPushButton>((name + "SolveButton").c_str(), QStringLiteral("Solve"), group);
    // Enter belongs to the boxes; a default button would solve a second time.
    solveButton->setAutoDefault(false);
    QObject::connect(solveButton, &QPushButton::clicked, &form, solve);
    result = NewNamed<QLabel>((name + "Result").c_str(), QString(), group);
    result->setTextFormat(Qt::PlainText);
    result->setWordWrap(true);
    result->setTextInteractionFlags(Qt::TextSelectableByMouse);
    result->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    // Six lines of results, so that the window does not grow at the first Solve.
    result->setMinimumHeight(result->fontMetrics().lineSpacing() * 7);

    auto* layout = new QVBoxLayout(group);
    layout->addWidget(picture);
    layout->addWidget(captionLabel);
    layout->addLayout(boxes);
    layout->addWidget(solveButton, 0, Qt::AlignRight);
    layout->addWidget(result, 1);
    return group;
}

}  // namespace

TDCBiasForm::TDCBiasForm(QWidget* parent)
    : QDialog(parent),
      divider_(std::make_unique<Circuit>()),
      decoupled_(std::make_unique<Circuit>()) {
    setObjectName(QStringLiteral("DCBiasForm"));
    setWindowTitle(QStringLiteral("DC Bias Tool"));
    setModal(false);
    decoupled_->decoupled = true;

    auto* hint = NewNamed<QLabel>(
        "HintLabel",
        QStringLiteral("Leave empty the box of the quantity to find and press Solve. Values "
                       "take SI prefixes and units: 12, 10k, 4.7uF, 100Hz."),
        this);
    hint->setWordWrap(true);
    series_ = new QComboBox(this);
    series_->setObjectName(QStringLiteral("SeriesBox"));
    for (std::size_t i = 0; i < ToleranceClasses.size(); ++i)
        series_->addItem(QString::fromStdString(SeriesCaption(i)));
    series_->setCurrentIndex(DefaultSeries);
    connect(series_, &QComboBox::currentIndexChanged, this, &TDCBiasForm::SeriesChanged);

    QGroupBox* dividerGroup = NewCircuitGroup(
        *this, divider_->boxes, divider_->result, "Divider", QStringLiteral("Divider"),
        QString::fromUtf8("Vb = Vs · R2 / (R1 + R2)"), 4, [this] { Solve(*divider_); });
    QGroupBox* decoupledGroup =
        NewCircuitGroup(*this, decoupled_->boxes, decoupled_->result, "Decoupled",
                        QStringLiteral("Divider with decoupling capacitor"),
                        QString::fromUtf8("fc = 1 / (2π · C · R1 ∥ R2); Vs and Vb always given"),
                        Quantities.size(), [this] { Solve(*decoupled_); });

    auto* closeButton = NewNamed<QPushButton>("CloseButton", QStringLiteral("Close"), this);
    closeButton->setAutoDefault(false);
    connect(closeButton, &QPushButton::clicked, this, &QDialog::hide);

    auto* seriesLayout = new QHBoxLayout;
    seriesLayout->addWidget(new QLabel(QStringLiteral("Standard values"), this));
    seriesLayout->addWidget(series_);
    seriesLayout->addStretch(1);
    auto* circuitsLayout = new QHBoxLayout;
    circuitsLayout->addWidget(dividerGroup);
    circuitsLayout->addWidget(decoupledGroup);
    auto* buttonLayout = new QHBoxLayout;
    buttonLayout->addStretch(1);
    buttonLayout->addWidget(closeButton);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(hint);
    layout->addLayout(seriesLayout);
    layout->addLayout(circuitsLayout, 1);
    layout->addLayout(buttonLayout);
    // Room for the longest result line of each circuit without wrapping.
    setMinimumWidth(720);
}

TDCBiasForm::~TDCBiasForm() = default;

void TDCBiasForm::Solve(Circuit& circuit) {
    circuit.solved.reset();
    BiasInputs inputs;
    for (const QuantityBox& box : circuit.boxes) {
        const QString text = box.edit->text().trimmed();
        if (text.isEmpty()) continue;
        const std::optional<double> value = ReadValue(text, *box.quantity);
        if (!value) {
            circuit.result->setText(QStringLiteral("%1: \"%2\" is not a value; type a number "
                                                   "such as %3.")
                                        .arg(QString::fromLatin1(box.quantity->name), text,
                                             QString::fromLatin1(box.quantity->example)));
            return;
        }
        inputs.*box.quantity->input = value;
    }
    const int index = series_->currentIndex();
    const BiasSolution solution = circuit.SolveFor(inputs, ToleranceClasses[index]);
    if (!solution.error.empty()) {
        circuit.result->setText(QString::fromStdString(solution.error));
        return;
    }
    for (const QuantityBox& box : circuit.boxes) {
        if (box.edit->text().trimmed().isEmpty())
            box.edit->setText(BoxText(solution.*box.quantity->output, box.quantity->unit));
    }
    circuit.solved = inputs;
    circuit.result->setText(ResultText(solution, circuit.decoupled, SeriesCaption(index)));
}

void TDCBiasForm::SeriesChanged() {
    const int index = series_->currentIndex();
    if (index < 0) return;
    for (Circuit* circuit : {divider_.get(), decoupled_.get()}) {
        if (!circuit->solved) continue;
        const BiasSolution solution = circuit->SolveFor(*circuit->solved, ToleranceClasses[index]);
        circuit->result->setText(
            solution.error.empty() ? ResultText(solution, circuit->decoupled, SeriesCaption(index))
                                   : QString::fromStdString(solution.error));
    }
}

void TDCBiasForm::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // A spontaneous show is the window system restoring the window: it stays where it was.
    if (!event->spontaneous()) CentreOnParent(*this);
}

}  // namespace nerivane
