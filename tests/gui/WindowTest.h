// What the window tests share: the application object widgets need (registered for the whole
// test program; the offscreen platform needs no display), controls found by name, and the
// program's windows started with their messages recorded, so no test waits for a message box.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <cstring>
#include <stdexcept>
#include <string>

#include "gui/LineEditBox.h"
#include "gui/MessageSink.h"
#include "gui/ProgramWindows.h"
#include "support/OffscreenApplication.h"

namespace nerivane {

struct WidgetsEnvironment : ::testing::Environment {
    void SetUp() override { EnsureWidgetsApplication(); }
    void TearDown() override { CloseWidgetsApplication(); }
};
[[maybe_unused]] inline ::testing::Environment* const widgetsEnvironment =
    ::testing::AddGlobalTestEnvironment(new WidgetsEnvironment);

inline bool Same(const DesignState& a, const DesignState& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

template <class Widget = QWidget>
Widget& Find(const QObject& parent, const std::string& name) {
    auto* widget = parent.findChild<Widget*>(QString::fromStdString(name));
    if (widget == nullptr) throw std::runtime_error("no control named " + name);
    return *widget;
}

class ProgramWindowTest : public ::testing::Test {
  protected:
    // Without directories the window reads and writes no files.
    void Start(const ProgramDirectories* directories = nullptr, const std::string& design = "") {
        windows = CreateProgramWindows();
        InstallMessageSink(&messages);
        if (directories != nullptr) windows.topForm->SetStartup(*directories, design);
        windows.topForm->show();
        QApplication::processEvents();
    }
    void TearDown() override {
        windows.topForm.reset();
        InstallMessageSink(nullptr);
    }
    TTopForm& form() { return *windows.topForm; }
    template <class Widget = QWidget>
    Widget& Find(const std::string& name) {
        return nerivane::Find<Widget>(form(), name);
    }
    QString Text(const std::string& box) { return Find<QLineEdit>(box).text(); }
    // A menu item is triggered, a button clicked, as a person would.
    void Act(const std::string& name) {
        if (auto* item = form().findChild<QAction*>(QString::fromStdString(name)))
            item->trigger();
        else
            QTest::mouseClick(&Find<QAbstractButton>(name), Qt::LeftButton);
    }
    // Replaces a box's text by typing, then Enter.
    void Type(const std::string& name, const QString& text) {
        QLineEdit& box = Find<QLineEdit>(name);
        box.selectAll();
        QTest::keyClicks(&box, text);
        QTest::keyClick(&box, Qt::Key_Return);
    }

    ProgramWindows windows;
    RecordingMessageSink messages;
};

}  // namespace nerivane
