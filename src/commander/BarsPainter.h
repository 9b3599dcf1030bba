#pragma once

#include "commander/Bars.h"
#include "platform/Canvas.h"

namespace vantrel::commander {

/// Paints the ground of the whole view and the bars on it. `view` is the commander's bounds in points. Main
/// thread only.
void paintBars(Canvas& canvas, const Rect& view, const BarsState& state, const Font& font);

}  // namespace vantrel::commander
