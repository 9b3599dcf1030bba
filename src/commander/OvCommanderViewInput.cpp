#include <algorithm>

#include "commander/KeyBindings.h"
#include "commander/OvCommanderView.h"
#include "platform/PreviewPanel.h"
#include "text/Text.h"

namespace vantrel {

EventResult OvCommanderView::keyDown(const KeyEvent& event) {
    const std::shared_ptr<View> responder = dialogOverlay_ ? dialogOverlay_ : shared_from_this();
    if (pressedKey_.isStrayRepeat(event, responder)) return EventResult::handled;
    if (const auto dialog = dialogOverlay_) return dialog->keyDown(event);
    if (event.repeat == KeyRepeat::held && !mayRepeat(event)) return EventResult::handled;
    if (const KeyBinding* const binding = bindingOf(event)) {
        binding->run(*this);
        return EventResult::handled;
    }
    return quickSearch(event) == EventResult::handled ? EventResult::handled : closePreview(event);
}

// A search of its own for each press, also while the command key is held.
EventResult OvCommanderView::quickSearch(const KeyEvent& event) {
    const std::string first = text::firstCharacter(event.charactersIgnoringModifiers);
    if (!text::beginsWithLetterOrNumber(first)) return EventResult::ignored;
    activePanel().selectItemByPrefix(first);
    return EventResult::handled;
}

// The preview may stand beside the window without having the keyboard.
EventResult OvCommanderView::closePreview(const KeyEvent& event) {
    if (event.key != Key::escape || !desktop_.preview.isVisible()) return EventResult::ignored;
    desktop_.preview.orderOut();
    return EventResult::handled;
}

EventResult OvCommanderView::mouseDown(const MouseEvent& event) {
    const Point place = convertFromWindow(event.locationInWindow);
    const auto hit =
        std::ranges::find_if(fnButtons_, [&](const FnButton& b) { return b.rect.contains(place); });
    if (hit == fnButtons_.end()) return EventResult::ignored;
    runFnCommand(static_cast<std::size_t>(hit - fnButtons_.begin()));
    return EventResult::handled;
}

void OvCommanderView::runFnCommand(std::size_t index) {
    const auto key = static_cast<Key>(static_cast<std::size_t>(Key::f1) + index);
    bindingOf({.key = key})->run(*this);
}

}  // namespace vantrel
