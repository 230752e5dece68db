// Where the program's dialogs appear: over the middle of the main window, wherever that has
// been moved to, so a dialog opened from a menu shows up next to what it changes.
#pragma once

class QWidget;

namespace nerivane {

// Moves a top-level window so that its frame is centred on its parent's frame; a window
// without a parent stays where it is.
void CentreOnParent(QWidget& window);

}  // namespace nerivane
