#include "commander/OvCommanderView.h"

#include <algorithm>
#include <array>

#include "platform/PreviewPanel.h"
#include "text/Text.h"

namespace vantrel {

EventResult OvCommanderView::keyDown(const KeyEvent& event) {
    if (const auto dialog = dialogOverlay_) return dialog->keyDown(event);
    using Step = EventResult (OvCommanderView::*)(const KeyEvent&);
    for (const Step step : {&OvCommanderView::handleNavigationKey, &OvCommanderView::handleCommandCharacter,
                            &OvCommanderView::handleFunctionKey, &OvCommanderView::quickSearch,
                            &OvCommanderView::closePreview}) {
        if ((this->*step)(event) == EventResult::handled) return EventResult::handled;
    }
    return EventResult::ignored;
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
