#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/PanelFixture.h"

namespace vantrel {
namespace {

using test::Cursor;
using testing::ElementsAre;
using testing::IsEmpty;

class OvPanelViewNavigation : public test::PanelTest {};

TEST_F(OvPanelViewNavigation, theVisibleRowsAreWhatFitsBetweenTheThreeBands) {
    panel->setFrame({0, 0, 549, 648});
    EXPECT_EQ(panel->visibleRowCount(), 28);
    panel->setFrame({0, 0, 549, 72 + 20 * 3 + 19.9});
    EXPECT_EQ(panel->visibleRowCount(), 3);
    panel->setFrame({0, 0, 549, 72 + 20 * 4});
    EXPECT_EQ(panel->visibleRowCount(), 4);
}

TEST_F(OvPanelViewNavigation, aPanelShorterThan92PointsStillHasOneVisibleRow) {
    for (const double height : {91.0, 72.0, 10.0, 0.0}) {
        panel->setFrame({0, 0, 549, height});
        EXPECT_EQ(panel->visibleRowCount(), 1) << height;
    }
}

TEST_F(OvPanelViewNavigation, thePanelAcceptsTheKeyboard) {
    EXPECT_TRUE(panel->acceptsFirstResponder());
}

TEST_F(OvPanelViewNavigation, upAndDownMoveByOneRowAndStopAtTheEnds) {
    showNumberedFiles(2);  // "..", f000, f001
    EXPECT_EQ(panel->selectedIndex(), 1);
    panel->moveDown();
    EXPECT_EQ(panel->selectedIndex(), 2);
    panel->moveDown();
    EXPECT_EQ(panel->selectedIndex(), 2);
    for (int i = 0; i < 3; ++i) panel->moveUp();
    EXPECT_EQ(panel->selectedIndex(), 0);
}

TEST_F(OvPanelViewNavigation, movingAsksForARedrawOnlyWhenItMoves) {
    showNumberedFiles(1);
    panel->home();
    host.redraws = 0;
    panel->moveUp();
    EXPECT_EQ(host.redraws, 0);
    panel->moveDown();
    EXPECT_EQ(host.redraws, 1);
    panel->moveDown();
    EXPECT_EQ(host.redraws, 1);
    panel->pageUp();
    panel->pageDown();
    panel->home();
    panel->end();
    EXPECT_EQ(host.redraws, 5);
}

TEST_F(OvPanelViewNavigation, aShortListInATallPanelPagesToItsLastRowAndNeverScrolls) {
    setRows(10);
    showNumberedFiles(2);
    panel->home();
    panel->pageDown();
    EXPECT_EQ(cursor(), (Cursor{2, 0}));
    panel->home();
    panel->end();
    EXPECT_EQ(cursor(), (Cursor{2, 0}));
}

TEST_F(OvPanelViewNavigation, pagesMoveByTheNumberOfVisibleRows) {
    setRows(5);
    showNumberedFiles(30);  // 31 rows
    panel->home();
    panel->pageDown();
    EXPECT_EQ(cursor(), (Cursor{5, 1}));
    panel->pageDown();
    EXPECT_EQ(cursor(), (Cursor{10, 6}));
    panel->pageUp();
    EXPECT_EQ(cursor(), (Cursor{5, 5}));
    panel->pageUp();
    panel->pageUp();
    EXPECT_EQ(cursor(), (Cursor{0, 0}));
}

TEST_F(OvPanelViewNavigation, homeAndEndGoToTheFirstAndTheLastRow) {
    setRows(5);
    showNumberedFiles(30);
    panel->end();
    EXPECT_EQ(cursor(), (Cursor{30, 26}));
    panel->home();
    EXPECT_EQ(cursor(), (Cursor{0, 0}));
}

TEST_F(OvPanelViewNavigation, theListScrollsByJustAsMuchAsKeepsTheCursorVisible) {
    setRows(5);
    showNumberedFiles(30);
    panel->home();
    for (int i = 0; i < 5; ++i) panel->moveDown();
    EXPECT_EQ(panel->scrollOffset(), 1);
    for (int i = 0; i < 4; ++i) panel->moveUp();
    EXPECT_EQ(panel->scrollOffset(), 1);
    panel->moveUp();
    EXPECT_EQ(panel->scrollOffset(), 0);
}

TEST_F(OvPanelViewNavigation, inAnEmptyListMovesAreHarmless) {
    desktop.files.makeUnreadable("/");
    panel->setCurrentPath("/");
    panel->moveDown();
    EXPECT_EQ(panel->selectedIndex(), 0);
    panel->end();
    EXPECT_EQ(panel->selectedIndex(), 0);
    panel->pageDown();
    EXPECT_EQ(cursor(), (Cursor{-1, 0}));
    EXPECT_EQ(panel->selectedItem(), nullptr);
    panel->activateCurrentItem();
    EXPECT_EQ(panel->currentPath(), "/");
    panel->pageUp();
    EXPECT_EQ(panel->selectedIndex(), 0);
}

TEST_F(OvPanelViewNavigation, aLowerPanelOnlyClampsItsScrollOffsetAndATallerOneToo) {
    setRows(5);
    showNumberedFiles(9);  // 10 rows
    panel->end();
    EXPECT_EQ(panel->scrollOffset(), 5);
    setRows(3);
    EXPECT_EQ(cursor(), (Cursor{9, 5}));
    setRows(8);
    EXPECT_EQ(panel->scrollOffset(), 2);
    setRows(20);
    EXPECT_EQ(panel->scrollOffset(), 0);
}

TEST_F(OvPanelViewNavigation, activatingTheParentRowGoesUpOntoTheFolderThatWasLeft) {
    for (const char* name : {"a", "b", "c"}) desktop.files.addFolder("/d", name);
    desktop.files.addFile("/d/b", "x");
    panel->setCurrentPath("/d/b");
    panel->home();
    panel->activateCurrentItem();
    EXPECT_EQ(panel->currentPath(), "/d");
    EXPECT_EQ(selectedName(), "b");
}

TEST_F(OvPanelViewNavigation, goingUpReachesTheRootAndStaysThere) {
    desktop.files.addFolder("/", "a");
    desktop.files.addFolder("/", "d");
    desktop.files.addFile("/d", "x");
    panel->setCurrentPath("/d");
    panel->navigateUp();
    EXPECT_EQ(panel->currentPath(), "/");
    EXPECT_EQ(selectedName(), "d");
    desktop.files.listedFolders.clear();
    panel->navigateUp();
    EXPECT_EQ(panel->currentPath(), "/");
    EXPECT_THAT(desktop.files.listedFolders, IsEmpty());
}

TEST_F(OvPanelViewNavigation, activatingAFolderEntersItAndLoadsItASecondTime) {
    desktop.files.addFolder("/d", "sub");
    desktop.files.addFile("/d/sub", "alpha");
    panel->setCurrentPath("/d");
    delegate->calls.clear();
    desktop.files.listedFolders.clear();
    panel->activateCurrentItem();
    EXPECT_EQ(panel->currentPath(), "/d/sub");
    EXPECT_EQ(selectedName(), "alpha");
    EXPECT_THAT(delegate->calls, ElementsAre("path /d/sub"));
    EXPECT_THAT(desktop.files.listedFolders, ElementsAre("/d/sub", "/d/sub"));
}

TEST_F(OvPanelViewNavigation, anEnteredFolderWithAnEntryNamedLikeTheOneLeftHasTheCursorOnIt) {
    desktop.files.addFolder("/usr", "lib");
    desktop.files.addFile("/usr/lib", "alpha");
    desktop.files.addFile("/usr/lib", "usr");
    panel->setCurrentPath("/usr");
    panel->activateCurrentItem();
    EXPECT_EQ(selectedName(), "usr");
}

TEST_F(OvPanelViewNavigation, activatingAFileTellsTheDelegateAndOpensNothingItself) {
    desktop.files.addFile("/d", "letter");
    panel->setCurrentPath("/d");
    delegate->calls.clear();
    panel->activateCurrentItem();
    EXPECT_THAT(delegate->calls, ElementsAre("activate /d/letter"));
    EXPECT_THAT(desktop.workspace.calls, IsEmpty());
    EXPECT_EQ(panel->currentPath(), "/d");
}

TEST_F(OvPanelViewNavigation, withoutADelegateNothingIsCalled) {
    desktop.files.addFile("/d", "letter");
    delegate.reset();
    panel->setCurrentPath("/d");
    panel->activateCurrentItem();
    panel->mouseDown({.locationInWindow = {20, 60}, .clickCount = 1});
    EXPECT_EQ(panel->currentPath(), "/d");
}

TEST_F(OvPanelViewNavigation, aPrefixFindsTheFirstEntryThatBeginsWithItWhateverTheLetterCase) {
    for (const char* name : {"alpha", "Beta", "bravo"}) desktop.files.addFile("/d", name);
    panel->setCurrentPath("/d");
    panel->selectItemByPrefix("B");
    EXPECT_EQ(selectedName(), "Beta");
    panel->selectItemByPrefix("BR");
    EXPECT_EQ(selectedName(), "bravo");
    panel->selectItemByPrefix("A");
    EXPECT_EQ(selectedName(), "alpha");
}

TEST_F(OvPanelViewNavigation, aPrefixIsNoSubstringAndWithoutAMatchNothingChanges) {
    for (const char* name : {"alpha", "beta"}) desktop.files.addFile("/d", name);
    panel->setCurrentPath("/d");
    panel->moveDown();
    host.redraws = 0;
    panel->selectItemByPrefix("l");
    EXPECT_EQ(selectedName(), "beta");
    EXPECT_EQ(host.redraws, 0);
}

TEST_F(OvPanelViewNavigation, theParentRowIsNeverFoundByPrefix) {
    desktop.files.addFile("/d", ".hidden");
    desktop.files.addFile("/d", "alpha");
    panel->setCurrentPath("/d");
    panel->selectItemByPrefix(".");
    EXPECT_EQ(selectedName(), "alpha");
    panel->setShowHiddenFiles(true);
    panel->end();
    panel->selectItemByPrefix(".");
    EXPECT_EQ(selectedName(), ".hidden");
}

TEST_F(OvPanelViewNavigation, aMatchOutOfSightIsScrolledIntoView) {
    setRows(5);
    addNumberedFiles(20);
    desktop.files.addFile("/d", "zebra");
    panel->setCurrentPath("/d");
    panel->selectItemByPrefix("z");
    EXPECT_EQ(cursor(), (Cursor{21, 17}));
}

}  // namespace
}  // namespace vantrel
