// Stepping the parameter boxes without their spinners: a notch of the mouse wheel over a box
// is a click of its spinner (Ctrl for the coarse step), and a key that travels from the
// focused control up through its parents is handled only at its first stop.
#pragma once

#include <QEvent>
#include <QLineEdit>
#include <functional>
#include <utility>
#include <vector>

namespace nerivane {

class BoxStepping {
  public:
    using Step = std::function<void(bool up, bool coarse)>;

    // The box's spinner click.
    void Add(QLineEdit* box, Step step) { boxes_.emplace_back(box, std::move(step)); }
    // True when the box steps by the wheel (enabled, and one of the added boxes).
    bool Steps(const QObject* box) const;
    // Fine-grained wheels send fractions of a notch; a step is a whole notch.
    void Wheel(const QObject* box, int angleDelta, bool coarse);

    // False when the key event is one already seen at a child of watched.
    bool IsFirstDelivery(QObject* watched, QEvent* event);
    void KeyReleased() { lastKey_ = nullptr; }

  private:
    const Step* StepOf(const QObject* box) const;

    std::vector<std::pair<QLineEdit*, Step>> boxes_;
    int wheelRemainder_ = 0;
    const QEvent* lastKey_ = nullptr;  // the key press being propagated to parents
    QObject* lastKeyReceiver_ = nullptr;
};

}  // namespace nerivane
