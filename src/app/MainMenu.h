#pragma once

#include <vector>

#include "platform/Menu.h"

namespace vantrel {

class AppDelegate;

/// The program's menus. Their items call `delegate`, which must outlive them. Main thread only.
std::vector<Menu> makeMainMenu(AppDelegate& delegate);

}  // namespace vantrel
