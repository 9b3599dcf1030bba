#include "commander/OvCommanderView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/CommanderFixture.h"
#include "support/RecordingCanvas.h"

namespace vantrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OvCommanderViewTest : public test::CommanderTest {};

TEST_F(OvCommanderViewTest, theLeftPanelOpensTheCurrentFolderAndTheRightOneTheHomeFolder) {
    EXPECT_EQ(left().currentPath(), "/start");
    EXPECT_EQ(right().currentPath(), "/Users/ann");
    EXPECT_THAT(desktop.files.listedFolders, ElementsAre("/start", "/Users/ann"));
}

TEST_F(OvCommanderViewTest, anUnreadableHomeFolderIsReplacedByTheCurrentFolder) {
    desktop.files.makeUnreadable("/Users/ann");
    const auto other = OvCommanderView::make(desktop.ports(), *desktop.engine, {0, 0, 1100, 720});
    EXPECT_EQ(other->rightPanel().currentPath(), "/start");
}

TEST_F(OvCommanderViewTest, theLeftPanelIsActiveAtFirst) {
    EXPECT_EQ(&commander->activePanel(), &left());
    EXPECT_EQ(&commander->otherPanel(), &right());
    EXPECT_TRUE(left().isActivePanel());
    EXPECT_FALSE(right().isActivePanel());
    EXPECT_EQ(commander->promptText(), "");
    EXPECT_TRUE(commander->acceptsFirstResponder());
}

TEST_F(OvCommanderViewTest, theFontsAreTheRetroFontsOf13Points) {
    EXPECT_EQ(commander->retroFont(), (Font{"Menlo", 13, FontWeight::regular}));
    EXPECT_EQ(commander->boldRetroFont(), (Font{"Menlo", 13, FontWeight::bold}));
}

TEST_F(OvCommanderViewTest, thePanelsStandSideBySideBetweenTheBands) {
    EXPECT_EQ(left().frame(), (Rect{0, 24, 549, 648}));
    EXPECT_EQ(right().frame(), (Rect{551, 24, 549, 648}));
}

TEST_F(OvCommanderViewTest, theLayoutFollowsTheWindowsSize) {
    commander->setFrame({0, 0, 800, 500});
    EXPECT_EQ(left().frame(), (Rect{0, 24, 399, 428}));
    EXPECT_EQ(right().frame(), (Rect{401, 24, 399, 428}));
}

TEST_F(OvCommanderViewTest, theRightPanelGetsTheOddPoint) {
    commander->setFrame({0, 0, 802, 500});
    EXPECT_EQ(left().frame().width, 400);
    EXPECT_EQ(right().frame().x, 402);
    EXPECT_EQ(right().frame().width, 400);
    commander->setFrame({0, 0, 803, 500});
    EXPECT_EQ(left().frame().width, 400);
    EXPECT_EQ(right().frame().width, 401);
}

TEST_F(OvCommanderViewTest, theFunctionKeysHaveTheirNumbersAndLabels) {
    std::vector<std::string> cells;
    for (const auto& button : commander->fnButtons()) cells.push_back(button.num + " " + button.label);
    EXPECT_THAT(cells, ElementsAre("1 Help", "2 Bytes/HR", "3 View", "4 Edit", "5 Copy", "6 RenMov",
                                   "7 Mkdir", "8 Delete", "9 Sort", "10 Quit"));
}

TEST_F(OvCommanderViewTest, theFunctionKeyCellsDivideTheWidth) {
    commander->setFrame({0, 0, 810, 500});
    EXPECT_EQ(commander->fnButtons()[0].rect, (Rect{5, 476, 76, 22}));
    EXPECT_EQ(commander->fnButtons()[1].rect, (Rect{85, 476, 76, 22}));
    EXPECT_EQ(commander->fnButtons()[9].rect, (Rect{725, 476, 76, 22}));
}

