// The help viewer: a circuit's help page beside its picture ("Circuit Info", following the
// circuit while it is open) or the program's user guide ("Program Info"), read as Markdown
// from the run-time files' help folder, with a way to open the file in the desktop's viewer.
#pragma once

#include <QDialog>
#include <QImage>
#include <optional>
#include <string>

#include "circuit/Components.h"

class QLabel;
class QPushButton;
class QTextBrowser;

namespace nerivane {

class THelpForm : public QDialog {
    Q_OBJECT

  public:
    explicit THelpForm(QWidget* parent = nullptr);

    void SetRunTimeFilesDir(const std::string& folder);
    // The circuit's page and picture (an empty picture leaves the picture area empty).
    void ShowCircuitInfo(Topology topology, const QImage& picture);
    // Follows the design's circuit while a circuit's page is open.
    void CircuitChanged(Topology topology, const QImage& picture);
    void ShowProgramInfo();

    // The file on show, whether it could be read or not.
    const std::string& ShownFile() const { return shownFile_; }

  private:
    void Load(const std::string& file);
    void OpenInSystemViewer();
    // Shows the window in front, centred on the main window when it was closed.
    void Present();

    QLabel* picture_;
    QTextBrowser* text_;
    QLabel* status_;
    QPushButton* systemViewerButton_;
    std::string runTimeFilesDir_;
    std::string shownFile_;
    std::optional<Topology> shownTopology_;  // none while the guide is on show
};

}  // namespace nerivane
