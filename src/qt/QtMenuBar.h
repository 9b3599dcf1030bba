#pragma once

#include <QMenuBar>
#include <vector>

#include "platform/Menu.h"

namespace vantrel {

/// A native menu bar with these menus, a child of `parent`: in the window on Linux, at the top of the screen
/// on macOS. Titles are shown to the letter; none has a mnemonic marked in it. While the bar lives, a key
/// equivalent runs its item's action, once for each press, and reaches nobody else, whichever of the
/// program's windows has the keyboard; so does Alt with the first letter of a menu's title, which opens that
/// menu, and the next one of that letter when pressed again. Only an open menu keeps the key equivalents to
/// itself, and a modal window all of its keys. Main thread only.
QMenuBar* makeQtMenuBar(const std::vector<Menu>& menus, QWidget* parent);

}  // namespace vantrel
