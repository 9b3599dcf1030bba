#include "qt/QtKeys.h"

#include <gtest/gtest.h>

#include <xkbcommon/xkbcommon-keysyms.h>

#include <QKeyEvent>

namespace vantrel::test {

namespace {

KeyEvent press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString& text = {}) {
    return keyEventFrom(QKeyEvent(QEvent::KeyPress, key, modifiers, text));
}

KeyEvent pressAt(quint32 scanCode, int key, Qt::KeyboardModifiers modifiers, const QString& text = {}) {
    return keyEventFrom(QKeyEvent(QEvent::KeyPress, key, modifiers, scanCode, 0, 0, text));
}

}  // namespace

TEST(QtKeys, everyKeyOfTheTableHasItsName) {
    EXPECT_EQ(press(Qt::Key_Return, {}, "\r").key, Key::returnKey);
    EXPECT_EQ(press(Qt::Key_Tab, {}, "\t").key, Key::tab);
    EXPECT_EQ(press(Qt::Key_Space, {}, " ").key, Key::space);
    EXPECT_EQ(press(Qt::Key_Backspace, {}, "\b").key, Key::backspace);
    EXPECT_EQ(press(Qt::Key_Escape, {}, "\x1b").key, Key::escape);
    EXPECT_EQ(press(Qt::Key_Home).key, Key::home);
    EXPECT_EQ(press(Qt::Key_End).key, Key::end);
    EXPECT_EQ(press(Qt::Key_PageUp).key, Key::pageUp);
    EXPECT_EQ(press(Qt::Key_PageDown).key, Key::pageDown);
    EXPECT_EQ(press(Qt::Key_Up).key, Key::up);
    EXPECT_EQ(press(Qt::Key_Down).key, Key::down);
    EXPECT_EQ(press(Qt::Key_Left).key, Key::left);
    EXPECT_EQ(press(Qt::Key_Right).key, Key::right);
    EXPECT_EQ(press(Qt::Key_F1).key, Key::f1);
    EXPECT_EQ(press(Qt::Key_F2).key, Key::f2);
    EXPECT_EQ(press(Qt::Key_F3).key, Key::f3);
    EXPECT_EQ(press(Qt::Key_F4).key, Key::f4);
    EXPECT_EQ(press(Qt::Key_F5).key, Key::f5);
    EXPECT_EQ(press(Qt::Key_F6).key, Key::f6);
    EXPECT_EQ(press(Qt::Key_F7).key, Key::f7);
    EXPECT_EQ(press(Qt::Key_F8).key, Key::f8);
    EXPECT_EQ(press(Qt::Key_F9).key, Key::f9);
    EXPECT_EQ(press(Qt::Key_F10).key, Key::f10);
}

TEST(QtKeys, theKeypadsEnterIsAKeyOfItsOwn) {
    EXPECT_EQ(press(Qt::Key_Enter, Qt::KeypadModifier, "\r").key, Key::keypadEnter);
}

TEST(QtKeys, theKeypadsArrowsAreArrows) {
    EXPECT_EQ(press(Qt::Key_Up, Qt::KeypadModifier).key, Key::up);
    EXPECT_EQ(press(Qt::Key_Home, Qt::KeypadModifier).key, Key::home);
}

TEST(QtKeys, shiftTabIsTab) {
    EXPECT_EQ(press(Qt::Key_Backtab, Qt::ShiftModifier).key, Key::tab);
}

TEST(QtKeys, everyOtherKeyIsKnownByItsTextOnly) {
    EXPECT_EQ(press(Qt::Key_A, {}, "a").key, Key::character);
    EXPECT_EQ(press(Qt::Key_F11).key, Key::character);
    EXPECT_EQ(press(Qt::Key_Shift, Qt::ShiftModifier).key, Key::character);
}

TEST(QtKeys, aLetterIsWhatItTypes) {
    const KeyEvent small = press(Qt::Key_A, {}, "a");
    EXPECT_EQ(small.characters, "a");
    EXPECT_EQ(small.charactersIgnoringModifiers, "a");
    EXPECT_EQ(small.command, CommandKey::released);
    EXPECT_EQ(press(Qt::Key_A, Qt::ShiftModifier, "A").charactersIgnoringModifiers, "A");
    EXPECT_EQ(press(Qt::Key_Eacute, {}, "é").charactersIgnoringModifiers, "é");
}

TEST(QtKeys, controlIsTheCommandKeyAndTheLetterUnderItFollowsShiftOnly) {
    const KeyEvent plain = press(Qt::Key_O, Qt::ControlModifier, "\x0f");
    EXPECT_EQ(plain.command, CommandKey::held);
    EXPECT_EQ(plain.charactersIgnoringModifiers, "o");
    EXPECT_EQ(plain.characters, "");
    const KeyEvent shifted = press(Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier, "\x0f");
    EXPECT_EQ(shifted.command, CommandKey::held);
    EXPECT_EQ(shifted.charactersIgnoringModifiers, "O");
}

