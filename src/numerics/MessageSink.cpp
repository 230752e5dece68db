#include "numerics/MessageSink.h"

#include "numerics/InstalledSink.h"

namespace nerivane {
namespace {

InstalledSink<MessageSink, RecordingMessageSink>& Slot() {
    static InstalledSink<MessageSink, RecordingMessageSink> slot;
    return slot;
}

}  // namespace

MessageSink& Messages() {
    return Slot().Get();
}

void InstallMessageSink(MessageSink* sink) {
    Slot().Install(sink);
}

void ShowMessage(const std::string& text) {
    Messages().ShowMessage(text, "Nerivane");
}

}  // namespace nerivane
