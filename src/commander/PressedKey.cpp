#include "commander/PressedKey.h"

namespace vantrel {

bool PressedKey::isStrayRepeat(const KeyEvent& event, const std::shared_ptr<View>& responder) {
    if (event.repeat == KeyRepeat::first) {
        press_ = {event.key, event.charactersIgnoringModifiers, responder};
        return false;
    }
    return !press_ || press_->key != event.key || press_->characters != event.charactersIgnoringModifiers ||
           press_->responder.lock() != responder;
}

}  // namespace vantrel
