#pragma once

#include <cstdint>
#include <string>

#include "platform/Geometry.h"

namespace vantrel {

/// What reaches views, on the main thread: plain values that own their text.

/// Keys that the program tells apart by position or function; every other key is `character`.
/// The desktop maps its key codes onto these.
enum class Key : std::uint8_t {
    character,  ///< known by the text it types only
    returnKey,
    keypadEnter,
    tab,
    space,
    backspace,
    escape,
    home,
    end,
    pageUp,
    pageDown,
    up,
    down,
    left,
    right,
    f1,
    f2,
    f3,
    f4,
    f5,
    f6,
    f7,
    f8,
    f9,
    f10,
};

/// Modifier keys held during an event. `command` is Control on Linux and Command on macOS.
enum class CommandKey : std::uint8_t { released, held };

/// Whether a key has been pressed just now, or has only been held since.
enum class KeyRepeat : std::uint8_t { first, held };

struct KeyEvent {
    Key key = Key::character;
    std::string characters{};                   ///< UTF-8, as typed with all modifiers applied; may be empty
    std::string charactersIgnoringModifiers{};  ///< UTF-8, what the key types with no modifier but Shift
    CommandKey command = CommandKey::released;
    KeyRepeat repeat = KeyRepeat::first;
};

struct MouseEvent {
    Point locationInWindow{};  ///< points, y downwards from the content's top edge
    /// The number of this press in a series at one place: 2 for the second of a double click, 3 for the next.
    int clickCount = 1;
};

struct ScrollEvent {
    Point locationInWindow{};
    double deltaY = 0;  ///< positive towards the start of the list
};

/// What a view did with an event: an ignored one is the next responder's, or nobody's.
enum class EventResult : std::uint8_t { handled, ignored };

}  // namespace vantrel
