#pragma once

#include "panel/PanelState.h"
#include "platform/Canvas.h"

namespace vantrel {

struct PanelFonts {
    const Font& regular;
    const Font& bold;
};

/// Paints a panel on a canvas whose area it fills, `size` points large. Asks nobody anything and keeps
/// nothing. Main thread only.
void paintPanel(Canvas& canvas, Size size, const PanelFonts& fonts, const PanelState& state);

}  // namespace vantrel
