#include "gui/RequirementForm.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShowEvent>
#include <QTableWidget>
#include <QVBoxLayout>
#include <array>

#include "app/Initializevars.h"
#include "app/Requirementfields.h"
#include "gui/NamedWidget.h"
#include "gui/WindowPlacement.h"

namespace nerivane {
namespace {

// The kind box lists the kinds in MaskKind's order.
constexpr std::array<const char*, 4> KindCaptions = {"Low pass", "High pass", "Band pass", "Notch"};
constexpr std::array<const char*, OrderColumnCount> ColumnCaptions = {
    "Family",      "Poles",           "F0",       "Band width", "Pass margin",
    "Stop margin", "Delay variation", "Overshoot"};
constexpr int BandWidthColumn = 3;

bool IsTwoSided(MaskKind kind) {
    return kind == MaskKind::BandPass || kind == MaskKind::Notch;
}

QString EdgesCaption(const char* first, const char* second, bool twoSided, const char* what) {
    return twoSided ? QStringLiteral("%1, %2  %3 edges").arg(first, second, what)
                    : QStringLiteral("%1  %2 edge").arg(first, what);
}

}  // namespace

struct TRequirementForm::Widgets {
    QComboBox* kind;
    std::array<QLineEdit*, 2> passEdges;
    std::array<QLineEdit*, 2> stopEdges;
    QLineEdit* centre;
    QLineEdit* passDb;
    QLineEdit* stopDb;
    QLabel* passCaption;
    QLabel* stopCaption;
    QFormLayout* fields;
    QCheckBox* check;
    QLabel* problem;
    QTableWidget* orders;
    QPushButton* apply;

