// The main window's files: design files (save, save as, open, the recent files and a file
// named on the command line), the settings file read at start and written at close, and the
// exports (circuit values, parts list, plot bitmap, print).
#include <QFileDialog>
#include <QFileInfo>
#include <QPainter>
#include <QPrinter>

#include "app/Initializevars.h"
#include "app/Picturefiles.h"
#include "app/Recordcontrols.h"
#include "files/Atomicwrite.h"
#include "files/Buildoptionsfile.h"
#include "files/Designrecord.h"
#include "files/Filesaveread.h"
#include "files/Regularfiles.h"
#include "gui/CompSelectForm.h"
#include "gui/MessageSink.h"
#include "gui/OptionsForm.h"
#include "gui/RecentDesigns.h"
#include "gui/TopForm.h"
#include "gui/TopFormWidgets.h"
#include "render/ImageEncoding.h"
#include "response/Valuesreport.h"

namespace nerivane {
namespace {

const QString DesignFilter = QStringLiteral("Design Files (*.kq_opamp)");

}  // namespace

void TTopForm::SetStartup(const ProgramDirectories& directories, const std::string& designFile) {
    directories_ = directories;
    startupDesign_ = designFile;
}

void TTopForm::ReadSettingsFile() {
    recent_->SetFolder(directories_.userFilesDir);
    const ProgramSettings& settings = recent_->Read();
    widgets_->samplingFreqBox->setText(QString::fromStdString(settings.samplingFrequencyText));
    dialogs_.options->ThresholdBox().SetText(settings.thresholdText);
    state_.ReadOut =
        settings.readOutMode == 0 ? ReadOutMode::GraphPosition : ReadOutMode::ValueAtFrequency;
    ReadBuildOptionsFile();
    ReadRequirementFile();
}

const std::array<std::string, RecentFileCount>& TTopForm::RecentFiles() const {
    return recent_->Files();
}

void TTopForm::ReadBuildOptionsFile() {
    if (directories_.userFilesDir.empty()) return;
    for (const std::string& message :
         nerivane::ReadBuildOptionsFile(directories_.userFilesDir, settings_.build))
        WindowMessages().ShowMessage(message, "Error");
    writtenBuildOptions_ = settings_.build;
    dialogs_.options->ShowBuildOptions(settings_.build);
    dialogs_.compSelect->SelectSeries(settings_.build.resistorSeries);
}

void TTopForm::WriteBuildOptionsFile() {
    if (directories_.userFilesDir.empty() || settings_.build == writtenBuildOptions_) return;
    std::string reason;
    if (nerivane::WriteBuildOptionsFile(directories_.userFilesDir, settings_.build, &reason)) {
        writtenBuildOptions_ = settings_.build;
    } else {
        WindowMessages().ShowMessage(std::string("The options could not be saved in \"") +
                                         BuildOptionsFileName + "\": " + reason,
                                     "Error");
        writtenBuildOptions_ = settings_.build;  // said once, not on every keystroke
    }
}

void TTopForm::WriteSettingsFile() {
    recent_->Write(widgets_->samplingFreqBox->text().toStdString(),
                   dialogs_.options->ThresholdBox().Text(), state_.ReadOut);
}

void TTopForm::RememberDesignFile(const std::string& path) {
    designFile_ = path;
    recent_->Remember(path);
    setWindowTitle(QStringLiteral("Nerivane - ") + QString::fromStdString(DesignTitle(path)));
}

std::string TTopForm::DesignName() const {
    return designFile_.empty() ? ProposedFileName(state_) : DesignTitle(designFile_);
}

bool TTopForm::SaveDesignTo(const std::string& path) {
    std::string reason;
    if (!WriteDesignFile(path, state_, &reason)) {
        WindowMessages().ShowMessage(SaveFailedText(path, reason), SaveFailedCaption);
        designFile_.clear();
        return false;
    }
    RememberDesignFile(path);
    return true;
}

void TTopForm::SaveAs() {
    const QString proposed = QString::fromStdString(
        (directories_.currentDir.empty() ? std::string() : directories_.currentDir + "/") +
        ProposedFileName(state_) + "." + DesignFileExtension);
    const QString chosen = QFileDialog::getSaveFileName(
        this, QStringLiteral("Save Design to File:"), proposed, DesignFilter);
    if (!chosen.isEmpty()) SaveDesignTo(WithDesignExtension(chosen.toStdString()));
}

bool TTopForm::OpenDesignFile(std::string path) {
    if (!path.empty() && IsMissing(path)) {
        WindowMessages().ShowMessage(MissingFileMessage + path, "Nerivane");
        recent_->Forget(path);
        path.clear();
    }
    if (path.empty()) {
        path = QFileDialog::getOpenFileName(this, QStringLiteral("Open Design File:"),
                                            QString::fromStdString(directories_.currentDir),
                                            DesignFilter)
                   .toStdString();
        if (path.empty()) return false;
    }
    DesignState opened = state_;
    const OpenResult result = ReadDesignFile(path, opened);
    switch (result.outcome) {
        case OpenOutcome::Opened: break;
        case OpenOutcome::WrongExtension: return false;  // not a design: nothing happens
        case OpenOutcome::Unreadable:
            WindowMessages().ShowMessage(UnreadableFileMessage(path, result.reason), "Nerivane");
            return false;
        case OpenOutcome::Missing:
        case OpenOutcome::Incompatible:
            WindowMessages().ShowMessage(IncompatibleFileMessage, "Nerivane");
            return false;
    }
    if (!result.repairs.empty())
        WindowMessages().ShowMessage(RepairedFileMessage(path, result.repairs), "Nerivane");
    state_ = opened;
    RememberDesignFile(path);
    LoadControlsFromRecord();
    FilterMenuClick();
    return true;
}

void TTopForm::LoadControlsFromRecord() {
    const RecordControls c = ControlsFromRecord(state_);
    LoadRecordTexts(c, Parameters());
    dialogs_.compSelect->SelectClasses(c.capacitorPercent, c.resistorPercent);
    state_.IdealOpAmp = c.idealOpAmp;
    state_.Tolerance = c.mode;
    controls_ = UpdateControlStates(state_);
    ApplyControlStates();
}

bool TTopForm::SaveCircuitValuesTo(const std::string& path) {
    std::string text = std::string(ReportOrderNote) + "\n" + ReportOvershootNote + "\n";
    text += widgets_->memo->toPlainText().toStdString();
    if (!text.empty() && text.back() != '\n') text += "\n";
    std::string reason;
    if (WriteFileAtomically(path, text, &reason)) return true;
    WindowMessages().ShowMessage(SaveFailedText(path, reason), SaveFailedCaption);
    return false;
}

bool TTopForm::SavePlotBitmapTo(const std::string& path) {
    try {
        WritePictureFile(path, EncodeImage(widgets_->bitMap->Image(), ImageFormat::Bmp));
        return true;
    } catch (const std::exception& e) {
        WindowMessages().ShowMessage(std::string(SaveFailedMessage) + "\n" + e.what(),
                                     SaveFailedCaption);
        return false;
    }
}

void TTopForm::PrintWindow(QPrinter& printer) {
    const QPixmap window = grab();
    QPainter painter(&printer);
    const QRect page = painter.viewport();
    QSize size = window.size();
    size.scale(page.size(), Qt::KeepAspectRatio);
    painter.setViewport(page.x(), page.y(), size.width(), size.height());
    painter.setWindow(window.rect());
    painter.drawPixmap(0, 0, window);
}

}  // namespace nerivane