TEST_F(OvCommanderViewTest, tabSwitchesTheActivePanelBackAndForth) {
    host.redraws = 0;
    EXPECT_EQ(press(Key::tab), EventResult::handled);
    EXPECT_EQ(&commander->activePanel(), &right());
    EXPECT_EQ(&commander->otherPanel(), &left());
    EXPECT_FALSE(left().isActivePanel());
    EXPECT_TRUE(right().isActivePanel());
    EXPECT_GT(host.redraws, 0);
    press(Key::tab);
    EXPECT_EQ(&commander->activePanel(), &left());
    EXPECT_TRUE(left().isActivePanel());
    EXPECT_FALSE(right().isActivePanel());
}

TEST_F(OvCommanderViewTest, navigationKeysMoveTheActivePanelsCursorOnly) {
    press(Key::down);
    EXPECT_EQ(left().selectedIndex(), 2);
    press(Key::up);
    EXPECT_EQ(left().selectedIndex(), 1);
    press(Key::end);
    EXPECT_EQ(left().selectedIndex(), 3);
    press(Key::home);
    EXPECT_EQ(left().selectedIndex(), 0);
    press(Key::pageDown);
    EXPECT_EQ(left().selectedIndex(), 3);
    press(Key::pageUp);
    EXPECT_EQ(left().selectedIndex(), 0);
    EXPECT_EQ(right().selectedIndex(), 1);
}

TEST_F(OvCommanderViewTest, navigationKeysWorkWhateverModifiersAreHeld) {
    commander->keyDown({.key = Key::down, .command = CommandKey::held});
    EXPECT_EQ(left().selectedIndex(), 2);
}

TEST_F(OvCommanderViewTest, returnAndKeypadEnterEnterAFolderAndBackspaceLeavesIt) {
    press(Key::returnKey);
    EXPECT_EQ(left().currentPath(), "/start/alpha");
    press(Key::backspace);
    EXPECT_EQ(left().currentPath(), "/start");
    EXPECT_EQ(selectedName(left()), "alpha");
    press(Key::down);
    press(Key::keypadEnter);
    EXPECT_EQ(left().currentPath(), "/start/beta");
}

TEST_F(OvCommanderViewTest, returnOnAFileOpensItWithItsDefaultApplication) {
    press(Key::end);
    press(Key::returnKey);
    EXPECT_THAT(desktop.workspace.calls, ElementsAre("open /start/cedar.txt"));
}

TEST_F(OvCommanderViewTest, leftAndRightArrowsAndKeysWithoutABindingAreIgnored) {
    EXPECT_EQ(press(Key::left), EventResult::ignored);
    EXPECT_EQ(press(Key::right), EventResult::ignored);
    EXPECT_EQ(press(Key::escape), EventResult::ignored);
    EXPECT_EQ(type("/"), EventResult::ignored);
    EXPECT_EQ(type(""), EventResult::ignored);
}

TEST_F(OvCommanderViewTest, aTypedLetterOrDigitJumpsToTheFirstMatchAndEachPressIsASearchOfItsOwn) {
    desktop.files.addFile("/start", "7zip");
    desktop.files.addFile("/start", "\xC3\xA9t\xC3\xA9");
    left().loadDirectory();
    EXPECT_EQ(type("b"), EventResult::handled);
    EXPECT_EQ(selectedName(left()), "beta");
    type("c");
    EXPECT_EQ(selectedName(left()), "cedar.txt");
    type("7");
    EXPECT_EQ(selectedName(left()), "7zip");
    type("\xC3\x89");
    EXPECT_EQ(selectedName(left()), "\xC3\xA9t\xC3\xA9");
    type("A");
    EXPECT_EQ(selectedName(left()), "alpha");
}

TEST_F(OvCommanderViewTest, onlyTheFirstCharacterOfWhatWasTypedIsSearched) {
    type("bx");
    EXPECT_EQ(selectedName(left()), "beta");
}

TEST_F(OvCommanderViewTest, commandOShowsTheActiveFolderAndCommandTOpensATerminalThere) {
    typeWithCommand("o");
    press(Key::tab);
    typeWithCommand("t");
    EXPECT_THAT(desktop.workspace.calls, ElementsAre("reveal /start", "terminal /Users/ann"));
}

TEST_F(OvCommanderViewTest, commandQEndsTheProgram) {
    typeWithCommand("q");
    EXPECT_EQ(desktop.application.terminations, 1);
}

