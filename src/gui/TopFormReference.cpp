// The main window's reference design: "Set Ref" keeps the design on screen beside the next
// ones for comparison, "Exhange Ref" swaps the two.
#include <QSignalBlocker>

#include "gui/TopForm.h"
#include "gui/TopFormWidgets.h"

namespace nerivane {

void TTopForm::SetReferenceButtonClick() {
    TopFormWidgets& w = *widgets_;
    SetReference(reference_, state_, *results_, DesignName());
    w.referenceLabel->setText(QString::fromStdString(reference_.name));
    w.plotReferenceBox->setEnabled(true);
    w.exchangeRefButton->setEnabled(true);
    {
        const QSignalBlocker quiet(w.plotReferenceBox);
        w.plotReferenceBox->setChecked(true);
    }
    FilterMenuClick();
}

void TTopForm::ExchangeRefButtonClick() {
    if (!reference_.isSet) return;
    const std::string name = DesignName();
    state_ = ExchangeReference(reference_, state_, *results_, name);
    widgets_->referenceLabel->setText(QString::fromStdString(reference_.name));
    LoadControlsFromRecord();
    FilterMenuClick();
}

}  // namespace nerivane
