#pragma once

#include "dialog/DialogState.h"
#include "platform/Canvas.h"
#include "platform/TextField.h"

namespace vantrel::dialog {

/// The faces that dialogs are set in.
struct Fonts {
    Font regular;
    Font bold;
    Font fileContent;
};

/// In the desktop's retro font.
Fonts retroFonts(const FontCatalog& catalog);

/// Of the field, which paints itself.
TextFieldStyle fieldStyle(const Fonts& fonts);

/// Paints the dimmed surroundings and the box of a dialog, all but its field. `view` is the overlay's bounds
/// in points. Main thread only.
void paintDialog(Canvas& canvas, const Rect& view, const DialogState& state, const Fonts& fonts);

}  // namespace vantrel::dialog
