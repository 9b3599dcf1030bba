#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <variant>

#include "support/CommanderFixture.h"

namespace vantrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What is left of a press when it has been answered: the repeats of a held key, the second press of a double
/// click.
class OvCommanderViewGestures : public test::CommanderTest {
protected:
    EventResult hold(Key key) { return commander->keyDown({.key = key, .repeat = KeyRepeat::held}); }
    EventResult holdWithCommand(const std::string& characters) {
        return commander->keyDown({.charactersIgnoringModifiers = characters,
                                   .command = CommandKey::held,
                                   .repeat = KeyRepeat::held});
    }

    void clickTimes(double x, double y, int count) {
        for (int number = 1; number <= count; ++number) {
            clicks.mouseDown(*commander, {.locationInWindow = {x, y}, .clickCount = number});
        }
    }

    ClickRouter clicks;
};

TEST_F(OvCommanderViewGestures, returnThatClosedADialogEntersNothingWhileItIsHeld) {
    press(Key::f1);
    press(Key::returnKey);
    ASSERT_EQ(commander->dialogOverlay(), nullptr);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(hold(Key::returnKey), EventResult::handled);
    EXPECT_EQ(left().currentPath(), "/start");
    press(Key::returnKey);
    EXPECT_EQ(left().currentPath(), "/start/alpha") << "the next press counts again";
}

TEST_F(OvCommanderViewGestures, returnThatAnsweredInTheFieldEntersNothingWhileItIsHeld) {
    press(Key::f7);
    desktop.mainQueue.endEvent();
    desktop.textFields.alive.at(0)->handler({.key = Key::returnKey});
    ASSERT_EQ(commander->dialogOverlay(), nullptr);
    hold(Key::returnKey);
    EXPECT_EQ(left().currentPath(), "/start");
}

TEST_F(OvCommanderViewGestures, aLetterThatWasTypedIntoTheFieldSearchesNothingWhileItIsHeld) {
    press(Key::f7);
    press(Key::escape);
    commander->keyDown({.characters = "b", .charactersIgnoringModifiers = "b", .repeat = KeyRepeat::held});
    EXPECT_EQ(selectedName(left()), "alpha");
}

TEST_F(OvCommanderViewGestures, aKeyThatWasPressedBeforeTheDialogDoesNotAnswerIt) {
    press(Key::end);
    press(Key::returnKey);  // opens the file
    commander->showDeleteDialog();
    hold(Key::returnKey);
    EXPECT_NE(commander->dialogOverlay(), nullptr);
    EXPECT_THAT(desktop.files.operations, IsEmpty());
}

TEST_F(OvCommanderViewGestures, aKeyThatWasPressedElsewhereDoesNothingHereWhileItIsHeld) {
    hold(Key::down);
    EXPECT_EQ(selectedName(left()), "alpha");
    hold(Key::f7);
    EXPECT_EQ(commander->dialogOverlay(), nullptr);
}

TEST_F(OvCommanderViewGestures, movingGoesOnWhileItsKeyIsHeld) {
    press(Key::down);
    hold(Key::down);
    EXPECT_EQ(selectedName(left()), "cedar.txt");
    press(Key::up);
    hold(Key::up);
    hold(Key::up);
    EXPECT_EQ(selectedName(left()), "..");
    left().setCurrentPath("/start/alpha");
    press(Key::backspace);
    hold(Key::backspace);
    EXPECT_EQ(left().currentPath(), "/");
}

TEST_F(OvCommanderViewGestures, whatOpensStartsOrSwitchesSomethingDoesItOncePerPress) {
    press(Key::end);
    for (const Key key : {Key::returnKey, Key::keypadEnter, Key::f4}) {
        press(key);
        for (int i = 0; i < 3; ++i) EXPECT_EQ(hold(key), EventResult::handled);
    }
    for (const char* letter : {"o", "t"}) {
        typeWithCommand(letter);
        for (int i = 0; i < 3; ++i) holdWithCommand(letter);
    }
    EXPECT_THAT(desktop.workspace.calls,
                ElementsAre("open /start/cedar.txt", "open /start/cedar.txt", "open /start/cedar.txt",
                            "reveal /start", "terminal /start"));
    press(Key::tab);
    hold(Key::tab);
    EXPECT_EQ(&commander->activePanel(), &right());
    press(Key::f2);
    hold(Key::f2);
    EXPECT_EQ(left().sizeDisplayMode(), SizeDisplayMode::rawBytes);
    press(Key::space);
    hold(Key::space);
    EXPECT_TRUE(desktop.preview.visible);
}

