#include "commander/OvCommanderView.h"

#include <algorithm>
#include <array>

#include "platform/PreviewPanel.h"
#include "text/Text.h"

namespace vantrel {

namespace {

/// Whether a key goes on doing what it does while it is held. Moving does; what opens, starts, asks or
/// switches something is done once for each press.
bool mayRepeat(const KeyEvent& event) {
    switch (event.key) {
        case Key::up:
        case Key::down:
        case Key::pageUp:
        case Key::pageDown:
        case Key::home:
        case Key::end:
        case Key::backspace:
            return true;
        case Key::character:
            return event.command == CommandKey::released;
        default:
            return false;
    }
}

}  // namespace

EventResult OvCommanderView::keyDown(const KeyEvent& event) {
    if (isStrayRepeat(event)) return EventResult::handled;
    if (const auto dialog = dialogOverlay_) return dialog->keyDown(event);
    if (event.repeat == KeyRepeat::held && !mayRepeat(event)) return EventResult::handled;
    using Step = EventResult (OvCommanderView::*)(const KeyEvent&);
    for (const Step step : {&OvCommanderView::handleNavigationKey, &OvCommanderView::handleCommandCharacter,
                            &OvCommanderView::handleFunctionKey, &OvCommanderView::quickSearch,
                            &OvCommanderView::closePreview}) {
        if ((this->*step)(event) == EventResult::handled) return EventResult::handled;
    }
    return EventResult::ignored;
}

// Whether a held key was pressed for somebody else: for a dialog that it answered, say, or before there was
// one. The rest of such a press belongs to nobody.
bool OvCommanderView::isStrayRepeat(const KeyEvent& event) {
    const std::shared_ptr<View> responder = dialogOverlay_ ? dialogOverlay_ : shared_from_this();
    if (event.repeat == KeyRepeat::first) {
        pressedKey_ = {event.key, event.charactersIgnoringModifiers, responder};
        return false;
    }
    return !pressedKey_ || pressedKey_->key != event.key ||
           pressedKey_->characters != event.charactersIgnoringModifiers ||
           pressedKey_->responder.lock() != responder;
}

// By the key alone, whatever modifiers are held.
EventResult OvCommanderView::handleNavigationKey(const KeyEvent& event) {
    OvPanelView& panel = activePanel();
    switch (event.key) {
        case Key::returnKey:
        case Key::keypadEnter:
            panel.activateCurrentItem();
            break;
        case Key::tab:
            toggleActivePanel();
            break;
        case Key::space:
            showQuickLook();
            break;
        case Key::backspace:
            panel.navigateUp();
            break;
        case Key::home:
            panel.home();
            break;
        case Key::end:
            panel.end();
            break;
        case Key::pageUp:
            panel.pageUp();
            break;
        case Key::pageDown:
            panel.pageDown();
            break;
        case Key::up:
            panel.moveUp();
            break;
        case Key::down:
            panel.moveDown();
            break;
        default:
            return EventResult::ignored;
    }
    return EventResult::handled;
}

// A command key without a binding here goes on to the later steps.
EventResult OvCommanderView::handleCommandCharacter(const KeyEvent& event) {
    if (event.command != CommandKey::held) return EventResult::ignored;
    if (event.charactersIgnoringModifiers == "o") {
        revealActiveFolder();
    } else if (event.charactersIgnoringModifiers == "t") {
        openTerminalInActiveFolder();
    } else if (event.charactersIgnoringModifiers == "q") {
        quit();
    } else {
        return EventResult::ignored;
    }
    return EventResult::handled;
}

EventResult OvCommanderView::handleFunctionKey(const KeyEvent& event) {
    if (event.key < Key::f1 || event.key > Key::f10) return EventResult::ignored;
    runFnCommand(static_cast<std::size_t>(event.key) - static_cast<std::size_t>(Key::f1));
    return EventResult::handled;
}

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

// In the order of the cells and of the keys F1 to F10.
void OvCommanderView::runFnCommand(std::size_t index) {
    using Command = void (OvCommanderView::*)();
    static constexpr std::array<Command, 10> commands{
        &OvCommanderView::showHelpDialog,  &OvCommanderView::toggleSizeDisplayMode,
        &OvCommanderView::showFileViewer,  &OvCommanderView::editCurrentFile,
        &OvCommanderView::showCopyDialog,  &OvCommanderView::showMoveDialog,
        &OvCommanderView::showMkdirDialog, &OvCommanderView::showDeleteDialog,
        &OvCommanderView::showSortDialog,  &OvCommanderView::quit};
    (this->*commands[index])();
}

}  // namespace vantrel
