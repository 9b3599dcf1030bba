#include "dialog/OvDialogOverlayView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dialog/DialogFixture.h"
#include "theme/OvPalette.h"

namespace vantrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DialogModel : public test::DialogFixture {
protected:
    void expectSetUp(const DialogType& type, double height, const std::vector<std::string>& buttons,
                     const std::optional<std::string>& fieldText) {
        open(type);
        EXPECT_EQ(overlay->dialogType(), type);
        EXPECT_EQ(overlay->dialogHeight(), height);
        EXPECT_EQ(overlay->buttons(), buttons);
        EXPECT_EQ(overlay->selectedButtonIndex(), 0);
        ASSERT_EQ(overlay->inputTextField() != nullptr, fieldText.has_value());
        if (fieldText) {
            EXPECT_EQ(overlay->inputTextField()->text(), *fieldText);
        }
    }

    Rect boxOf(const DialogType& type, Size window) {
        open(type, window);
        return overlay->dialogRect();
    }
};

TEST_F(DialogModel, onlyTheViewerIsAViewer) {
    EXPECT_TRUE(isViewer(viewer));
    for (const DialogType& type : {copy, move, mkdir, deletion, help, sort}) EXPECT_FALSE(isViewer(type));
}

TEST_F(DialogModel, theKindsStandInTheirOrder) {
    EXPECT_EQ(copy.index(), 0U);
    EXPECT_EQ(move.index(), 1U);
    EXPECT_EQ(mkdir.index(), 2U);
    EXPECT_EQ(deletion.index(), 3U);
    EXPECT_EQ(viewer.index(), 4U);
    EXPECT_EQ(help.index(), 5U);
    EXPECT_EQ(sort.index(), 6U);
}

TEST_F(DialogModel, anOverlayThatWasGivenNoTypeYetHasNoButtons) {
    const auto fresh = OvDialogOverlayView::make({0, 0, 1100, 720}, ports);
    EXPECT_EQ(fresh->dialogType(), DialogType(dialog::Help{}));
    EXPECT_EQ(fresh->dialogHeight(), 340);
    EXPECT_EQ(fresh->dialogWidth, 560);
    EXPECT_EQ(fresh->selectedButtonIndex(), 0);
    EXPECT_THAT(fresh->buttons(), IsEmpty());
    EXPECT_EQ(fresh->inputTextField(), nullptr);
    EXPECT_TRUE(fresh->delegate.expired());
    EXPECT_TRUE(fresh->acceptsFirstResponder());
}

TEST_F(DialogModel, eachKindHasItsHeightItsButtonsAndItsField) {
    expectSetUp(copy, 220, {" Copy ", "Cancel"}, "/right/a.txt");
    expectSetUp(move, 220, {" Rename ", "Cancel"}, "a.txt");
    expectSetUp(mkdir, 200, {" Create ", "Cancel"}, "New_Folder");
    expectSetUp(deletion, 200, {" Delete ", "Cancel"}, std::nullopt);
    expectSetUp(viewer, 600, {" Close "}, std::nullopt);
    expectSetUp(help, 440, {" OK "}, std::nullopt);
    expectSetUp(sort, 260, {" Select ", "Cancel"}, std::nullopt);
}

TEST_F(DialogModel, theViewersStoredHeightIsTheViewsLessFortyUpToSixHundred) {
    open(viewer, {800, 500});
    EXPECT_EQ(overlay->dialogHeight(), 460);
    open(viewer, {800, 640});
    EXPECT_EQ(overlay->dialogHeight(), 600);
    open(viewer, {800, 641});
    EXPECT_EQ(overlay->dialogHeight(), 600);
}

TEST_F(DialogModel, theBoxStandsInTheMiddle) {
    EXPECT_EQ(boxOf(copy, {1100, 720}), (Rect{270, 250, 560, 220}));
    EXPECT_EQ(boxOf(move, {1100, 720}), (Rect{270, 250, 560, 220}));
    EXPECT_EQ(boxOf(mkdir, {1100, 720}), (Rect{270, 260, 560, 200}));
    EXPECT_EQ(boxOf(deletion, {1100, 720}), (Rect{270, 260, 560, 200}));
    EXPECT_EQ(boxOf(viewer, {1100, 720}), (Rect{40, 30, 1020, 660}));
    EXPECT_EQ(boxOf(help, {1100, 720}), (Rect{230, 115, 640, 490}));
    EXPECT_EQ(boxOf(sort, {1100, 720}), (Rect{270, 230, 560, 260}));
}

TEST_F(DialogModel, theBoxKeepsItsSizeAndItsLeftAndTopMarginInASmallWindow) {
    EXPECT_EQ(boxOf(help, {600, 400}), (Rect{20, 20, 640, 490}));
    EXPECT_EQ(boxOf(viewer, {600, 340}), (Rect{20, 20, 560, 300}));
    EXPECT_EQ(boxOf(copy, {598, 258}), (Rect{20, 20, 560, 220}));
    EXPECT_EQ(boxOf(copy, {603, 263}), (Rect{21.5, 21.5, 560, 220}));
    EXPECT_EQ(boxOf(viewer, {800, 500}), (Rect{40, 30, 720, 440}));
}

TEST_F(DialogModel, theBoxFollowsTheView) {
    open(help);
    overlay->setFrame({0, 0, 800, 500});
    EXPECT_EQ(overlay->dialogRect(), (Rect{80, 20, 640, 490}));
}