TEST_F(OvCommanderViewGestures, aFolderIsEnteredOncePerPress) {
    desktop.files.addFolder("/start/alpha", "deeper");
    press(Key::returnKey);
    hold(Key::returnKey);
    EXPECT_EQ(left().currentPath(), "/start/alpha");
}

TEST_F(OvCommanderViewGestures, theSecondPressOnADialogsButtonOpensNothingBeneath) {
    press(Key::f1);
    const Point button = {540, 574};  // over the row of a panel
    clickTimes(button.x, button.y, 2);
    EXPECT_EQ(commander->dialogOverlay(), nullptr);
    EXPECT_EQ(left().currentPath(), "/start");
    EXPECT_EQ(selectedName(left()), "alpha");
}

TEST_F(OvCommanderViewGestures, theSecondPressBesideADialogSelectsNothing) {
    press(Key::f1);
    clickTimes(20, 24 + 48 + 20 * 3 + 5, 4);
    EXPECT_EQ(commander->dialogOverlay(), nullptr);
    EXPECT_EQ(selectedName(left()), "alpha");
    click(20, 24 + 48 + 20 * 3 + 5);
    EXPECT_EQ(selectedName(left()), "cedar.txt");
}

TEST_F(OvCommanderViewGestures, theSecondPressOnAFunctionKeyCellLeavesTheDialogOpen) {
    clickTimes(5 + 109 * 6 + 50, 705, 2);
    ASSERT_NE(commander->dialogOverlay(), nullptr);
    EXPECT_TRUE(std::holds_alternative<dialog::Mkdir>(commander->dialogOverlay()->dialogType()));
}

TEST_F(OvCommanderViewGestures, ofFourFastClicksOnARowTheSecondActivates) {
    desktop.files.addFile("/start/alpha", "inner.txt");
    clickTimes(20, 24 + 48 + 20 * 1 + 5, 4);
    EXPECT_EQ(left().currentPath(), "/start/alpha");
    EXPECT_THAT(desktop.workspace.calls, IsEmpty());
}

class OvCommanderViewDialogInSight : public test::CommanderTest {};

TEST_F(OvCommanderViewDialogInSight, everyDialogClosesThePreview) {
    press(Key::end);
    for (const Key key : {Key::f1, Key::f3, Key::f5, Key::f6, Key::f7, Key::f8, Key::f9}) {
        press(Key::space);
        ASSERT_TRUE(desktop.preview.visible);
        // The preview has the keyboard and passes on what it does not use itself.
        desktop.preview.delegate.lock()->previewPanelHandleKey({.key = key});
        EXPECT_FALSE(desktop.preview.visible);
        EXPECT_NE(commander->dialogOverlay(), nullptr);
        press(Key::escape);
        EXPECT_EQ(commander->dialogOverlay(), nullptr);
    }
}

TEST_F(OvCommanderViewDialogInSight, noPreviewOpensOverADialog) {
    press(Key::f8);
    commander->showQuickLook();
    EXPECT_FALSE(desktop.preview.visible);
    press(Key::escape);
    commander->showQuickLook();
    EXPECT_TRUE(desktop.preview.visible);
}

TEST_F(OvCommanderViewDialogInSight, aKeyThatOpensNoDialogLeavesThePreviewOpen) {
    press(Key::home);
    press(Key::space);
    for (const Key key : {Key::f3, Key::f5, Key::f6, Key::f8}) press(key);  // nothing to do for ".."
    EXPECT_TRUE(desktop.preview.visible);
}

}  // namespace
}  // namespace vantrel
