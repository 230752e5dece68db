// Runs something once the main window's plot has been painted for the first time: the start-up
// design is calculated and on screen then. The start-up test times it; the build's screenshot
// of the window is taken then.
#pragma once

#include <functional>

namespace nerivane {

class TTopForm;

// After the plot's first paint event has been handled, calls then from the event loop, once.
// Does nothing when the window has no plot.
void AfterFirstPlotPaint(TTopForm& window, std::function<void()> then);

}  // namespace nerivane
