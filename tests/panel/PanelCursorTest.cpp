#include "panel/PanelCursor.h"

#include <gtest/gtest.h>

#include <ostream>

namespace vantrel {
namespace {

struct Place {
    std::int64_t index;
    std::int64_t offset;
    bool operator==(const Place&) const = default;
};

void PrintTo(const Place& place, std::ostream* stream) {
    *stream << "row " << place.index << ", scrolled by " << place.offset;
}

Place placeOf(const PanelCursor& cursor) {
    return {cursor.index(), cursor.offset()};
}

PanelCursor cursorIn(std::int64_t rowCount, std::int64_t rowsInSight, std::int64_t index = 0) {
    PanelCursor cursor;
    cursor.setRowsInSight(rowsInSight);
    cursor.reset(rowCount, index);
    return cursor;
}

TEST(PanelCursor, aNewOneStandsAtTheStartOfAnEmptyListOnNoRow) {
    const PanelCursor cursor;
    EXPECT_EQ(placeOf(cursor), (Place{0, 0}));
    EXPECT_EQ(cursor.rowsInSight(), 1);
    EXPECT_EQ(cursor.endInSight(), 0);
    EXPECT_FALSE(cursor.isOnRow());
}

TEST(PanelCursor, stepsEndAtTheFirstAndTheLastRow) {
    PanelCursor cursor = cursorIn(2, 5);
    EXPECT_FALSE(cursor.moveUp());
    EXPECT_TRUE(cursor.moveDown());
    EXPECT_FALSE(cursor.moveDown());
    EXPECT_EQ(placeOf(cursor), (Place{1, 0}));
    EXPECT_TRUE(cursor.moveUp());
    EXPECT_EQ(placeOf(cursor), (Place{0, 0}));
}

TEST(PanelCursor, aStepScrollsByJustAsMuchAsKeepsTheCursorInSight) {
    PanelCursor cursor = cursorIn(10, 3, 2);
    EXPECT_EQ(cursor.offset(), 0);
    cursor.moveDown();
    EXPECT_EQ(placeOf(cursor), (Place{3, 1}));
    cursor.moveUp();
    cursor.moveUp();
    EXPECT_EQ(placeOf(cursor), (Place{1, 1}));
    cursor.moveUp();
    EXPECT_EQ(placeOf(cursor), (Place{0, 0}));
}

TEST(PanelCursor, pagesAreAsLongAsTheRowsInSightAndEndInTheList) {
    PanelCursor cursor = cursorIn(10, 4);
    cursor.pageDown();
    EXPECT_EQ(placeOf(cursor), (Place{4, 1}));
    cursor.pageDown();
    cursor.pageDown();
    EXPECT_EQ(placeOf(cursor), (Place{9, 6}));
    cursor.pageUp();
    EXPECT_EQ(placeOf(cursor), (Place{5, 5}));
    cursor.pageUp();
    cursor.pageUp();
    EXPECT_EQ(placeOf(cursor), (Place{0, 0}));
}

TEST(PanelCursor, homeAndEndAreTheFirstAndTheLastRow) {
    PanelCursor cursor = cursorIn(10, 4);
    cursor.end();
    EXPECT_EQ(placeOf(cursor), (Place{9, 6}));
    EXPECT_EQ(cursor.endInSight(), 10);
    cursor.home();
    EXPECT_EQ(placeOf(cursor), (Place{0, 0}));
    EXPECT_EQ(cursor.endInSight(), 4);
}

TEST(PanelCursor, inAnEmptyListEveryMoveIsHarmless) {
    PanelCursor cursor = cursorIn(0, 4);
    EXPECT_FALSE(cursor.moveDown());
    EXPECT_FALSE(cursor.moveUp());
    cursor.end();
    EXPECT_EQ(placeOf(cursor), (Place{0, 0}));
    cursor.pageDown();
    EXPECT_EQ(placeOf(cursor), (Place{-1, 0}));
    EXPECT_FALSE(cursor.isOnRow());
    cursor.pageUp();
    EXPECT_EQ(placeOf(cursor), (Place{0, 0}));
}

TEST(PanelCursor, scrollingStopsAtTheEndsAndLeavesTheCursorAlone) {
    PanelCursor cursor = cursorIn(10, 4, 1);
    cursor.scrollBy(5);
    EXPECT_EQ(placeOf(cursor), (Place{1, 5}));
    cursor.scrollBy(5);
    EXPECT_EQ(placeOf(cursor), (Place{1, 6}));
    cursor.scrollBy(-20);
    EXPECT_EQ(placeOf(cursor), (Place{1, 0}));
}

TEST(PanelCursor, aCursorOutOfSightIsBroughtBackByTheNextMove) {
    PanelCursor cursor = cursorIn(30, 5, 1);
    cursor.scrollBy(8);
    cursor.moveDown();
    EXPECT_EQ(placeOf(cursor), (Place{2, 2}));
    cursor.scrollBy(-8);
    cursor.pointAt(7);
    EXPECT_EQ(placeOf(cursor), (Place{7, 0})) << "pointing does not scroll";
}

TEST(PanelCursor, withMoreOrFewerRowsInSightOnlyTheListMoves) {
    PanelCursor cursor = cursorIn(10, 5, 9);
    EXPECT_EQ(placeOf(cursor), (Place{9, 5}));
    cursor.setRowsInSight(3);
    EXPECT_EQ(placeOf(cursor), (Place{9, 5})) << "the cursor may get out of sight";
    cursor.setRowsInSight(8);
    EXPECT_EQ(placeOf(cursor), (Place{9, 2}));
    cursor.setRowsInSight(20);
    EXPECT_EQ(placeOf(cursor), (Place{9, 0}));
}

TEST(PanelCursor, aShorterListIsNotScrolledBeyondItsEnd) {
    PanelCursor cursor = cursorIn(31, 5, 21);
    EXPECT_EQ(placeOf(cursor), (Place{21, 17}));
    cursor.reset(7, 6);
    EXPECT_EQ(placeOf(cursor), (Place{6, 2}));
}

TEST(PanelCursor, hasTheRowsOfTheListAndNoOthers) {
    const PanelCursor cursor = cursorIn(3, 5);
    EXPECT_FALSE(cursor.hasRow(-1));
    EXPECT_TRUE(cursor.hasRow(0));
    EXPECT_TRUE(cursor.hasRow(2));
    EXPECT_FALSE(cursor.hasRow(3));
}

}  // namespace
}  // namespace vantrel
