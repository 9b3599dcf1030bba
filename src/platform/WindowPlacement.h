#pragma once

#include "platform/Geometry.h"

namespace vantrel {

/// What stands around a window's content: its menu bar and the frame that the desktop puts around both.
/// Points.
struct Surroundings {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    bool operator==(const Surroundings&) const = default;
};

/// Where the content of a new window stands on a desktop of which `available` is free for windows. It has its
/// `wanted` size where that fits with what is around it, else as much of it as fits, but never less than
/// `smallest`. The whole is centred; where not even the smallest fits, its upper left corner is in sight, and
/// with it the title bar and the menu bar. Whole points. Pure; any thread.
Rect placeContent(const Rect& available, const Size& wanted, const Size& smallest,
                  const Surroundings& around);

}  // namespace vantrel
