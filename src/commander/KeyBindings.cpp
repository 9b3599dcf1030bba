#include "commander/KeyBindings.h"

#include <algorithm>
#include <array>

namespace vantrel {

namespace {

using Panel = OvPanelView;
using Commander = OvCommanderView;
using enum Modifiers;
using enum WhileHeld;

// The left and right arrows have no line on purpose: they are left to the next responder.
constexpr std::array<KeyBinding, 24> bindings{{
    {Key::returnKey, any, &Panel::activateCurrentItem, once},
    {Key::keypadEnter, any, &Panel::activateCurrentItem, once},
    {Key::tab, any, &Commander::toggleActivePanel, once},
    {Key::space, any, &Commander::showQuickLook, once},
    {Key::backspace, any, &Panel::navigateUp, repeats},
    {Key::home, any, &Panel::home, repeats},
    {Key::end, any, &Panel::end, repeats},
    {Key::pageUp, any, &Panel::pageUp, repeats},
    {Key::pageDown, any, &Panel::pageDown, repeats},
    {Key::up, any, &Panel::moveUp, repeats},
    {Key::down, any, &Panel::moveDown, repeats},

    {"o", command, &Commander::revealActiveFolder, once},
    {"t", command, &Commander::openTerminalInActiveFolder, once},
    {"q", command, &Commander::quit, once},

    {Key::f1, any, &Commander::showHelpDialog, once},
    {Key::f2, any, &Commander::toggleSizeDisplayMode, once},
    {Key::f3, any, &Commander::showFileViewer, once},
    {Key::f4, any, &Commander::editCurrentFile, once},
    {Key::f5, any, &Commander::showCopyDialog, once},
    {Key::f6, any, &Commander::showMoveDialog, once},
    {Key::f7, any, &Commander::showMkdirDialog, once},
    {Key::f8, any, &Commander::showDeleteDialog, once},
    {Key::f9, any, &Commander::showSortDialog, once},
    {Key::f10, any, &Commander::quit, once},
}};

bool matches(const KeyBinding& binding, const KeyEvent& event) {
    if (binding.modifiers == command && event.command != CommandKey::held) return false;
    if (const auto* text = std::get_if<std::string_view>(&binding.key)) {
        return event.charactersIgnoringModifiers == *text;
    }
    return event.key == std::get<Key>(binding.key);
}

}  // namespace

void KeyBinding::run(OvCommanderView& commander) const {
    if (const auto* own = std::get_if<CommanderCommand>(&command)) return (commander.**own)();
    (commander.activePanel().*std::get<PanelCommand>(command))();
}

const KeyBinding* bindingOf(const KeyEvent& event) {
    const auto found =
        std::ranges::find_if(bindings, [&](const KeyBinding& line) { return matches(line, event); });
    return found == bindings.end() ? nullptr : &*found;
}

bool mayRepeat(const KeyEvent& event) {
    if (const KeyBinding* const binding = bindingOf(event)) return binding->whileHeld == WhileHeld::repeats;
    return event.key == Key::character && event.command == CommandKey::released;
}

}  // namespace vantrel
