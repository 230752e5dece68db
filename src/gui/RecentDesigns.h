// The settings file and the File menu's recent designs: the settings are read at start and
// written at close, and the list follows every save and open, newest first.
#pragma once

#include <QAction>
#include <array>
#include <string>

#include "app/DesignState.h"
#include "files/Settingsfile.h"

namespace nerivane {

class RecentDesigns {
  public:
    explicit RecentDesigns(const std::array<QAction*, RecentFileCount>& menuItems)
        : menuItems_(menuItems) {}

    // The folder of the settings file; without one nothing is read or written.
    void SetFolder(const std::string& userFilesDir) { folder_ = userFilesDir; }
    // Reads the settings file and shows its recent designs; a file that cannot be used is
    // said in a message box and the defaults stand.
    const ProgramSettings& Read();
    // The texts of the two boxes the settings keep and the read-out mode, with the list.
    void Write(const std::string& samplingFrequencyText, const std::string& thresholdText,
               ReadOutMode readOut);

    void Remember(const std::string& path);
    void Forget(const std::string& path);
    const std::array<std::string, RecentFileCount>& Files() const { return settings_.recentFiles; }

  private:
    void Show();

    std::array<QAction*, RecentFileCount> menuItems_;
    std::string folder_;
    ProgramSettings settings_;
};

}  // namespace nerivane