    MaskFields Read() const {
        MaskFields read;
        read.kind = static_cast<MaskKind>(kind->currentIndex());
        for (std::size_t i = 0; i < 2; ++i) {
            read.passEdges[i] = passEdges[i]->text().trimmed().toStdString();
            read.stopEdges[i] = stopEdges[i]->text().trimmed().toStdString();
        }
        read.centre = centre->text().trimmed().toStdString();
        read.passDb = passDb->text().trimmed().toStdString();
        read.stopDb = stopDb->text().trimmed().toStdString();
        return read;
    }
    bool Empty() const {
        for (const QLineEdit* field :
             {passEdges[0], passEdges[1], stopEdges[0], stopEdges[1], centre, passDb, stopDb})
            if (!field->text().isEmpty()) return false;
        return true;
    }
};

TRequirementForm::TRequirementForm(QWidget* parent)
    : QDialog(parent), widgets_(std::make_unique<Widgets>()), design_(DefaultDesignState()) {
    setObjectName(QStringLiteral("RequirementForm"));
    setWindowTitle(QStringLiteral("Requirement"));
    setModal(false);
    Widgets& w = *widgets_;

    w.kind = new QComboBox(this);
    w.kind->setObjectName(QStringLiteral("KindBox"));
    for (const char* caption : KindCaptions) w.kind->addItem(QString::fromLatin1(caption));
    const auto field = [this](const char* name) {
        return NewNamed<QLineEdit>(name, QString(), this);
    };
    w.passEdges = {field("PassEdge1Box"), field("PassEdge2Box")};
    w.stopEdges = {field("StopEdge1Box"), field("StopEdge2Box")};
    w.centre = field("CentreBox");
    w.centre->setPlaceholderText(QStringLiteral("the middle of the band"));
    w.passDb = field("PassDbBox");
    w.stopDb = field("StopDbBox");
    w.passCaption = new QLabel(this);
    w.stopCaption = new QLabel(this);
    w.fields = new QFormLayout;
    w.fields->addRow(QStringLiteral("Kind"), w.kind);
    const auto pair = [this](const std::array<QLineEdit*, 2>& boxes) {
        auto* row = new QHBoxLayout;
        row->addWidget(boxes[0]);
        row->addWidget(boxes[1]);
        return row;
    };
    w.fields->addRow(w.passCaption, pair(w.passEdges));
    w.fields->addRow(w.stopCaption, pair(w.stopEdges));
    w.fields->addRow(QStringLiteral("f0  centre"), w.centre);
    w.fields->addRow(QStringLiteral("Ap  most attenuation in the pass band (dB)"), w.passDb);
    w.fields->addRow(QStringLiteral("As  least attenuation in the stop band (dB)"), w.stopDb);

    w.check = NewNamed<QCheckBox>("CheckRequirementBox",
                                  QStringLiteral("Check the design against the requirement"), this);
    w.problem = NewNamed<QLabel>("ProblemLabel", QString(), this);
    w.problem->setWordWrap(true);
    QPalette palette = w.problem->palette();
    palette.setColor(QPalette::WindowText, QColor(160, 0, 0));
    w.problem->setPalette(palette);

    w.orders = new QTableWidget(0, OrderColumnCount, this);
    w.orders->setObjectName(QStringLiteral("OrdersTable"));
    QStringList captions;
    for (const char* caption : ColumnCaptions) captions << QString::fromLatin1(caption);
    w.orders->setHorizontalHeaderLabels(captions);
    w.orders->verticalHeader()->hide();
    w.orders->setEditTriggers(QAbstractItemView::NoEditTriggers);
    w.orders->setSelectionBehavior(QAbstractItemView::SelectRows);
    w.orders->setSelectionMode(QAbstractItemView::SingleSelection);

    w.apply = NewNamed<QPushButton>("ApplyButton", QStringLiteral("Apply"), this);
    w.apply->setToolTip(QStringLiteral("Design with the chosen family and poles"));
    auto* closeButton = NewNamed<QPushButton>("CloseButton", QStringLiteral("Close"), this);
    // Enter in a field checks the mask typed; it does not apply an order.
    for (QPushButton* button : {w.apply, closeButton}) button->setAutoDefault(false);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(w.apply);
    buttons->addWidget(closeButton);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(w.fields);
    layout->addWidget(w.check);
    layout->addWidget(w.problem);
    layout->addWidget(w.orders, 1);
    layout->addLayout(buttons);
    // Room for every column of the table without scrolling.
    setMinimumSize(760, 480);

    connect(w.kind, &QComboBox::activated, this, [this] {
        ShowKind(static_cast<MaskKind>(widgets_->kind->currentIndex()));
        FieldsEdited();
        if (held_.check) emit RecheckRequested();
    });
    for (QLineEdit* field : {w.passEdges[0], w.passEdges[1], w.stopEdges[0], w.stopEdges[1],
                             w.centre, w.passDb, w.stopDb}) {
        connect(field, &QLineEdit::textEdited, this, &TRequirementForm::FieldsEdited);
        connect(field, &QLineEdit::returnPressed, this, [this] {
            if (held_.check) emit RecheckRequested();
        });
    }
    connect(w.check, &QCheckBox::clicked, this, [this](bool checked) {
        held_.check = checked;
        emit Edited();
        emit RecheckRequested();
    });
    connect(w.orders, &QTableWidget::itemSelectionChanged, this, &TRequirementForm::EnableApply);
    connect(w.apply, &QPushButton::clicked, this, &TRequirementForm::ApplyClicked);
    connect(closeButton, &QPushButton::clicked, this, &QDialog::hide);
    ShowRequirement({});
}

TRequirementForm::~TRequirementForm() = default;

void TRequirementForm::ShowRequirement(const Requirement& requirement) {
    held_ = requirement;
    const Widgets& w = *widgets_;
    w.check->setChecked(requirement.check);
    const MaskFields fields = requirement.mask ? FieldsOf(*requirement.mask) : MaskFields{};
    for (std::size_t i = 0; i < 2; ++i) {
        w.passEdges[i]->setText(QString::fromStdString(fields.passEdges[i]));
        w.stopEdges[i]->setText(QString::fromStdString(fields.stopEdges[i]));
    }
    w.centre->setText(QString::fromStdString(fields.centre));
    w.passDb->setText(QString::fromStdString(fields.passDb));
    w.stopDb->setText(QString::fromStdString(fields.stopDb));
    ShowKind(fields.kind);
    ReadFields();
}

const RequirementMask* TRequirementForm::MaskToCheck() const {
    return held_.check && fieldsValid_ && held_.mask ? &*held_.mask : nullptr;
}

void TRequirementForm::FollowDesign(const DesignState& state) {
    design_ = state;
    if (isVisible()) ShowOrders();
}

void TRequirementForm::ShowKind(MaskKind kind) {
    Widgets& w = *widgets_;
    const bool twoSided = IsTwoSided(kind);
    w.kind->setCurrentIndex(static_cast<int>(kind));
    w.passCaption->setText(
        EdgesCaption(PassEdgeName(kind, 0), PassEdgeName(kind, 1), twoSided, "pass-band"));
    w.stopCaption->setText(
        EdgesCaption(StopEdgeName(kind, 0), StopEdgeName(kind, 1), twoSided, "stop-band"));
    w.passEdges[1]->setVisible(twoSided);
    w.stopEdges[1]->setVisible(twoSided);
    w.fields->setRowVisible(w.centre, twoSided);
    w.orders->setColumnHidden(BandWidthColumn, !twoSided);
}

void TRequirementForm::ReadFields() {
    const ParsedMask parsed = MaskFromFields(widgets_->Read());
    fieldsValid_ = parsed.mask.has_value();
    if (fieldsValid_) held_.mask = parsed.mask;
    widgets_->problem->setText(QString::fromStdString(parsed.problem));
    ShowOrders();
}

void TRequirementForm::FieldsEdited() {
    ReadFields();
    emit Edited();
}

void TRequirementForm::ShowOrders() {
    Widgets& w = *widgets_;
    std::optional<OrderSearch> search;
    if (fieldsValid_) search = OrderSearchFor(*held_.mask, design_);
    if (search == shownSearch_) return;
    shownSearch_ = search;
    const int selected = w.orders->currentRow();
    rows_ = search ? RequirementOrders(*search) : std::vector<OrderRow>{};
    w.orders->clearContents();
    w.orders->setRowCount(static_cast<int>(rows_.size()));
    for (std::size_t r = 0; r < rows_.size(); ++r) {
        const auto cells = OrderRowCells(rows_[r], search->maxPoles);
        for (std::size_t c = 0; c < cells.size(); ++c)
            w.orders->setItem(static_cast<int>(r), static_cast<int>(c),
                              new QTableWidgetItem(QString::fromStdString(cells[c])));
    }
    w.orders->resizeColumnsToContents();
    // The same family stays chosen while the mask is typed.
    if (selected >= 0 && selected < w.orders->rowCount())
        w.orders->selectRow(selected);
    else
        w.orders->clearSelection();
    EnableApply();
}

const OrderRow* TRequirementForm::ChosenRow() const {
    const QTableWidget& orders = *widgets_->orders;
    const int row = orders.selectionModel()->hasSelection() ? orders.currentRow() : -1;
    if (row < 0 || row >= static_cast<int>(rows_.size())) return nullptr;
    return &rows_[static_cast<std::size_t>(row)];
}

void TRequirementForm::EnableApply() {
    const OrderRow* row = ChosenRow();
    widgets_->apply->setEnabled(row != nullptr && row->Meets());
}

void TRequirementForm::ApplyClicked() {
    const OrderRow* row = ChosenRow();
    if (row == nullptr || !row->Meets()) return;
    widgets_->check->setChecked(true);
    held_.check = true;
    emit Edited();
    // A copy: the calculation that follows may search the orders again.
    emit ApplyRequested(OrderRow(*row), held_.mask->kind);
}

void TRequirementForm::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // A requirement not begun yet is for the kind of filter on screen.
    if (!held_.mask && widgets_->Empty()) {
        ShowKind(MaskKindOf(design_.TopologyIndex));
        ReadFields();
    }
    ShowOrders();
    // A spontaneous show is the window system restoring the dialog: it stays where it was.
    if (!event->spontaneous()) CentreOnParent(*this);
}

}  // namespace nerivane
