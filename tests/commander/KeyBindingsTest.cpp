#include "commander/KeyBindings.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

TEST(KeyBindings, aKeyIsBoundWhateverIsHeldAndALetterOnlyWithTheCommandKey) {
    EXPECT_NE(bindingOf({.key = Key::f5}), nullptr);
    EXPECT_EQ(bindingOf({.key = Key::f5, .command = CommandKey::held}), bindingOf({.key = Key::f5}));
    EXPECT_NE(bindingOf({.charactersIgnoringModifiers = "o", .command = CommandKey::held}), nullptr);
    EXPECT_EQ(bindingOf({.charactersIgnoringModifiers = "o"}), nullptr);
    EXPECT_EQ(bindingOf({.charactersIgnoringModifiers = "O", .command = CommandKey::held}), nullptr);
}

TEST(KeyBindings, theArrowsToTheSidesAreFree) {
    EXPECT_EQ(bindingOf({.key = Key::left}), nullptr);
    EXPECT_EQ(bindingOf({.key = Key::right}), nullptr);
}

TEST(KeyBindings, movingAndSearchingGoOnWhileAKeyIsHeldAndNothingElseDoes) {
    for (const Key key :
         {Key::up, Key::down, Key::pageUp, Key::pageDown, Key::home, Key::end, Key::backspace}) {
        EXPECT_TRUE(mayRepeat({.key = key}));
    }
    EXPECT_TRUE(mayRepeat({.charactersIgnoringModifiers = "a"}));
    EXPECT_FALSE(mayRepeat({.charactersIgnoringModifiers = "a", .command = CommandKey::held}));
    for (const Key key : {Key::returnKey, Key::keypadEnter, Key::tab, Key::space, Key::escape, Key::left,
                          Key::right, Key::f1, Key::f10}) {
        EXPECT_FALSE(mayRepeat({.key = key}));
    }
}

}  // namespace
}  // namespace vantrel
