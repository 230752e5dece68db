#include "gui/RecentDesigns.h"

#include "files/Atomicwrite.h"
#include "files/Designrecord.h"
#include "files/Filesaveread.h"
#include "files/Regularfiles.h"
#include "gui/MessageSink.h"

namespace nerivane {

const ProgramSettings& RecentDesigns::Read() {
    settings_.versionText = VersionText();
    if (folder_.empty()) return settings_;
    const std::string path = folder_ + "/" + SettingsFileName;
    const FileContents file = ReadRegularFile(path, MaxSettingsFileBytes);
    if (file.status == ReadStatus::Missing) return settings_;  // a first start: the defaults
    if (file.status != ReadStatus::Read) {
        WindowMessages().ShowMessage(UnreadableSettingsMessage(path, file.reason), "Error");
        return settings_;
    }
    for (const std::string& message : ApplySettingsText(file.bytes, settings_, IsRegularFile))
        WindowMessages().ShowMessage(message, "Error");
    Show();
    return settings_;
}

void RecentDesigns::Write(const std::string& samplingFrequencyText,
                          const std::string& thresholdText, ReadOutMode readOut) {
    if (folder_.empty()) return;
    settings_.versionText = VersionText();
    settings_.samplingFrequencyText = samplingFrequencyText;
    settings_.thresholdText = thresholdText;
    settings_.readOutMode = readOut == ReadOutMode::GraphPosition ? 0 : 1;
    WriteFileAtomically(folder_ + "/" + SettingsFileName, SettingsText(settings_));
}

void RecentDesigns::Remember(const std::string& path) {
    AddRecentFile(settings_.recentFiles, path);
    Show();
}

void RecentDesigns::Forget(const std::string& path) {
    RemoveRecentFile(settings_.recentFiles, path);
    Show();
}

void RecentDesigns::Show() {
    for (int i = 0; i < RecentFileCount; ++i) {
        const std::string& path = settings_.recentFiles[i];
        menuItems_[i]->setText(QString::fromStdString(DesignTitle(path)));
        menuItems_[i]->setVisible(!path.empty());
    }
}

}  // namespace nerivane
