#include "gui/BoxStepping.h"

#include <QWidget>
#include <cstdlib>

namespace nerivane {
namespace {

// One notch of a mouse wheel.
constexpr int WheelNotch = 120;

}  // namespace

const BoxStepping::Step* BoxStepping::StepOf(const QObject* box) const {
    for (const auto& [edit, step] : boxes_)
        if (edit == box) return &step;
    return nullptr;
}

bool BoxStepping::Steps(const QObject* box) const {
    const auto* edit = qobject_cast<const QLineEdit*>(box);
    return edit != nullptr && edit->isEnabled() && StepOf(box) != nullptr;
}

void BoxStepping::Wheel(const QObject* box, int angleDelta, bool coarse) {
    const Step* step = StepOf(box);
    if (step == nullptr) return;
    wheelRemainder_ += angleDelta;
    const int notches = wheelRemainder_ / WheelNotch;
    wheelRemainder_ -= notches * WheelNotch;
    for (int i = 0; i < std::abs(notches); ++i) (*step)(notches > 0, coarse);
}

bool BoxStepping::IsFirstDelivery(QObject* watched, QEvent* event) {
    // The application's filter sees a key the focused control ignores at each parent it
    // travels to (twice at the central widget, which the window also filters for its size).
    const auto* previous = qobject_cast<QWidget*>(lastKeyReceiver_);
    const bool propagated = event == lastKey_ && previous != nullptr &&
                            (previous == watched || previous->parentWidget() == watched);
    lastKey_ = event;
    lastKeyReceiver_ = watched;
    return !propagated;
}

}  // namespace nerivane
