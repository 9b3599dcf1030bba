#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/PanelFixture.h"

namespace vantrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OvPanelViewNavigation : public test::PanelTest {
protected:
    void showNumberedFiles(int count) {
        addNumberedFiles(count);
        panel->setCurrentPath("/d");
    }

    void click(double x, double y, int clickCount = 1) {
        panel->mouseDown({.locationInWindow = {x, y}, .clickCount = clickCount});
    }

    void wheel(double deltaY) { panel->scrollWheel({.deltaY = deltaY}); }
};

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
    EXPECT_EQ(panel->selectedIndex(), 2);
    EXPECT_EQ(panel->scrollOffset(), 0);
    panel->home();
    panel->end();
    EXPECT_EQ(panel->selectedIndex(), 2);
    EXPECT_EQ(panel->scrollOffset(), 0);
}

TEST_F(OvPanelViewNavigation, pagesMoveByTheNumberOfVisibleRows) {
    setRows(5);
    showNumberedFiles(30);  // 31 rows
    panel->home();
    panel->pageDown();
    EXPECT_EQ(panel->selectedIndex(), 5);
    EXPECT_EQ(panel->scrollOffset(), 1);
    panel->pageDown();
    EXPECT_EQ(panel->selectedIndex(), 10);
    EXPECT_EQ(panel->scrollOffset(), 6);
    panel->pageUp();
    EXPECT_EQ(panel->selectedIndex(), 5);
    EXPECT_EQ(panel->scrollOffset(), 5);
    panel->pageUp();
    panel->pageUp();
    EXPECT_EQ(panel->selectedIndex(), 0);
    EXPECT_EQ(panel->scrollOffset(), 0);
}

TEST_F(OvPanelViewNavigation, homeAndEndGoToTheFirstAndTheLastRow) {
    setRows(5);
    showNumberedFiles(30);
    panel->end();
    EXPECT_EQ(panel->selectedIndex(), 30);
    EXPECT_EQ(panel->scrollOffset(), 26);
    panel->home();
    EXPECT_EQ(panel->selectedIndex(), 0);
    EXPECT_EQ(panel->scrollOffset(), 0);
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
    EXPECT_EQ(panel->selectedIndex(), -1);
    EXPECT_EQ(panel->scrollOffset(), 0);
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
    EXPECT_EQ(panel->scrollOffset(), 5);
    EXPECT_EQ(panel->selectedIndex(), 9);
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
    click(20, 60);
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
    EXPECT_EQ(panel->selectedIndex(), 21);
    EXPECT_EQ(panel->scrollOffset(), 17);
}

TEST_F(OvPanelViewNavigation, everyMouseDownFirstTellsTheDelegate) {
    showNumberedFiles(3);
    delegate->calls.clear();
    click(20, 5);
    click(20, 30);
    click(20, 60);
    click(20, 640);
    EXPECT_THAT(delegate->calls, ElementsAre("select", "select", "select", "select"));
}

TEST_F(OvPanelViewNavigation, aClickSelectsTheRowUnderIt) {
    showNumberedFiles(5);
    click(20, 48);
    EXPECT_EQ(panel->selectedIndex(), 0);
    click(20, 67.9);
    EXPECT_EQ(panel->selectedIndex(), 0);
    click(20, 68);
    EXPECT_EQ(panel->selectedIndex(), 1);
    click(500, 148);
    EXPECT_EQ(panel->selectedIndex(), 5);
}

TEST_F(OvPanelViewNavigation, aClickCountsFromTheFirstVisibleRow) {
    setRows(5);
    showNumberedFiles(30);
    panel->end();
    click(20, 48);
    EXPECT_EQ(panel->selectedIndex(), 26);
}

TEST_F(OvPanelViewNavigation, clicksOnTheBarsAndBelowTheLastRowChangeNothing) {
    showNumberedFiles(3);  // 4 rows
    const std::string before = selectedName();
    click(20, 23.9);  // top bar
    click(20, 128);   // below the last row
    click(20, 624);   // bottom bar
    click(20, 647);
    EXPECT_EQ(selectedName(), before);
    EXPECT_EQ(panel->sortField(), SortField::name);
    EXPECT_EQ(panel->sortDirection(), SortDirection::ascending);
}

TEST_F(OvPanelViewNavigation, theBottomBarIsNoRowEvenInALongList) {
    setRows(5);  // 172 points: rows from 48 to 148
    showNumberedFiles(30);
    click(20, 147.9);
    EXPECT_EQ(panel->selectedIndex(), 4);
    click(20, 60);
    EXPECT_EQ(panel->selectedIndex(), 0);
    click(20, 148);
    EXPECT_EQ(panel->selectedIndex(), 0);
}

TEST_F(OvPanelViewNavigation, clicksAreConvertedFromTheWindowIntoThePanel) {
    showNumberedFiles(5);
    const auto root = std::make_shared<View>(Rect{0, 0, 1100, 720});
    root->addSubview(panel);
    panel->setFrame({551, 24, 549, 648});
    EXPECT_EQ(dispatchMouseDown(*root, {.locationInWindow = {600, 24 + 48 + 45}, .clickCount = 1}),
              EventResult::handled);
    EXPECT_EQ(panel->selectedIndex(), 2);
}

