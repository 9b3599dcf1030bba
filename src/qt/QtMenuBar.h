#pragma once

#include <QMenuBar>
#include <vector>

#include "platform/Menu.h"

namespace vantrel {

/// A native menu bar with these menus, a child of `parent`: in the window on Linux, at the top of the screen
/// on macOS. Titles are shown literally and have no mnemonics. While the bar exists, a key equivalent runs
/// its item's action, once for each press, and reaches nobody else, whichever of the program's windows has
/// the keyboard. In the same way Alt with the first letter of a menu's title opens that menu and, pressed
/// again, the next one with that letter. Only an open menu keeps the key equivalents to itself, and a modal
/// window all of its keys. Main thread only.
QMenuBar* makeQtMenuBar(const std::vector<Menu>& menus, QWidget* parent);

}  // namespace vantrel
