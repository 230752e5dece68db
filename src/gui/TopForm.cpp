// The main window's life: construction, start-up, layout on resizing, the keys it sees before
// its controls, and which box the keys step.
#include "gui/TopForm.h"

#include "files/Filesaveread.h"
#include "files/Regularfiles.h"
#include "gui/MessageSink.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QScopeGuard>
#include <QScreen>
#include <QWheelEvent>
#include <QWindow>

#include "app/Initializevars.h"
#include "gui/AboutForm.h"
#include "gui/BoxStepping.h"
#include "gui/CompSelectForm.h"
#include "gui/DCBiasForm.h"
#include "gui/HelpForm.h"
#include "gui/MathErrForm.h"
#include "gui/OptionsForm.h"
#include "gui/PlotPanel.h"
#include "gui/QtMessageSink.h"
#include "gui/RecentDesigns.h"
#include "gui/RequirementForm.h"
#include "gui/SchematicForm.h"
#include "gui/TopFormWidgets.h"

namespace nerivane {
namespace {

constexpr int DesignWidth = 652;
constexpr int DesignHeight = 619;
constexpr int StartedWidth = 725;
// A plot drawn for a worst-case analysis gets its runs back this long after resizing stops.
constexpr int WorstCaseRedrawDelayMs = 150;

}  // namespace

TTopForm::TTopForm(QWidget* parent)
    : QMainWindow(parent),
      widgets_(std::make_unique<TopFormWidgets>()),
      messageSink_(std::make_unique<QtMessageSink>(this)),
      state_(DefaultDesignState()),
      results_(std::make_unique<DesignResults>()) {
    setObjectName(QStringLiteral("TopForm"));
    setWindowTitle(QStringLiteral("Nerivane"));
    auto* central = new QWidget(this);
    central->setObjectName(QStringLiteral("MainPanel"));
    setCentralWidget(central);
    BuildControls(*central, *widgets_);
    BuildStatusLine(*statusBar(), *widgets_);
    BuildMenus();
    boxes_ = std::make_unique<TopFormBoxes>(*widgets_);
    recent_ = std::make_unique<RecentDesigns>(widgets_->prevFileMenus);
    plot_ = std::make_unique<PlotPanel>(*widgets_->bitMap);
    stepping_ = std::make_unique<BoxStepping>();
    controls_ = UpdateControlStates(state_);
    central->installEventFilter(this);
    ConnectHandlers();
    worstCaseRedraw_.setSingleShot(true);
    worstCaseRedraw_.setInterval(WorstCaseRedrawDelayMs);
    connect(&worstCaseRedraw_, &QTimer::timeout, this, &TTopForm::CalcButtonClick);
    keyedCalculation_.setSingleShot(true);
    keyedCalculation_.setInterval(0);
    connect(&keyedCalculation_, &QTimer::timeout, this, [this] {
        const bool singlePass = keyedSinglePass_;
        keyedSinglePass_ = true;
        Calculate(singlePass);
    });
    // The window sees every key before the control that has the focus.
    qApp->installEventFilter(this);
    InstallMessageSink(messageSink_.get());
    resize(DesignWidth, DesignHeight);
}

TTopForm::~TTopForm() {
    qApp->removeEventFilter(this);
    InstallMessageSink(nullptr);
    if (dialogs_.mathErr != nullptr) InstallMathErrorLog(nullptr);
}

void TTopForm::AttachDialogs(const Dialogs& dialogs) {
    dialogs_ = dialogs;
    connect(dialogs_.compSelect, &TCompSelectForm::ComponentChanged, this,
            &TTopForm::CalcButtonClick);
    connect(dialogs_.options, &TOptionsForm::Applied, this, &TTopForm::CalcButtonClick);
    InstallMathErrorLog(dialogs_.mathErr);
    if (dialogs_.requirement != nullptr) {
        connect(dialogs_.requirement, &TRequirementForm::Edited, this,
                &TTopForm::WriteRequirementFile);
        connect(dialogs_.requirement, &TRequirementForm::RecheckRequested, this,
                &TTopForm::CalcButtonClick);
        connect(dialogs_.requirement, &TRequirementForm::ApplyRequested, this,
                &TTopForm::ApplyOrderRowClick);
    }
    if (dialogs_.schematic != nullptr)
        connect(dialogs_.schematic, &TSchematicForm::Opened, this, &TTopForm::ShowSchematics);
}

void TTopForm::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (shown_) return;
    shown_ = true;
    // A screen of another pixel density needs the plot painted at that density.
    if (QWindow* window = windowHandle())
        connect(window, &QWindow::screenChanged, this, &TTopForm::RedrawPlot);
    FormShow();
}

void TTopForm::FormShow() {
    state_ = DefaultDesignState();
    LoadRunTimeFiles();
    ReadSettingsFile();
    if (!startupDesign_.empty()) {
        // A file named on the command line that is not there is reported, not searched for.
        if (!IsMissing(startupDesign_))
            OpenDesignFile(startupDesign_);
        else
            WindowMessages().ShowMessage(MissingFileMessage + startupDesign_, "Nerivane");
    }
    controls_ = UpdateControlStates(state_);
    ApplyControlStates();
    FormResize();
    CalcButtonClick();
    QRect frame(QPoint(0, 0), QSize(StartedWidth, height()));
    if (const QScreen* display = screen()) frame.moveCenter(display->availableGeometry().center());
    setGeometry(frame);
}

