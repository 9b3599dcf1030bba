#include <QInputDevice>
#include <QKeyEvent>
#include <QString>

#include <algorithm>
#include <array>
#include <string>

#include "fuzz/Input.h"
#include "fuzz/Utf8.h"
#include "fuzz/desktop/Targets.h"
#include "qt/QtKeys.h"

namespace vantrel::fuzz {

namespace {

constexpr std::array modifierBits{Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier,
                                  Qt::MetaModifier,  Qt::KeypadModifier,  Qt::GroupSwitchModifier};

int keyCode(Input& input) {
    static constexpr std::array areas{Qt::Key_Space, Qt::Key_Escape, Qt::Key_F1,         Qt::Key_Shift,
                                      Qt::Key_AltGr, Qt::Key_Eacute, Qt::Key_Dead_Grave, Qt::Key_unknown};
    if (input.byte() < 0x40) return static_cast<int>(input.number());
    return input.oneOf(areas) + static_cast<int>(input.below(100));
}

Qt::KeyboardModifiers modifiers(Input& input) {
    Qt::KeyboardModifiers held;
    const std::uint8_t bits = input.byte();
    for (std::size_t i = 0; i < modifierBits.size(); ++i) held.setFlag(modifierBits[i], (bits >> i & 1) != 0);
    return held;
}

/// Half of them UTF-8, half of them any numbers: a desktop may send lone surrogates.
QString typedText(Input& input) {
    if (input.flag()) return QString::fromStdString(input.text(3));
    QString text;
    for (std::size_t count = input.below(4); count > 0; --count)
        text += QChar(static_cast<char16_t>(input.below(65536)));
    return text;
}

void checkLatinShortcut(const QKeyEvent& event, const KeyEvent& mapped) {
    if (event.key() < Qt::Key_A || event.key() > Qt::Key_Z) return;
    const bool shift = event.modifiers().testFlag(Qt::ShiftModifier);
    const char letter = static_cast<char>(event.key() + (shift ? 0 : 'a' - 'A'));
    require(mapped.charactersIgnoringModifiers == std::string(1, letter),
            "Control leaves the key its letter");
}

bool isText(const std::string& typed) {
    const auto isControl = [](char32_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); };
    return isUtf8(typed) && std::ranges::none_of(decodedUtf8(typed), isControl);
}

// One of our own: Qt forgets the keyboard that it makes up where there is no application.
const QInputDevice& keyboard() {
    static const QInputDevice device;
    return device;
}

void checkKey(const QKeyEvent& event) {
    const KeyEvent mapped = keyEventFrom(event);
    require(mapped.key <= Key::f10, "a key is one of ours");
    require(isText(mapped.characters) && isText(mapped.charactersIgnoringModifiers),
            "keys type text without control characters");
    const QKeyEvent alone(QEvent::KeyPress, event.key(), Qt::NoModifier, 0, 0, 0, {}, false, 1, &keyboard());
    require(keyEventFrom(alone).key == mapped.key, "modifiers make no other key of it");
    require((mapped.command == CommandKey::held) == holdsCommand(event), "Control is the command key");
    require(!isModifierKey(event) || mapped.key == Key::character, "a modifier is no key of ours");
    if (event.modifiers().testFlag(Qt::MetaModifier)) {
        require(mapped.characters.empty() && mapped.charactersIgnoringModifiers.empty(),
                "keys with Super are the desktop's");
    } else if (mapped.command == CommandKey::held) {
        checkLatinShortcut(event, mapped);
    } else {
        require(mapped.characters == mapped.charactersIgnoringModifiers,
                "without Control the text is the text");
    }
}

}  // namespace

void tryKeyMap(std::span<const std::uint8_t> bytes) {
    Input input(bytes);
    while (!input.isEmpty()) {
        const int key = keyCode(input);
        const Qt::KeyboardModifiers held = modifiers(input);
        const auto scanCode = static_cast<quint32>(input.below(80));
        const QString text = typedText(input);
        checkKey(QKeyEvent(QEvent::KeyPress, key, held, scanCode, 0, 0, text, false, 1, &keyboard()));
        require(isUtf8(keyEventFromCommit(text).characters), "an input method types UTF-8");
    }
}

}  // namespace vantrel::fuzz