TEST_F(OvCommanderViewTest, commandWithAnotherLetterRunsTheQuickSearch) {
    press(Key::end);
    typeWithCommand("a");
    EXPECT_EQ(selectedName(left()), "alpha");
}

TEST_F(OvCommanderViewTest, commandShiftOIsNotCommandO) {
    desktop.files.addFile("/start", "oak");
    left().loadDirectory();
    typeWithCommand("O");
    EXPECT_THAT(desktop.workspace.calls, IsEmpty());
    EXPECT_EQ(selectedName(left()), "oak");
}

TEST_F(OvCommanderViewTest, f2TogglesTheSizeModeOfBothPanelsEachByItself) {
    right().setSizeDisplayMode(SizeDisplayMode::rawBytes);
    press(Key::f2);
    EXPECT_EQ(left().sizeDisplayMode(), SizeDisplayMode::rawBytes);
    EXPECT_EQ(right().sizeDisplayMode(), SizeDisplayMode::humanReadable);
}

TEST_F(OvCommanderViewTest, f4OpensAFileAndDoesNothingOnAFolderOrTheParentRow) {
    press(Key::f4);
    press(Key::home);
    press(Key::f4);
    EXPECT_THAT(desktop.workspace.calls, IsEmpty());
    press(Key::end);
    press(Key::f4);
    EXPECT_THAT(desktop.workspace.calls, ElementsAre("open /start/cedar.txt"));
}

TEST_F(OvCommanderViewTest, f10EndsTheProgram) {
    press(Key::f10);
    EXPECT_EQ(desktop.application.terminations, 1);
}

TEST_F(OvCommanderViewTest, aClickIntoTheInactivePanelActivatesItAndSelectsTheRow) {
    click(600, 24 + 48 + 5);
    EXPECT_EQ(&commander->activePanel(), &right());
    EXPECT_EQ(right().selectedIndex(), 0);
    EXPECT_EQ(left().selectedIndex(), 1);
}

TEST_F(OvCommanderViewTest, aClickOnAFunctionKeyCellRunsItsCommand) {
    // 1100 wide: pitch 109; cell 2 from 114 to 219, cell 10 from 986 to 1091; y from 696 to 718.
    EXPECT_EQ(click(150, 700), EventResult::handled);
    EXPECT_EQ(left().sizeDisplayMode(), SizeDisplayMode::rawBytes);
    EXPECT_EQ(click(990, 717.9), EventResult::handled);
    EXPECT_EQ(desktop.application.terminations, 1);
}

TEST_F(OvCommanderViewTest, clicksBetweenTheCellsOnTheMenuBarAndOnThePromptLineDoNothing) {
    EXPECT_EQ(click(220, 700), EventResult::ignored);
    EXPECT_EQ(click(150, 695.9), EventResult::ignored);
    EXPECT_EQ(click(150, 718), EventResult::ignored);
    EXPECT_EQ(click(30, 10), EventResult::ignored);
    EXPECT_EQ(click(30, 680), EventResult::ignored);
    EXPECT_EQ(left().sizeDisplayMode(), SizeDisplayMode::humanReadable);
    EXPECT_EQ(desktop.application.terminations, 0);
}

TEST_F(OvCommanderViewTest, theWheelScrollsThePanelUnderThePointer) {
    for (int i = 0; i < 60; ++i) desktop.files.addFile("/Users/ann", "n" + std::to_string(i));
    right().loadDirectory();
    dispatchScrollWheel(*commander, {.locationInWindow = {700, 300}, .deltaY = -1});
    EXPECT_EQ(right().scrollOffset(), 2);
    EXPECT_EQ(left().scrollOffset(), 0);
    EXPECT_EQ(&commander->activePanel(), &left());
}

TEST_F(OvCommanderViewTest, aChangedPathAsksForARedrawOfThePromptLine) {
    host.redraws = 0;
    commander->panelPathDidChange(left(), "/start");
    EXPECT_EQ(host.redraws, 1);
}

TEST_F(OvCommanderViewTest, activatingAFileOpensItWithoutAnyFurtherTest) {
    commander->panelDidActivateItem(right(), *left().items()[0]);
    EXPECT_THAT(desktop.workspace.calls, ElementsAre("open /"));
}

}  // namespace
}  // namespace vantrel
