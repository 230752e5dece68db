// The desktop program from its application object to the end of its event loop: the folders
// are settled before any window exists (a missing run-time files folder ends the program), the
// windows are made, and a design file named on the command line is opened at start.
#pragma once

#include <QApplication>
#include <functional>

#include "gui/TopForm.h"

namespace nerivane {

// beforeShow sees the main window once it is made, before it is first shown.
int RunProgram(QApplication& application,
               const std::function<void(TTopForm&)>& beforeShow = nullptr);

}  // namespace nerivane
