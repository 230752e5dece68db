#include "gui/WindowPlacement.h"

#include <QRect>
#include <QWidget>

namespace nerivane {

void CentreOnParent(QWidget& window) {
    const QWidget* parent = window.parentWidget();
    if (parent == nullptr) return;
    QRect frame = window.frameGeometry();
    frame.moveCenter(parent->window()->frameGeometry().center());
    window.move(frame.topLeft());
}

}  // namespace nerivane
