// The core's modal messages as message boxes over the main window, or on standard error where
// there is no screen to show them on.
#pragma once

#include <QWidget>

#include "gui/MessageSink.h"

namespace nerivane {

class QtMessageSink final : public MessageSink {
  public:
    explicit QtMessageSink(QWidget* parent) : parent_(parent) {}
    void ShowMessage(const std::string& text, const std::string& caption) override;

  private:
    QWidget* parent_;
};

}  // namespace nerivane
