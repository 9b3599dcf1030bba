#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/Events.h"
#include "platform/View.h"

namespace vantrel {

/// Remembers the key pressed last and what its press went to. A press belongs to whoever had the keyboard
/// when it began: when that is a dialog that the press has answered, the rest of it belongs to nobody. Main
/// thread only.
class PressedKey {
public:
    /// Whether `event` repeats a key that was not pressed for `responder`, which has the keyboard now. To be
    /// asked of every key event, once.
    bool isStrayRepeat(const KeyEvent& event, const std::shared_ptr<View>& responder);

private:
    struct Press {
        Key key;
        std::string characters;
        std::weak_ptr<View> responder;
    };
    std::optional<Press> press_;
};

}  // namespace vantrel
