#include "gui/QtMessageSink.h"

#include <QMessageBox>
#include <QString>

namespace nerivane {

void QtMessageSink::ShowMessage(const std::string& text, const std::string& caption) {
    QMessageBox box(QMessageBox::NoIcon, QString::fromStdString(caption),
                    QString::fromStdString(text), QMessageBox::Ok, parent_);
    box.exec();
}

}  // namespace nerivane
