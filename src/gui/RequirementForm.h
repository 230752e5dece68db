// The "Requirement" dialog: the mask the design must meet (kind, edges, Ap and As typed as
// engineers write values), whether each calculation checks it, and for every response family
// the fewest poles that meet it, recomputed as the user types; "Apply" puts the chosen order
// into the design.
#pragma once

#include <QDialog>
#include <memory>
#include <optional>
#include <vector>

#include "app/DesignState.h"
#include "app/Requirementorders.h"
#include "files/Requirementfile.h"

namespace nerivane {

class TRequirementForm : public QDialog {
    Q_OBJECT

  public:
    explicit TRequirementForm(QWidget* parent = nullptr);
    ~TRequirementForm() override;

    // As its file keeps it: the last valid mask typed and the check box.
    const Requirement& Held() const { return held_; }
    void ShowRequirement(const Requirement& requirement);
    // The mask every calculation is checked against: only while checking is on and the
    // fields hold a valid mask.
    const RequirementMask* MaskToCheck() const;
    // The design the orders are searched for (its circuit's pole limit, ripple and gamma) and
    // whose circuit kind a new requirement starts from.
    void FollowDesign(const DesignState& state);

  signals:
    // The requirement was edited: its file is to be written.
    void Edited();
    // The design is to be checked again: checking was turned on or off, or a mask being
    // checked was entered.
    void RecheckRequested();
    // The chosen order, to be put into the design, with checking now on.
    void ApplyRequested(const OrderRow& row, MaskKind kind);

  protected:
    // Centres the dialog on the main window each time it is opened.
    void showEvent(QShowEvent* event) override;

  private:
    struct Widgets;
    void ShowKind(MaskKind kind);
    // Reads the fields, keeps a valid mask, and shows its orders or what is wrong with it.
    void ReadFields();
    void FieldsEdited();
    void ShowOrders();
    // The order chosen in the table, if any.
    const OrderRow* ChosenRow() const;
    void EnableApply();
    void ApplyClicked();

    std::unique_ptr<Widgets> widgets_;
    Requirement held_;
    bool fieldsValid_ = false;
    DesignState design_;
    // What the table shows: searched again only when it changes.
    std::optional<OrderSearch> shownSearch_;
    std::vector<OrderRow> rows_;
};

}  // namespace nerivane
