#include "gui/UpDownButtons.h"

#include <QToolButton>
#include <QVBoxLayout>

namespace nerivane {
namespace {

constexpr int ButtonWidth = 16;
// Held down, a button steps at a pace the calculation keeps up with.
constexpr int RepeatDelayMs = 400;
constexpr int RepeatIntervalMs = 80;

QToolButton* NewArrow(Qt::ArrowType arrow, const char* name, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setArrowType(arrow);
    button->setAutoRepeat(true);
    button->setAutoRepeatDelay(RepeatDelayMs);
    button->setAutoRepeatInterval(RepeatIntervalMs);
    // The arrows step the box; keyboard focus stays in the box.
    button->setFocusPolicy(Qt::NoFocus);
    button->setFixedWidth(ButtonWidth);
    // The two halves share the height of the box beside them.
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Ignored);
    return button;
}

}  // namespace

UpDownButtons::UpDownButtons(const QString& name, QWidget* parent)
    : QWidget(parent),
      up_(NewArrow(Qt::UpArrow, "UpButton", this)),
      down_(NewArrow(Qt::DownArrow, "DownButton", this)) {
    setObjectName(name);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(up_);
    layout->addWidget(down_);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    connect(up_, &QToolButton::clicked, this, [this] { emit Clicked(true); });
    connect(down_, &QToolButton::clicked, this, [this] { emit Clicked(false); });
}

}  // namespace nerivane
