#pragma once

#include <QMenuBar>
#include <vector>

#include "platform/Menu.h"

namespace vantrel {

/// A native menu bar with these menus, a child of `parent`: in the window on Linux, at the top of the screen
/// on macOS. Titles are shown to the letter; none has a mnemonic. While the bar lives, a key equivalent runs
/// its item's action and reaches nobody else, whichever of the program's windows has the keyboard; only an
/// open menu and a modal window keep their keys. Main thread only.
QMenuBar* makeQtMenuBar(const std::vector<Menu>& menus, QWidget* parent);

}  // namespace vantrel
