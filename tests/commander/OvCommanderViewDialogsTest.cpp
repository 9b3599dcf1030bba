#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <variant>

#include "support/CommanderFixture.h"

namespace vantrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OvCommanderViewDialogs : public test::CommanderTest {
protected:
    const DialogType& openDialog() { return commander->dialogOverlay()->dialogType(); }

    template <class Kind>
    bool isOpen() {
        return commander->dialogOverlay() && std::holds_alternative<Kind>(openDialog());
    }

    // 1100 wide: function-key cells begin every 109 points from 5.
    EventResult clickFnCell(int index) { return click(5 + 109 * index + 50, 705); }
};

TEST_F(OvCommanderViewDialogs, atFirstThereIsNone) {
    EXPECT_EQ(commander->dialogOverlay(), nullptr);
}

TEST_F(OvCommanderViewDialogs, eachFunctionKeyOpensItsDialog) {
    press(Key::f1);
    EXPECT_TRUE(isOpen<dialog::Help>());
    press(Key::escape);
    press(Key::f5);
    EXPECT_TRUE(isOpen<dialog::Copy>());
    press(Key::escape);
    press(Key::f6);
    EXPECT_TRUE(isOpen<dialog::Move>());
    press(Key::escape);
    press(Key::f7);
    EXPECT_TRUE(isOpen<dialog::Mkdir>());
    press(Key::escape);
    press(Key::f8);
    EXPECT_TRUE(isOpen<dialog::Delete>());
    press(Key::escape);
    press(Key::f9);
    EXPECT_TRUE(isOpen<dialog::Sort>());
}

TEST_F(OvCommanderViewDialogs, eachFunctionKeyCellOpensItsDialog) {
    clickFnCell(0);
    EXPECT_TRUE(isOpen<dialog::Help>());
    press(Key::escape);
    clickFnCell(4);
    EXPECT_TRUE(isOpen<dialog::Copy>());
    press(Key::escape);
    clickFnCell(5);
    EXPECT_TRUE(isOpen<dialog::Move>());
    press(Key::escape);
    clickFnCell(6);
    EXPECT_TRUE(isOpen<dialog::Mkdir>());
    press(Key::escape);
    clickFnCell(7);
    EXPECT_TRUE(isOpen<dialog::Delete>());
    press(Key::escape);
    clickFnCell(8);
    EXPECT_TRUE(isOpen<dialog::Sort>());
}

TEST_F(OvCommanderViewDialogs, copyProposesTheOtherPanelsFolderAndTheItemsName) {
    press(Key::end);
    press(Key::f5);
    EXPECT_EQ(openDialog(),
              DialogType(dialog::Copy{"cedar.txt", "/start/cedar.txt", "/Users/ann/cedar.txt"}));
}

TEST_F(OvCommanderViewDialogs, moveProposesTheItemsName) {
    press(Key::end);
    press(Key::f6);
    EXPECT_EQ(openDialog(), DialogType(dialog::Move{"cedar.txt", "/start/cedar.txt", "cedar.txt"}));
}

TEST_F(OvCommanderViewDialogs, mkdirNamesTheActivePanelsFolder) {
    press(Key::tab);
    press(Key::f7);
    EXPECT_EQ(openDialog(), DialogType(dialog::Mkdir{"/Users/ann"}));
}

TEST_F(OvCommanderViewDialogs, deleteNamesTheItemAndFoldersAreTakenToo) {
    press(Key::f8);
    EXPECT_EQ(openDialog(), DialogType(dialog::Delete{"alpha", "/start/alpha"}));
}

TEST_F(OvCommanderViewDialogs, onTheParentRowCopyMoveAndDeleteOpenNothingAndMkdirStillDoes) {
    press(Key::home);
    for (const Key key : {Key::f5, Key::f6, Key::f8, Key::f3}) {
        press(key);
        EXPECT_EQ(commander->dialogOverlay(), nullptr);
    }
    press(Key::f7);
    EXPECT_TRUE(isOpen<dialog::Mkdir>());
}

TEST_F(OvCommanderViewDialogs, withoutASelectionCopyMoveAndDeleteOpenNothing) {
    desktop.files.makeUnreadable("/");
    left().setCurrentPath("/");
    for (const Key key : {Key::f5, Key::f6, Key::f8, Key::f3}) press(key);
    EXPECT_EQ(commander->dialogOverlay(), nullptr);
}

TEST_F(OvCommanderViewDialogs, aDialogLiesOnTopOverTheWholeCommanderAndFollowsItsSize) {
    press(Key::f1);
    EXPECT_EQ(commander->subviews().back(), commander->dialogOverlay());
    EXPECT_EQ(commander->dialogOverlay()->frame(), (Rect{0, 0, 1100, 720}));
    commander->setFrame({0, 0, 800, 500});
    EXPECT_EQ(commander->dialogOverlay()->frame(), (Rect{0, 0, 800, 500}));
}

