#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/PanelFixture.h"

namespace vantrel {
namespace {

using test::Cursor;
using testing::ElementsAre;

class OvPanelViewMouse : public test::PanelTest {
protected:
    void click(double x, double y, int clickCount = 1) {
        panel->mouseDown({.locationInWindow = {x, y}, .clickCount = clickCount});
    }

    void wheel(double deltaY) { panel->scrollWheel({.deltaY = deltaY}); }
};

TEST_F(OvPanelViewMouse, everyMouseDownFirstTellsTheDelegate) {
    showNumberedFiles(3);
    delegate->calls.clear();
    click(20, 5);
    click(20, 30);
    click(20, 60);
    click(20, 640);
    EXPECT_THAT(delegate->calls, ElementsAre("select", "select", "select", "select"));
}

TEST_F(OvPanelViewMouse, theDelegateHearsOfAMouseDownBeforeAnythingElseHappens) {
    showNumberedFiles(3);
    delegate->calls.clear();
    click(20, 48 + 2 * 20, 2);
    EXPECT_THAT(delegate->calls, ElementsAre("select", "activate /d/f001"));
    EXPECT_EQ(delegate->cursorAtSelect, 1) << "the row is selected afterwards";
}

TEST_F(OvPanelViewMouse, aClickSelectsTheRowUnderIt) {
    showNumberedFiles(5);
    host.redraws = 0;
    click(20, 48);
    EXPECT_EQ(host.redraws, 1);
    EXPECT_EQ(panel->selectedIndex(), 0);
    click(20, 67.9);
    EXPECT_EQ(panel->selectedIndex(), 0);
    click(20, 68);
    EXPECT_EQ(panel->selectedIndex(), 1);
    click(500, 148);
    EXPECT_EQ(panel->selectedIndex(), 5);
}

TEST_F(OvPanelViewMouse, aClickCountsFromTheFirstVisibleRow) {
    setRows(5);
    showNumberedFiles(30);
    panel->end();
    click(20, 48);
    EXPECT_EQ(panel->selectedIndex(), 26);
}

TEST_F(OvPanelViewMouse, clicksOnTheBarsAndBelowTheLastRowChangeNothing) {
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

TEST_F(OvPanelViewMouse, theBottomBarIsNoRowEvenInALongList) {
    setRows(5);  // 172 points: rows from 48 to 148
    showNumberedFiles(30);
    click(20, 147.9);
    EXPECT_EQ(panel->selectedIndex(), 4);
    click(20, 60);
    EXPECT_EQ(panel->selectedIndex(), 0);
    click(20, 148);
    EXPECT_EQ(panel->selectedIndex(), 0);
}

TEST_F(OvPanelViewMouse, clicksAreConvertedFromTheWindowIntoThePanel) {
    showNumberedFiles(5);
    const auto root = std::make_shared<View>(Rect{0, 0, 1100, 720});
    root->addSubview(panel);
    panel->setFrame({551, 24, 549, 648});
    EXPECT_EQ(dispatchMouseDown(*root, {.locationInWindow = {600, 24 + 48 + 45}, .clickCount = 1}),
              EventResult::handled);
    EXPECT_EQ(panel->selectedIndex(), 2);
}

TEST_F(OvPanelViewMouse, exactlyTwoClicksActivate) {
    desktop.files.addFolder("/d", "sub");
    desktop.files.addFile("/d/sub", "x");
    panel->setCurrentPath("/d");
    click(20, 70, 1);
    click(20, 70, 3);
    EXPECT_EQ(panel->currentPath(), "/d");
    click(20, 70, 2);
    EXPECT_EQ(panel->currentPath(), "/d/sub");
}

TEST_F(OvPanelViewMouse, doubleClickingTheParentRowGoesUpOntoTheFolderThatWasLeft) {
    desktop.files.addFolder("/d", "a");
    desktop.files.addFolder("/d", "sub");
    desktop.files.addFile("/d/sub", "x");
    panel->setCurrentPath("/d/sub");
    click(20, 50, 2);
    EXPECT_EQ(panel->currentPath(), "/d");
    EXPECT_EQ(selectedName(), "sub");
}

// The panel is 549 wide: the fixed columns' zones start at 304, 389 and 484.
TEST_F(OvPanelViewMouse, theHeaderZonesChooseTheFieldByTheirEdges) {
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

TEST_F(OvPanelViewMouse, clickingTheCurrentFieldsHeaderTogglesItsDirection) {
    showNumberedFiles(2);
    click(10, 47.9);
    EXPECT_EQ(panel->sortDirection(), SortDirection::descending);
    EXPECT_THAT(names(), ElementsAre("..", "f001", "f000"));
    click(10, 24);
    EXPECT_EQ(panel->sortDirection(), SortDirection::ascending);
    EXPECT_THAT(names(), ElementsAre("..", "f000", "f001"));
}

TEST_F(OvPanelViewMouse, aChangeOfFieldSortsTwiceFirstInTheOldDirection) {
    for (const char* name : {"a", "b", "c"}) desktop.files.addFile("/d", name, 7);
    panel->setCurrentPath("/d");
    panel->setSortDirection(SortDirection::descending);
    EXPECT_THAT(names(), ElementsAre("..", "c", "b", "a"));
    click(304, 30);
    // By size all are equal: the descending sort turned them round once, the ascending one kept that.
    EXPECT_THAT(names(), ElementsAre("..", "a", "b", "c"));
}

TEST_F(OvPanelViewMouse, theWheelScrollsByTwoRowsWithinTheListAndLeavesTheCursorAlone) {
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

TEST_F(OvPanelViewMouse, theWheelAlwaysAsksForARedraw) {
    showNumberedFiles(1);
    host.redraws = 0;
    wheel(1);
    wheel(0);
    wheel(-1);
    EXPECT_EQ(host.redraws, 3);
    EXPECT_EQ(panel->scrollOffset(), 0);
}

TEST_F(OvPanelViewMouse, aRowOutOfSightIsBroughtBackByTheNextKey) {
    setRows(5);
    showNumberedFiles(30);
    for (int i = 0; i < 4; ++i) wheel(-1);
    EXPECT_EQ(panel->scrollOffset(), 8);
    panel->moveDown();
    EXPECT_EQ(cursor(), (Cursor{2, 2}));
}

}  // namespace
}  // namespace vantrel
