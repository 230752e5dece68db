#include "numerics/MessageSink.h"

namespace nerivane {
namespace {

RecordingMessageSink& DefaultSink() {
    static RecordingMessageSink sink;
    return sink;
}

MessageSink* installed = nullptr;

}  // namespace

MessageSink& Messages() {
    return installed ? *installed : DefaultSink();
}

void InstallMessageSink(MessageSink* sink) {
    installed = sink;
}

void ShowMessage(const std::string& text) {
    Messages().ShowMessage(text, "Nerivane");
}

}  // namespace nerivane