TEST_F(OvCommanderViewDialogs, whileOneIsOpenEveryKeyGoesToIt) {
    press(Key::f1);
    EXPECT_EQ(press(Key::f10), EventResult::ignored);
    EXPECT_EQ(desktop.application.terminations, 0);
    EXPECT_EQ(press(Key::tab), EventResult::handled);
    EXPECT_TRUE(left().isActivePanel());
    EXPECT_EQ(press(Key::down), EventResult::ignored);
    EXPECT_EQ(left().selectedIndex(), 1);
    EXPECT_EQ(typeWithCommand("q"), EventResult::ignored);
    EXPECT_EQ(type("b"), EventResult::ignored);
    EXPECT_EQ(selectedName(left()), "alpha");
    press(Key::space);
    EXPECT_FALSE(desktop.preview.isVisible());
}

TEST_F(OvCommanderViewDialogs, whileOneIsOpenClicksAndTheWheelDoNotReachThePanels) {
    for (int i = 0; i < 60; ++i) desktop.files.addFile("/start", "n" + std::to_string(i));
    left().loadDirectory();
    press(Key::f1);
    dispatchScrollWheel(*commander, {.locationInWindow = {100, 300}, .deltaY = -1});
    EXPECT_EQ(left().scrollOffset(), 0);
    click(600, 300);  // inside the box, on no button
    EXPECT_TRUE(isOpen<dialog::Help>());
    EXPECT_TRUE(left().isActivePanel());
}

TEST_F(OvCommanderViewDialogs, escapeAndAClickOutsideTheBoxCloseIt) {
    press(Key::f9);
    press(Key::escape);
    EXPECT_EQ(commander->dialogOverlay(), nullptr);
    press(Key::f9);
    click(150, 705);  // a function-key cell: covered by the dialog
    EXPECT_EQ(commander->dialogOverlay(), nullptr);
    EXPECT_EQ(left().sizeDisplayMode(), SizeDisplayMode::humanReadable);
}

TEST_F(OvCommanderViewDialogs, aClosedDialogLeavesTheTreeAndGivesTheKeyboardBack) {
    press(Key::f7);
    const std::weak_ptr<OvDialogOverlayView> overlay = commander->dialogOverlay();
    host.focusRequests = 0;
    press(Key::escape);
    EXPECT_TRUE(overlay.expired());
    EXPECT_EQ(commander->subviews().size(), 2U);
    EXPECT_TRUE(desktop.textFields.alive.empty());
    EXPECT_EQ(host.focusRequests, 1);
}

TEST_F(OvCommanderViewDialogs, aNewDialogReplacesTheOpenOneWithoutAWordToIt) {
    commander->showMkdirDialog();
    desktop.mainQueue.runAll();
    const std::weak_ptr<OvDialogOverlayView> first = commander->dialogOverlay();
    commander->showHelpDialog();
    EXPECT_TRUE(first.expired());
    EXPECT_TRUE(isOpen<dialog::Help>());
    EXPECT_EQ(commander->subviews().size(), 3U);
    EXPECT_TRUE(desktop.textFields.alive.empty());
    EXPECT_THAT(desktop.files.listedFolders, ElementsAre("/start", "/Users/ann"));
}

TEST_F(OvCommanderViewDialogs, aDialogTakesTheKeyboardFromWhateverFieldHasIt) {
    press(Key::f7);
    desktop.mainQueue.runAll();
    host.focusRequests = 0;
    commander->showHelpDialog();
    EXPECT_EQ(host.focusRequests, 1);
    press(Key::escape);
    EXPECT_EQ(commander->dialogOverlay(), nullptr);
}

TEST_F(OvCommanderViewDialogs, theFieldTakesTheKeyboardWithItsTextSelectedOnceTheEventIsOver) {
    press(Key::f7);
    ASSERT_EQ(desktop.textFields.alive.size(), 1U);
    EXPECT_FALSE(desktop.textFields.alive[0]->isFocused);
    desktop.mainQueue.runAll();
    EXPECT_TRUE(desktop.textFields.alive[0]->isAllSelected);
    // The box is 560 x 200 in the middle of 1100 x 720.
    EXPECT_EQ(desktop.textFields.alive[0]->frame, (Rect{300, 365, 500, 26}));
}

TEST_F(OvCommanderViewDialogs, aKeyTypedIntoTheFieldIsDeliveredOnceAndMayCloseTheDialog) {
    press(Key::f7);
    desktop.mainQueue.runAll();
    const auto handler = desktop.textFields.alive[0]->handler;
    EXPECT_EQ(handler({.key = Key::tab}), EventResult::handled);
    EXPECT_EQ(commander->dialogOverlay()->selectedButtonIndex(), 1);
    EXPECT_EQ(handler({.key = Key::escape}), EventResult::handled);
    EXPECT_EQ(commander->dialogOverlay(), nullptr);
}

