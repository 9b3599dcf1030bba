#pragma once

#include <QKeyEvent>
#include <QString>

#include "platform/Events.h"

namespace vantrel {

// Main thread only.

/// The program's key event for Qt's, whatever came before; see also `pressedKey`. What a key types without
/// modifiers depends on Shift alone, even while Control is held, when Qt's own text is a control character.
/// Keys pressed with the Super key type nothing: they belong to the desktop.
KeyEvent keyEventFrom(const QKeyEvent& event);

/// What the key types with no modifier but Shift, even while Control or Alt is held. On a keyboard without
/// Latin letters, the key in the place of a US letter stands for that letter.
std::string charactersWithoutControl(const QKeyEvent& event);

/// The key event for text that was composed with an input method.
KeyEvent keyEventFromCommit(const QString& text);

/// Whether the event holds Control as a command key; Control with AltGr types characters on some layouts.
bool holdsCommand(const QKeyEvent& event);

/// Whether the key is Shift, Control, Caps Lock or the like, which mean nothing by themselves.
bool isModifierKey(const QKeyEvent& event);

/// For the event() of a widget that owns every key except those of the main menu, which takes its keys first:
/// gives each key that is pressed to `take`. False when the event is not one of the keyboard's. Meant for
/// event(), since keyPressEvent never sees the keys that move the focus.
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