TEST(QtKeys, signsUnderControlAreTheSignsThatTheyType) {
    EXPECT_EQ(press(Qt::Key_Period, Qt::ControlModifier).charactersIgnoringModifiers, ".");
    EXPECT_EQ(press(Qt::Key_BracketLeft, Qt::ControlModifier, "\x1b").charactersIgnoringModifiers, "[");
    EXPECT_EQ(press(Qt::Key_Exclam, Qt::ControlModifier | Qt::ShiftModifier).charactersIgnoringModifiers,
              "!");
}

TEST(QtKeys, aLayoutWithoutLatinLettersGivesCommandsByPosition) {
    // Evdev codes 24 (o), 20 (t) and 16 (q), which X11 reports eight higher.
    EXPECT_EQ(pressAt(32, 0x0429, Qt::ControlModifier).charactersIgnoringModifiers, "o");
    EXPECT_EQ(pressAt(28, 0x0415, Qt::ControlModifier).charactersIgnoringModifiers, "t");
    EXPECT_EQ(pressAt(24, 0x0419, Qt::ControlModifier).charactersIgnoringModifiers, "q");
    EXPECT_EQ(pressAt(32, 0x0429, Qt::ControlModifier | Qt::ShiftModifier).charactersIgnoringModifiers, "O");
    EXPECT_EQ(pressAt(32, 0x0429, Qt::NoModifier, "щ").charactersIgnoringModifiers, "щ");
}

TEST(QtKeys, altChangesNothingAboutTheText) {
    const KeyEvent event = press(Qt::Key_A, Qt::AltModifier, "a");
    EXPECT_EQ(event.charactersIgnoringModifiers, "a");
    EXPECT_EQ(event.command, CommandKey::released);
}

TEST(QtKeys, controlWithAltGrTypesAndCommandsNothing) {
    const KeyEvent event = press(Qt::Key_At, Qt::ControlModifier | Qt::GroupSwitchModifier, "@");
    EXPECT_EQ(event.command, CommandKey::released);
    EXPECT_EQ(event.charactersIgnoringModifiers, "@");
}

TEST(QtKeys, aKeyWithSuperTypesNothing) {
    const KeyEvent event = press(Qt::Key_A, Qt::MetaModifier, "a");
    EXPECT_EQ(event.characters, "");
    EXPECT_EQ(event.charactersIgnoringModifiers, "");
}

TEST(QtKeys, controlCharactersAreNoText) {
    EXPECT_EQ(press(Qt::Key_Delete, {}, "\x7f").characters, "");
    EXPECT_EQ(press(Qt::Key_Backspace, {}, "\b").charactersIgnoringModifiers, "");
    EXPECT_EQ(press(Qt::Key_Shift, Qt::ShiftModifier).characters, "");
}

TEST(QtKeys, textOfAnInputMethodIsACharacterAndItsSpaceTheSpaceKey) {
    EXPECT_EQ(keyEventFromCommit("é").key, Key::character);
    EXPECT_EQ(keyEventFromCommit("é").charactersIgnoringModifiers, "é");
    EXPECT_EQ(keyEventFromCommit("日本").characters, "日本");
    EXPECT_EQ(keyEventFromCommit(" ").key, Key::space);
}

TEST(QtKeys, aLatinLetterBeyondAsciiUnderControlIsThatLetter) {
    // The 2 of a French keyboard types an e with acute, and 2 with Shift.
    EXPECT_EQ(pressAt(11, Qt::Key_Eacute, Qt::ControlModifier, "é").charactersIgnoringModifiers, "é");
    EXPECT_EQ(
        pressAt(11, Qt::Key_2, Qt::ControlModifier | Qt::ShiftModifier, "2").charactersIgnoringModifiers,
        "2");
    EXPECT_EQ(pressAt(11, 0x011A, Qt::ControlModifier, "ě").charactersIgnoringModifiers, "ě");
    EXPECT_EQ(pressAt(34, Qt::Key_Udiaeresis, Qt::ControlModifier | Qt::ShiftModifier, "Ü")
                  .charactersIgnoringModifiers,
              "Ü");
}

TEST(QtKeys, whereAnotherLayoutStandsBesideACzechOneTheKeySymbolTellsTheLetter) {
    constexpr quint32 ecaron = XKB_KEY_ecaron;
    const QKeyEvent event(QEvent::KeyPress, Qt::Key_2, Qt::ControlModifier, 11, ecaron, 0, "2");
    EXPECT_EQ(keyEventFrom(event).charactersIgnoringModifiers, "ě");
    constexpr quint32 Ecaron = XKB_KEY_Ecaron;  // with Caps Lock, which is not considered
    const QKeyEvent capital(QEvent::KeyPress, Qt::Key_2, Qt::ControlModifier, 11, Ecaron, 0, "2");
    EXPECT_EQ(keyEventFrom(capital).charactersIgnoringModifiers, "ě");
}

TEST(QtKeys, signsAndOtherScriptsUnderControlStayWithTheirPlace) {
    EXPECT_EQ(pressAt(11, Qt::Key_section, Qt::ControlModifier, "§").charactersIgnoringModifiers, "2");
    EXPECT_EQ(pressAt(32, 0x03BF, Qt::ControlModifier, "ο").charactersIgnoringModifiers, "o");
    EXPECT_EQ(pressAt(32, 0x0429, Qt::ControlModifier, "щ").charactersIgnoringModifiers, "o");
}

}  // namespace vantrel::test
