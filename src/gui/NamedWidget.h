// The dialogs' controls carry the names the rest of the program (and the tests) find them by.
#pragma once

#include <QString>
#include <QWidget>

namespace nerivane {

// A labelled control (button, label, line edit) with its object name set.
template <class Widget>
Widget* NewNamed(const char* name, const QString& text, QWidget* parent) {
    auto* widget = new Widget(text, parent);
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

}  // namespace nerivane