TEST_F(OvPanelViewNavigation, exactlyTwoClicksActivate) {
    desktop.files.addFolder("/d", "sub");
    desktop.files.addFile("/d/sub", "x");
    panel->setCurrentPath("/d");
    click(20, 70, 1);
    click(20, 70, 3);
    EXPECT_EQ(panel->currentPath(), "/d");
    click(20, 70, 2);
    EXPECT_EQ(panel->currentPath(), "/d/sub");
}

TEST_F(OvPanelViewNavigation, doubleClickingTheParentRowGoesUpOntoTheFolderThatWasLeft) {
    desktop.files.addFolder("/d", "a");
    desktop.files.addFolder("/d", "sub");
    desktop.files.addFile("/d/sub", "x");
    panel->setCurrentPath("/d/sub");
    click(20, 50, 2);
    EXPECT_EQ(panel->currentPath(), "/d");
    EXPECT_EQ(selectedName(), "sub");
}

// The panel is 549 wide: the fixed columns' zones start at 304, 389 and 484.
TEST_F(OvPanelViewNavigation, theHeaderZonesChooseTheFieldByTheirEdges) {
    showNumberedFiles(2);
    const std::vector<std::pair<double, SortField>> cases{
        {303.9, SortField::name}, {304, SortField::size}, {388.9, SortField::size}, {389, SortField::date},
        {483.9, SortField::date}, {484, SortField::ext},  {548, SortField::ext},    {0, SortField::name}};
    for (const auto& [x, field] : cases) {
        panel->setSortField(field == SortField::name ? SortField::date : SortField::name);
        panel->setSortDirection(SortDirection::descending);
        click(x, 24);
        EXPECT_EQ(panel->sortField(), field) << x;
        EXPECT_EQ(panel->sortDirection(), SortDirection::ascending) << x;
    }
}

TEST_F(OvPanelViewNavigation, clickingTheCurrentFieldsHeaderTogglesItsDirection) {
    showNumberedFiles(2);
    click(10, 47.9);
    EXPECT_EQ(panel->sortDirection(), SortDirection::descending);
    EXPECT_THAT(names(), ElementsAre("..", "f001", "f000"));
    click(10, 24);
    EXPECT_EQ(panel->sortDirection(), SortDirection::ascending);
    EXPECT_THAT(names(), ElementsAre("..", "f000", "f001"));
}

TEST_F(OvPanelViewNavigation, aChangeOfFieldSortsTwiceFirstInTheOldDirection) {
    for (const char* name : {"a", "b", "c"}) desktop.files.addFile("/d", name, 7);
    panel->setCurrentPath("/d");
    panel->setSortDirection(SortDirection::descending);
    EXPECT_THAT(names(), ElementsAre("..", "c", "b", "a"));
    click(304, 30);
    // By size all are equal: the descending sort turned them round once, the ascending one kept that.
    EXPECT_THAT(names(), ElementsAre("..", "a", "b", "c"));
}

TEST_F(OvPanelViewNavigation, theWheelScrollsByTwoRowsWithinTheListAndLeavesTheCursorAlone) {
    setRows(5);
    showNumberedFiles(9);  // 10 rows: the last scroll offset is 5
    const auto cursor = panel->selectedIndex();
    wheel(-1);
    EXPECT_EQ(panel->scrollOffset(), 2);
    wheel(-0.1);
    wheel(-120);
    EXPECT_EQ(panel->scrollOffset(), 5);
    wheel(3);
    EXPECT_EQ(panel->scrollOffset(), 3);
    wheel(0);
    EXPECT_EQ(panel->scrollOffset(), 3);
    wheel(1);
    wheel(1);
    EXPECT_EQ(panel->scrollOffset(), 0);
    wheel(1);
    EXPECT_EQ(panel->scrollOffset(), 0);
    EXPECT_EQ(panel->selectedIndex(), cursor);
}

TEST_F(OvPanelViewNavigation, theWheelAlwaysAsksForARedraw) {
    showNumberedFiles(1);
    host.redraws = 0;
    wheel(1);
    wheel(0);
    wheel(-1);
    EXPECT_EQ(host.redraws, 3);
    EXPECT_EQ(panel->scrollOffset(), 0);
}

TEST_F(OvPanelViewNavigation, aRowOutOfSightIsBroughtBackByTheNextKey) {
    setRows(5);
    showNumberedFiles(30);
    for (int i = 0; i < 4; ++i) wheel(-1);
    EXPECT_EQ(panel->scrollOffset(), 8);
    panel->moveDown();
    EXPECT_EQ(panel->selectedIndex(), 2);
    EXPECT_EQ(panel->scrollOffset(), 2);
}

}  // namespace
}  // namespace vantrel
