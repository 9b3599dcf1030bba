#pragma once

#include <string>
#include <vector>

#include "dialog/DialogType.h"

namespace vantrel {

/// What a dialog shows at this moment, beside the text in its field. Whoever paints dialogs reads this, the
/// words in `DialogTexts.h`, and nothing else.
struct DialogState {
    DialogType type = dialog::Help{};
    std::vector<std::string> buttons{};  ///< as painted, left to right
    int selectedButton = 0;              ///< the highlighted one
    double height = 340;                 ///< of the box in points, where its kind has no other rule
};

}  // namespace vantrel
