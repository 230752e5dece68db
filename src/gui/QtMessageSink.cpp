#include "gui/QtMessageSink.h"

#include <QGuiApplication>
#include <QMessageBox>
#include <QString>
#include <cstdio>

namespace nerivane {

void QtMessageSink::ShowMessage(const std::string& text, const std::string& caption) {
    // Without a screen (a script, a test) nobody could close the box: the message is written
    // to standard error instead.
    if (QGuiApplication::platformName() == QStringLiteral("offscreen")) {
        std::fprintf(stderr, "%s: %s\n", caption.c_str(), text.c_str());
        return;
    }
    QMessageBox box(QMessageBox::NoIcon, QString::fromStdString(caption),
                    QString::fromStdString(text), QMessageBox::Ok, parent_);
    box.exec();
}

}  // namespace nerivane
