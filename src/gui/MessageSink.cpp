#include "gui/MessageSink.h"

#include "numerics/InstalledSink.h"

namespace nerivane {
namespace {

InstalledSink<MessageSink, RecordingMessageSink>& Slot() {
    static InstalledSink<MessageSink, RecordingMessageSink> slot;
    return slot;
}

}  // namespace

MessageSink& WindowMessages() {
    return Slot().Get();
}

void InstallMessageSink(MessageSink* sink) {
    Slot().Install(sink);
}

void ShowMessages(const Messages& messages) {
    for (const Message& message : messages)
        WindowMessages().ShowMessage(message.text, message.caption);
}

}  // namespace nerivane
