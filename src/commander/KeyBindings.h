#pragma once

#include <cstdint>
#include <string_view>
#include <variant>

#include "commander/OvCommanderView.h"

namespace vantrel {

/// What must be held with a bound key. The command key is Control on Linux.
enum class Modifiers : std::uint8_t { any, command };

/// Whether a key goes on doing what it does while it is held. Moving does; what opens, starts, asks or
/// switches something is done once for each press.
enum class WhileHeld : std::uint8_t { once, repeats };

/// One line of the commander's key table. Main thread only.
struct KeyBinding {
    using PanelCommand = void (OvPanelView::*)();  ///< of the active panel
    using CommanderCommand = void (OvCommanderView::*)();

    std::variant<Key, std::string_view> key;  ///< a text is exactly what the key types without modifiers
    Modifiers modifiers = Modifiers::any;
    std::variant<PanelCommand, CommanderCommand> command;
    WhileHeld whileHeld = WhileHeld::once;

    void run(OvCommanderView& commander) const;
};

/// The table's line for that key, null where it has none. Lines live as long as the program.
const KeyBinding* bindingOf(const KeyEvent& event);

/// Also for keys without a binding: a letter that is held goes on searching.
bool mayRepeat(const KeyEvent& event);

}  // namespace vantrel