TEST_F(DialogModel, theFieldHasTheDialogsFontAndColours) {
    open(copy);
    EXPECT_EQ(field().style.font, (Font{"Menlo", 13, FontWeight::regular}));
    EXPECT_EQ(field().style.textColor, OvPalette::dosBrightWhite);
    EXPECT_EQ(field().style.background, OvPalette::dosDarkBlue);
}

TEST_F(DialogModel, theFieldStandsThirtyInsideTheBoxAndAHundredAndFiveBelowItsTop) {
    open(copy);
    EXPECT_EQ(field().frame, (Rect{300, 355, 500, 26}));
    open(mkdir);
    EXPECT_EQ(field().frame, (Rect{300, 365, 500, 26}));
}

TEST_F(DialogModel, theFieldFollowsTheBoxWhenTheWindowChangesSize) {
    open(copy);
    overlay->setFrame({0, 0, 800, 500});
    EXPECT_EQ(field().frame, (Rect{150, 245, 500, 26}));
    overlay->setFrame({0, 0, 500, 200});
    EXPECT_EQ(field().frame, (Rect{50, 125, 500, 26}));
}

TEST_F(DialogModel, theFieldIsPlacedInTheWindowAlsoWhereTheOverlayIsNot) {
    open(copy);
    overlay->setFrame({10, 20, 1100, 720});
    EXPECT_EQ(field().frame, (Rect{310, 375, 500, 26}));
}

TEST_F(DialogModel, theFieldIsPlacedAnewOnceTheOverlayIsInTheWindow) {
    root = std::make_shared<View>(Rect{0, 0, 1200, 800});
    const auto content = std::make_shared<View>(Rect{10, 20, 1100, 720});
    root->addSubview(content);
    overlay = OvDialogOverlayView::make(content->bounds(), ports);
    overlay->setDialogType(copy);
    content->addSubview(overlay);
    desktop.mainQueue.runAll();
    EXPECT_EQ(field().frame, (Rect{310, 375, 500, 26}));
}

TEST_F(DialogModel, theFieldTakesTheKeyboardWithAllItsTextSelectedAfterTheCurrentEvent) {
    open(mkdir);
    EXPECT_FALSE(field().isFocused);
    desktop.mainQueue.runAll();
    EXPECT_TRUE(field().isFocused);
    EXPECT_TRUE(field().isAllSelected);
    EXPECT_EQ(field().words, "New_Folder");
    field().type("x");
    EXPECT_EQ(overlay->inputTextField()->text(), "x");
}

TEST_F(DialogModel, theFocusStepOfADialogThatIsGoneDoesNothing) {
    open(mkdir);
    overlay->removeFromSuperview();
    overlay.reset();
    EXPECT_THAT(desktop.textFields.alive, IsEmpty()) << "the queue holds the view weakly";
    desktop.mainQueue.runAll();
}

TEST_F(DialogModel, anotherTypeStartsAllOver) {
    open(copy);
    press(Key::tab);
    ASSERT_EQ(overlay->selectedButtonIndex(), 1);
    const int redraws = host.redraws;
    overlay->setDialogType(move);
    EXPECT_GT(host.redraws, redraws);
    EXPECT_EQ(overlay->selectedButtonIndex(), 0);
    EXPECT_EQ(field().words, "a.txt") << "the old field is gone";
    overlay->setDialogType(help);
    EXPECT_EQ(overlay->inputTextField(), nullptr);
    EXPECT_THAT(desktop.textFields.alive, IsEmpty());
    EXPECT_THAT(overlay->buttons(), ElementsAre(" OK "));
    desktop.mainQueue.runAll();
}

TEST_F(DialogModel, theBoxHasAWidthOfItsOwn) {
    open(mkdir);
    overlay->dialogWidth = 1;
    EXPECT_EQ(overlay->dialogRect().width, 560);
    open(viewer, {500, 400});
    overlay->dialogWidth = 1;
    EXPECT_EQ(overlay->dialogRect().width, 560);
}

TEST_F(DialogModel, theFieldTakesTheKeyboardBeforeAnythingElseThatWaits) {
    bool hadFocus = false;
    desktop.mainQueue.post([&] { hadFocus = field().isFocused; });
    open(mkdir);
    EXPECT_FALSE(field().isFocused) << "the event goes on";
    desktop.mainQueue.endEvent();
    EXPECT_TRUE(field().isFocused);
    EXPECT_TRUE(field().isAllSelected);
    EXPECT_FALSE(hadFocus);
}

TEST_F(DialogModel, aKeyThatIsOnlyHeldAnswersNothing) {
    open(sort);
    for (const Key key : {Key::escape, Key::returnKey, Key::keypadEnter}) {
        EXPECT_EQ(overlay->keyDown({.key = key, .repeat = KeyRepeat::held}), EventResult::handled);
    }
    EXPECT_EQ(overlay->keyDown({.characters = "1", .repeat = KeyRepeat::held}), EventResult::handled);
    EXPECT_THAT(delegate->confirmed, IsEmpty());
    EXPECT_EQ(delegate->cancellations, 0);
    open(mkdir);
    field().handler({.key = Key::returnKey, .repeat = KeyRepeat::held});
    EXPECT_THAT(delegate->confirmed, IsEmpty());
}

TEST_F(DialogModel, tabGoesOnWhileItIsHeld) {
    open(copy);
    overlay->keyDown({.key = Key::tab});
    EXPECT_EQ(overlay->selectedButtonIndex(), 1);
    overlay->keyDown({.key = Key::tab, .repeat = KeyRepeat::held});
    EXPECT_EQ(overlay->selectedButtonIndex(), 0);
}

}  // namespace
}  // namespace vantrel
