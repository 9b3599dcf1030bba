#pragma once

#include <QKeyEvent>
#include <QString>

#include "platform/Events.h"

namespace vantrel {

// Main thread only.

/// The program's key event for Qt's, by itself; see also `pressedKey`. What a key types without modifiers
/// follows Shift alone, also while Control is held, when Qt's own text is a
/// control character. Keys pressed with the Super key type nothing: they belong to the desktop.
KeyEvent keyEventFrom(const QKeyEvent& event);

/// What the key types with no modifier but Shift, also while Control or Alt is held. On a keyboard without
/// Latin letters the key in the place of a US letter stands for that.
std::string charactersWithoutControl(const QKeyEvent& event);

/// The key event of text that an input method has put together.
KeyEvent keyEventFromCommit(const QString& text);

/// Whether the event holds Control as a command key; Control with AltGr types characters on some layouts.
bool holdsCommand(const QKeyEvent& event);

/// Whether it is the press of Shift, Control, Caps Lock and their like, which by themselves mean nothing.
bool isModifierKey(const QKeyEvent& event);

/// For the event() of a widget to which every key belongs but those that the main menu wants, which takes
/// them before: `take` gets each key that is pressed. False when the event is none of the keyboard's. In
/// event() and not in keyPressEvent, which never sees the keys that move the focus.
template <class Take>
bool takesKey(QEvent& event, Take take) {
    if (event.type() != QEvent::ShortcutOverride && event.type() != QEvent::KeyPress) return false;
    event.accept();
    if (event.type() == QEvent::KeyPress) {
        if (const auto& key = static_cast<const QKeyEvent&>(event); !isModifierKey(key)) take(key);
    }
    return true;
}

}  // namespace vantrel
