// The widgets' application object for programs without a screen (the window tests and the
// window benchmark), created on the offscreen platform.
#pragma once

namespace nerivane {

// Creates it unless an application object exists already.
void EnsureWidgetsApplication();
// Destroys the one EnsureWidgetsApplication made. Call it before the program exits: at exit
// Qt's own test devices are gone already and the application's teardown would touch them.
void CloseWidgetsApplication();

}  // namespace nerivane
