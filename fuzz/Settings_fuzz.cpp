// Fuzz target: any text offered as the settings file is applied or reported, never a crash.
#include <cstddef>
#include <cstdint>
#include <string>

#include "files/Settingsfile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    nerivane::ProgramSettings settings;
    const std::string text(reinterpret_cast<const char*>(data), size);
    nerivane::ApplySettingsText(text, settings, [](const std::string& path) {
        return path.size() % 2 == 0;  // any answer will do; the reader must cope with both
    });
    nerivane::AddRecentFile(settings.recentFiles, text.substr(0, 64));
    return 0;
}