TEST_F(OvCommanderViewDialogs, aDigitInTheSortDialogSetsTheActivePanelsFieldOnly) {
    press(Key::f9);
    type("2");
    EXPECT_EQ(commander->dialogOverlay(), nullptr);
    EXPECT_EQ(left().sortField(), SortField::size);
    EXPECT_EQ(right().sortField(), SortField::name);
    press(Key::f9);
    type("4");
    EXPECT_EQ(left().sortField(), SortField::ext);
    press(Key::f9);
    type("3");
    EXPECT_EQ(left().sortField(), SortField::date);
    press(Key::f9);
    type("1");
    EXPECT_EQ(left().sortField(), SortField::name);
}

TEST_F(OvCommanderViewDialogs, theSortDialogsSelectButtonAndAnyOtherTextChangeNothing) {
    left().setSortField(SortField::date);
    press(Key::f9);
    press(Key::returnKey);
    EXPECT_EQ(commander->dialogOverlay(), nullptr);
    EXPECT_EQ(left().sortField(), SortField::date);
    for (const char* text : {"Size", "", "1", "size "}) {
        commander->dialogDidConfirm(dialog::Sort{}, text);
        EXPECT_EQ(left().sortField(), SortField::date) << text;
    }
}

TEST_F(OvCommanderViewDialogs, helpAndViewerOnlyClose) {
    desktop.files.listedFolders.clear();
    press(Key::f1);
    press(Key::returnKey);
    EXPECT_EQ(commander->dialogOverlay(), nullptr);
    commander->presentDialog(dialog::Viewer{"a", "b"});
    press(Key::returnKey);
    EXPECT_EQ(commander->dialogOverlay(), nullptr);
    EXPECT_THAT(desktop.files.listedFolders, IsEmpty());
}

TEST_F(OvCommanderViewDialogs, spaceShowsThePreviewAndHidesItAgain) {
    EXPECT_EQ(press(Key::space), EventResult::handled);
    EXPECT_TRUE(desktop.preview.isVisible());
    EXPECT_EQ(desktop.preview.dataSource.lock(), std::static_pointer_cast<PreviewPanelDataSource>(commander));
    EXPECT_EQ(desktop.preview.delegate.lock(), std::static_pointer_cast<PreviewPanelDelegate>(commander));
    press(Key::space);
    EXPECT_FALSE(desktop.preview.isVisible());
}

TEST_F(OvCommanderViewDialogs, escapeClosesThePreviewAndIsOtherwiseIgnored) {
    press(Key::space);
    EXPECT_EQ(press(Key::escape), EventResult::handled);
    EXPECT_FALSE(desktop.preview.isVisible());
    EXPECT_EQ(press(Key::escape), EventResult::ignored);
}

TEST_F(OvCommanderViewDialogs, thePreviewShowsTheActivePanelsSelectionAndNothingForTheParentRow) {
    EXPECT_EQ(commander->numberOfPreviewItems(), 1);
    EXPECT_EQ(commander->previewItemAt(0), (PreviewItem{"/start/alpha", "alpha", ""}));
    press(Key::home);
    EXPECT_EQ(commander->numberOfPreviewItems(), 1);
    EXPECT_EQ(commander->previewItemAt(0), std::nullopt);
    press(Key::tab);
    EXPECT_EQ(commander->previewItemAt(5), (PreviewItem{"/Users/ann/delta", "delta", ""}));
}

TEST_F(OvCommanderViewDialogs, withoutASelectionThereIsNothingToPreview) {
    desktop.files.makeUnreadable("/");
    left().setCurrentPath("/");
    EXPECT_EQ(commander->numberOfPreviewItems(), 0);
    EXPECT_EQ(commander->previewItemAt(0), std::nullopt);
}

TEST_F(OvCommanderViewDialogs, thePreviewOfAFolderNamesItsTotalOnceItIsKnown) {
    desktop.walks.walkOf("/start/alpha").progress({2048, 1});
    desktop.mainQueue.runAll();
    EXPECT_EQ(commander->previewItemAt(0)->detail, "");
    desktop.walks.walkOf("/start/alpha").finish({1572864, 3});
    desktop.mainQueue.runAll();
    EXPECT_EQ(commander->previewItemAt(0)->detail, "   1.5 M");
}

TEST_F(OvCommanderViewDialogs, keysThatThePreviewDoesNotUseMoveTheCursorBelowIt) {
    EXPECT_EQ(commander->previewPanelHandleKey({.key = Key::down}), EventResult::handled);
    EXPECT_EQ(selectedName(left()), "beta");
}

}  // namespace
}  // namespace vantrel
