#include "qt/QtKeys.h"

#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace vantrel {

namespace {

constexpr std::array<std::pair<int, Key>, 25> keys{{
    {Qt::Key_Return, Key::returnKey},
    {Qt::Key_Enter, Key::keypadEnter},
    {Qt::Key_Tab, Key::tab},
    {Qt::Key_Backtab, Key::tab},
    {Qt::Key_Space, Key::space},
    {Qt::Key_Backspace, Key::backspace},
    {Qt::Key_Escape, Key::escape},
    {Qt::Key_Home, Key::home},
    {Qt::Key_End, Key::end},
    {Qt::Key_PageUp, Key::pageUp},
    {Qt::Key_PageDown, Key::pageDown},
    {Qt::Key_Up, Key::up},
    {Qt::Key_Down, Key::down},
    {Qt::Key_Left, Key::left},
    {Qt::Key_Right, Key::right},
    {Qt::Key_F1, Key::f1},
    {Qt::Key_F2, Key::f2},
    {Qt::Key_F3, Key::f3},
    {Qt::Key_F4, Key::f4},
    {Qt::Key_F5, Key::f5},
    {Qt::Key_F6, Key::f6},
    {Qt::Key_F7, Key::f7},
    {Qt::Key_F8, Key::f8},
    {Qt::Key_F9, Key::f9},
    {Qt::Key_F10, Key::f10},
}};

Key keyFrom(int qtKey) {
    const auto found = std::ranges::find(keys, qtKey, &std::pair<int, Key>::first);
    return found == keys.end() ? Key::character : found->second;
}

/// Rows of a US keyboard by the evdev codes that X11 and Wayland report, eight above the kernel's.
struct ScanCodeRow {
    quint32 first;
    std::string_view characters;
};
constexpr std::array<ScanCodeRow, 4> usRows{{
    {10, "1234567890"},
    {24, "qwertyuiop"},
    {38, "asdfghjkl"},
    {52, "zxcvbnm"},
}};

std::string characterAtUsPosition(quint32 scanCode) {
    for (const ScanCodeRow& row : usRows) {
        if (scanCode >= row.first && scanCode < row.first + row.characters.size())
            return std::string(1, row.characters[scanCode - row.first]);
    }
    return "";
}

bool isPrintable(const QString& text) {
    const auto codePoints = text.toUcs4();
    return !codePoints.isEmpty() &&
           std::ranges::all_of(codePoints, [](char32_t c) { return QChar::isPrint(c); });
}

std::string printableText(const QString& text) {
    return isPrintable(text) ? text.toStdString() : "";
}

std::string upperCased(const std::string& text) {
    return QString::fromStdString(text).toUpper().toStdString();
}

/// The Latin letter beyond ASCII that the key types, on keyboards that have such letters besides those of
/// ASCII: the key then stands for no other. Empty for any other key.
QString latinLetterBeyondAscii(const QKeyEvent& event) {
    // While Control is held, text and key may come from another configured layout; the key symbol of X11 and
    // Wayland never does. Other platforms have none.
    char32_t character = xkb_keysym_to_utf32(event.nativeVirtualKey());
    if (character == 0 && event.key() < Qt::Key_Escape) character = static_cast<char32_t>(event.key());
    const bool isOne = character > Qt::Key_AsciiTilde && QChar::isLetter(character) &&
                       QChar::script(character) == QChar::Script_Latin;
    return isOne ? QString::fromUcs4(&character, 1) : QString();
}

}  // namespace

std::string charactersWithoutControl(const QKeyEvent& event) {
    const bool shift = event.modifiers().testFlag(Qt::ShiftModifier);
    if (const QString letter = latinLetterBeyondAscii(event); !letter.isEmpty())
        return (shift ? letter.toUpper() : letter.toLower()).toStdString();
    if (event.key() >= Qt::Key_Space && event.key() <= Qt::Key_AsciiTilde) {
        const QChar typed(event.key());
        return QString(shift ? typed : typed.toLower()).toStdString();
    }
    // A layout without Latin letters: the key in the place of a US letter stands for it, as on a US keyboard.
    const std::string positional = characterAtUsPosition(event.nativeScanCode());
    if (!positional.empty()) return shift ? upperCased(positional) : positional;
    return printableText(event.text());
}

bool holdsCommand(const QKeyEvent& event) {
    return event.modifiers().testFlag(Qt::ControlModifier) &&
           !event.modifiers().testFlag(Qt::GroupSwitchModifier);
}

bool isModifierKey(const QKeyEvent& event) {
    switch (event.key()) {
        case Qt::Key_Shift:
        case Qt::Key_Control:
        case Qt::Key_Meta:
        case Qt::Key_Alt:
        case Qt::Key_AltGr:
        case Qt::Key_Super_L:
        case Qt::Key_Super_R:
        case Qt::Key_Hyper_L:
        case Qt::Key_Hyper_R:
        case Qt::Key_CapsLock:
        case Qt::Key_NumLock:
        case Qt::Key_ScrollLock:
            return true;
        default:
            return false;
    }
}

KeyEvent keyEventFrom(const QKeyEvent& event) {
    KeyEvent result;
    result.key = keyFrom(event.key());
    if (holdsCommand(event)) result.command = CommandKey::held;
    if (event.modifiers().testFlag(Qt::MetaModifier)) return result;
    result.characters = printableText(event.text());
    result.charactersIgnoringModifiers =
        result.command == CommandKey::held ? charactersWithoutControl(event) : result.characters;
    return result;
}

KeyEvent keyEventFromCommit(const QString& text) {
    KeyEvent result;
    if (text == QLatin1String(" ")) result.key = Key::space;
    result.characters = text.toStdString();
    result.charactersIgnoringModifiers = result.characters;
    return result;
}

}  // namespace vantrel