void TTopForm::closeEvent(QCloseEvent* event) {
    FormClose();
    QMainWindow::closeEvent(event);
}

void TTopForm::FormClose() {
    WriteSettingsFile();
    // The secondary windows end with the main one, so closing it ends the program.
    for (QWidget* dialog :
         {static_cast<QWidget*>(dialogs_.compSelect), static_cast<QWidget*>(dialogs_.options),
          static_cast<QWidget*>(dialogs_.about), static_cast<QWidget*>(dialogs_.mathErr),
          static_cast<QWidget*>(dialogs_.help), static_cast<QWidget*>(dialogs_.dcBias),
          static_cast<QWidget*>(dialogs_.schematic), static_cast<QWidget*>(dialogs_.requirement)}) {
        if (dialog != nullptr) dialog->close();
    }
}

void TTopForm::FormResize() {
    TopFormWidgets& w = *widgets_;
    const QWidget* central = centralWidget();
    const int width = central->width();
    const int height = central->height();
    const int panelWidth = w.basePanel->width();
    const int panelHeight = w.basePanel->height();
    const int left = std::max(0, width - panelWidth);
    w.basePanel->setGeometry(left, 0, panelWidth, panelHeight);
    w.memo->setGeometry(left, panelHeight, panelWidth, std::max(0, height - panelHeight - 1));
    const int controlsHeight = w.controlPanel->sizeHint().height();
    w.controlPanel->setGeometry(0, 0, left, controlsHeight);
    w.bitMap->setGeometry(0, controlsHeight, left, std::max(0, height - controlsHeight));
    Redraw();
    if (state_.Tolerance == ToleranceMode::WorstCase && calculated_) worstCaseRedraw_.start();
}

bool TTopForm::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress: {
            auto* widget = qobject_cast<QWidget*>(watched);
            if (widget == nullptr || widget->window() != this) break;
            if (stepping_->IsFirstDelivery(watched, event))
                FormKeyDown(*static_cast<QKeyEvent*>(event));
            break;
        }
        case QEvent::KeyRelease: stepping_->KeyReleased(); break;
        case QEvent::MouseButtonPress: {
            const auto* edit = qobject_cast<QLineEdit*>(watched);
            if (edit != nullptr && edit->window() == this) MouseDownBoxSelect(watched);
            break;
        }
        case QEvent::Wheel: {
            const auto* wheel = static_cast<QWheelEvent*>(event);
            if (StepByWheel(watched, wheel->angleDelta().y(),
                            wheel->modifiers().testFlag(Qt::ControlModifier)))
                return true;
            break;
        }
        case QEvent::Resize:
            if (watched == centralWidget()) FormResize();
            break;
        default: break;
    }
    return QMainWindow::eventFilter(watched, event);
}

void TTopForm::FormKeyDown(const QKeyEvent& event) {
    keyedInput_ = true;
    const auto done = qScopeGuard([this] { keyedInput_ = false; });
    const int key = event.key();
    if (key == Qt::Key_F1 || key == Qt::Key_Up || key == Qt::Key_F2 || key == Qt::Key_Down) {
        const bool up = key == Qt::Key_F1 || key == Qt::Key_Up;
        const Step step{up ? StepDirection::Up : StepDirection::Down, false};
        switch (state_.AdjustFocus) {
            case FocusSection: SectionUpDownClick(step); break;
            case FocusC1: C1C2UpDownClick(Capacitor::C1, up); break;
            case FocusC2: C1C2UpDownClick(Capacitor::C2, up); break;
            default: break;
        }
    } else if (key == Qt::Key_F5) {
        state_.ResponseIndex = NextFamily(state_.ResponseIndex);
        FilterMenuClick();
    } else if (key == Qt::Key_F7) {
        state_.SweepIndex = NextSweep(state_.SweepIndex);
        FilterMenuClick();
    }
}

void TTopForm::MouseDownBoxSelect(QObject* sender) {
    const TopFormWidgets& w = *widgets_;
    if (sender == w.sectionBox)
        state_.AdjustFocus = FocusSection;
    else if (sender == w.c1ValueBox)
        state_.AdjustFocus = FocusC1;
    else if (sender == w.c2ValueBox)
        state_.AdjustFocus = FocusC2;
    else
        state_.AdjustFocus = FocusNothing;
}

bool TTopForm::StepByWheel(QObject* box, int angleDelta, bool coarse) {
    const auto* widget = qobject_cast<QWidget*>(box);
    if (widget == nullptr || widget->window() != this || !stepping_->Steps(box)) return false;
    keyedInput_ = true;
    const auto done = qScopeGuard([this] { keyedInput_ = false; });
    stepping_->Wheel(box, angleDelta, coarse);
    return true;
}

}  // namespace nerivane
