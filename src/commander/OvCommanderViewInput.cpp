#include "commander/OvCommanderView.h"

#include <algorithm>

#include "text/Text.h"

namespace vantrel {

EventResult OvCommanderView::keyDown(const KeyEvent& event) {
    using Step = EventResult (OvCommanderView::*)(const KeyEvent&);
    for (const Step step : {&OvCommanderView::handleNavigationKey, &OvCommanderView::handleCommandCharacter,
                            &OvCommanderView::handleFunctionKey, &OvCommanderView::quickSearch}) {
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
    return runFnCommand(static_cast<std::size_t>(event.key) - static_cast<std::size_t>(Key::f1));
}

EventResult OvCommanderView::quickSearch(const KeyEvent& event) {
    const std::string first = text::firstCharacter(event.charactersIgnoringModifiers);
    if (!text::beginsWithLetterOrNumber(first)) return EventResult::ignored;
    activePanel().selectItemByPrefix(first);
    return EventResult::handled;
}

EventResult OvCommanderView::mouseDown(const MouseEvent& event) {
    const Point place = convertFromWindow(event.locationInWindow);
    const auto hit =
        std::ranges::find_if(fnButtons_, [&](const FnButton& b) { return b.rect.contains(place); });
    if (hit == fnButtons_.end()) return EventResult::ignored;
    return runFnCommand(static_cast<std::size_t>(hit - fnButtons_.begin()));
}

EventResult OvCommanderView::runFnCommand(std::size_t index) {
    switch (index) {
        case 1:
            toggleSizeDisplayMode();
            break;
        case 3:
            editCurrentFile();
            break;
        case 9:
            quit();
            break;
        default:
            return EventResult::ignored;
    }
    return EventResult::handled;
}

}  // namespace vantrel
