// The dialogs' controls carry the names the rest of the program (and the tests) find them by.
#pragma once

#include <QLineEdit>
#include <QString>
#include <QWidget>

#include "app/Parameterboxes.h"

namespace nerivane {

// A labelled control (button, label, line edit) with its object name set.
template <class Widget>
Widget* NewNamed(const char* name, const QString& text, QWidget* parent) {
    auto* widget = new Widget(text, parent);
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

// A parameter box named and started as its row of the box table says, and its caption.
inline QLineEdit* NewParameterBox(BoxId id, QWidget* parent) {
    return NewNamed<QLineEdit>(RuleOf(id).name, QString::fromLatin1(RuleOf(id).startText), parent);
}
inline QString CaptionOf(BoxId id) {
    return QString::fromLatin1(RuleOf(id).caption);
}

}  // namespace nerivane
