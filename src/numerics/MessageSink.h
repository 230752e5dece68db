// Where the core's modal messages go: the window shows a message box, the command line prints
// to standard error and keeps the texts for its JSON, tests record them. One sink is installed
// for the process; the program has one thread, so no locking.
#pragma once

#include <string>
#include <vector>

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
MessageSink& Messages();
void InstallMessageSink(MessageSink* sink);

// Shows a plain message whose caption is the program's name, as the platform's bare
// message call does.
void ShowMessage(const std::string& text);

}  // namespace nerivane
