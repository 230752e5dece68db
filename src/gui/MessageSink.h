// Where the windows' modal messages go: the main window installs message boxes over itself,
// the window tests a record of what would have been shown. One sink for the process; the
// program has one thread, so no locking.
#pragma once

#include <string>
#include <vector>

#include "numerics/Message.h"

namespace nerivane {

class MessageSink {
  public:
    virtual ~MessageSink() = default;
    virtual void ShowMessage(const std::string& text, const std::string& caption) = 0;
};

// Keeps every message in order; the default sink until a front end installs its own.
class RecordingMessageSink : public MessageSink {
  public:
    struct Message {
        std::string text;
        std::string caption;
    };
    void ShowMessage(const std::string& text, const std::string& caption) override {
        messages.push_back({text, caption});
    }
    std::vector<Message> messages;
};

// The installed sink. Installing nullptr restores the default recording sink.
MessageSink& WindowMessages();
void InstallMessageSink(MessageSink* sink);

// What a calculation returned, one box each, in order.
void ShowMessages(const Messages& messages);

}  // namespace nerivane
