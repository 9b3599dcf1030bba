#include "panel/PanelAccessible.h"

#include "support/PanelFixture.h"
#include "support/ScopedEnvironment.h"

namespace vantrel::test {

namespace {

using testing::ElementsAre;

constexpr std::size_t columns = 4;

/// "/d" with a folder, a program, a file and two files out of sight: the panel is three rows high.
class PanelAccessibleTest : public PanelTest {
protected:
    PanelAccessibleTest() {
        desktop.files.addFolder("/d", "docs");
        for (const char* name : {"a.txt", "b.txt", "c.txt"}) desktop.files.addFile("/d", name, 1500);
        setRows(3);
        panel->setCurrentPath("/d");
        panel->setIsActivePanel(true);
    }

    Accessible& table() { return *panel->accessible(); }
    AccessibleElement cell(std::size_t row, std::size_t column) {
        return table().element((row + 1) * columns + column);
    }
    std::vector<std::string> row(std::size_t number) {
        std::vector<std::string> texts;
        for (std::size_t column = 0; column < columns; ++column) texts.push_back(cell(number, column).name);
        return texts;
    }
    static std::size_t elementOf(std::size_t row, std::size_t column = 0) {
        return (row + 1) * columns + column;
    }

    const ScopedEnvironment zone{"TZ", "UTC"};
};

}  // namespace

TEST_F(PanelAccessibleTest, isATableNamedAfterItsSideAndItsFolder) {
    EXPECT_EQ(table().role(), AccessibleRole::table);
    EXPECT_EQ(table().name(), "/d");
    panel->accessibleTitle = "Left panel";
    EXPECT_EQ(table().name(), "Left panel: /d");
    EXPECT_EQ(table().frame(), (Rect{0, 0, 549, 132}));
}

TEST_F(PanelAccessibleTest, hasFourTitledColumnsAndOneLineForEachRow) {
    EXPECT_EQ(table().columnCount(), columns);
    EXPECT_EQ(table().elementCount(), (5 + 1) * columns);
    std::vector<std::string> titles;
    for (std::size_t column = 0; column < columns; ++column) {
        EXPECT_EQ(table().element(column).role, AccessibleRole::columnHeader);
        titles.push_back(table().element(column).name);
    }
    EXPECT_THAT(titles, ElementsAre("Name", "Size", "Date", "Time"));
    EXPECT_EQ(cell(0, 0).role, AccessibleRole::cell);
}

TEST_F(PanelAccessibleTest, tellsNameSizeDateAndTimeOfARow) {
    desktop.files.addFolder("/dated", "x");
    desktop.files.addFile("/dated", "readme", 1536);
    panel->setCurrentPath("/dated");
    const FileItem& readme = *item("readme");
    EXPECT_THAT(row(2), ElementsAre("readme", "1.5 K", readme.formattedDate(), readme.formattedTime()));
    EXPECT_THAT(row(0), ElementsAre("..", "", "", ""));
}

TEST_F(PanelAccessibleTest, tellsAFoldersTotalAsItArrivesWithoutTheSpinner) {
    EXPECT_EQ(cell(1, 1).name, "calculating");
    desktop.walks.walkOf("/d/docs").progress({2048, 1});
    desktop.mainQueue.runAll();
    EXPECT_EQ(cell(1, 1).name, "calculating, 2.0 K");
    finishWalk("/d/docs", 3072);
    EXPECT_EQ(cell(1, 1).name, "3.0 K");
    panel->setSizeDisplayMode(SizeDisplayMode::rawBytes);
    EXPECT_EQ(cell(1, 1).name, "3,072 B");
}

TEST_F(PanelAccessibleTest, aFolderThatNobodyMeasuresHasNoKnownSize) {
    item("docs")->vantrelState = state::NotCalculated{};
    EXPECT_EQ(cell(1, 1).name, "unknown");
}

TEST_F(PanelAccessibleTest, saysWhatKindOfThingARowIs) {
    EXPECT_EQ(cell(0, 0).description, "parent folder");
    EXPECT_EQ(cell(1, 0).description, "folder");
    EXPECT_EQ(cell(2, 0).description, "file");
    EXPECT_EQ(cell(2, 1).description, "");

    DirectoryEntry program = fileEntry("program");
    program.attributes->posixPermissions = 0755;
    DirectoryEntry link = folderEntry("link");
    link.attributes->link = LinkKind::symbolicLink;
    for (const DirectoryEntry& entry : {program, link}) desktop.files.add("/kinds", entry);
    panel->setCurrentPath("/kinds");
    EXPECT_EQ(cell(1, 0).description, "link to a folder");
    EXPECT_EQ(cell(2, 0).description, "program");
}

TEST_F(PanelAccessibleTest, cellsCanBePressedAndSelectedAndTitlesPressed) {
    EXPECT_TRUE(cell(1, 0).isPressable);
    EXPECT_TRUE(cell(1, 0).isSelectable);
    EXPECT_TRUE(table().element(0).isPressable);
    EXPECT_FALSE(table().element(0).isSelectable);
}

TEST_F(PanelAccessibleTest, namesAreRepairedAsOnTheScreen) {
    desktop.files.addFile("/odd\xFF", "caf\xE9\n");
    panel->setCurrentPath("/odd\xFF");
    EXPECT_EQ(table().name(), "/odd\uFFFD");
    EXPECT_EQ(cell(1, 0).name, "caf\uFFFD\uFFFD");
}

TEST_F(PanelAccessibleTest, theCursorsRowIsSelectedAndHasTheFocusWhileThePanelIsActive) {
    EXPECT_TRUE(cell(1, 0).isSelected);
    EXPECT_TRUE(cell(1, 3).isSelected);
    EXPECT_FALSE(cell(2, 0).isSelected);
    EXPECT_EQ(table().focusedElement(), elementOf(1));
    panel->moveDown();
    EXPECT_EQ(table().focusedElement(), elementOf(2));
    panel->setIsActivePanel(false);
    EXPECT_EQ(table().focusedElement(), std::nullopt);
    EXPECT_EQ(table().selectedElement(), elementOf(2)) << "the cursor stays where it is";
}

TEST_F(PanelAccessibleTest, withoutRowsNothingHasTheFocus) {
    desktop.files.clear("/");
    panel->setCurrentPath("/");
    ASSERT_TRUE(panel->items().empty());
    EXPECT_EQ(table().focusedElement(), std::nullopt);
    EXPECT_EQ(table().elementCount(), columns);
    EXPECT_THAT(table().shownElements(), ElementsAre(0, 1, 2, 3));
}

TEST_F(PanelAccessibleTest, rowsOnShowAreWhereTheyArePaintedAndOthersNowhere) {
    EXPECT_EQ(cell(0, 0).frame, (Rect{0, 52, 310, 20}));
    EXPECT_EQ(cell(1, 1).frame, (Rect{310, 72, 85, 20}));
    EXPECT_EQ(cell(2, 2).frame, (Rect{395, 92, 95, 20}));
    EXPECT_EQ(cell(2, 3).frame, (Rect{490, 92, 59, 20}));
    EXPECT_FALSE(cell(3, 0).isOnShow());
    EXPECT_EQ(table().element(0).frame, (Rect{0, 26, 310, 24}));
    EXPECT_THAT(table().shownElements(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15));
    panel->end();
    EXPECT_FALSE(cell(0, 0).isOnShow());
    EXPECT_EQ(cell(4, 0).frame, (Rect{0, 92, 310, 20}));
    EXPECT_THAT(table().shownElements(),
                ElementsAre(0, 1, 2, 3, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23));
}

TEST_F(PanelAccessibleTest, findsTheCellUnderAPoint) {
    EXPECT_EQ(table().elementAt({0, 52}), elementOf(0));
    EXPECT_EQ(table().elementAt({309, 111}), elementOf(2));
    EXPECT_EQ(table().elementAt({310, 72}), elementOf(1, 1));
    EXPECT_EQ(table().elementAt({548, 72}), elementOf(1, 3));
    EXPECT_EQ(table().elementAt({400, 30}), 2U) << "a title";
    EXPECT_EQ(table().elementAt({100, 10}), std::nullopt) << "the path";
    EXPECT_EQ(table().elementAt({100, 112}), std::nullopt) << "the status line";
    EXPECT_EQ(table().elementAt({-1, 52}), std::nullopt) << "beside the panel";
    panel->end();
    EXPECT_EQ(table().elementAt({0, 52}), elementOf(2));
    setRows(10);
    EXPECT_EQ(table().elementAt({0, 151}), elementOf(4));
    EXPECT_EQ(table().elementAt({0, 152}), std::nullopt) << "below the last row";
}

TEST_F(PanelAccessibleTest, selectingACellActivatesThePanelAndScrollsToTheRow) {
    table().select(elementOf(4, 2));
    EXPECT_EQ(selectedName(), "c.txt");
    EXPECT_TRUE(cell(4, 0).isOnShow());
    EXPECT_THAT(delegate->calls, testing::Contains("select"));
    table().select(elementOf(0));
    EXPECT_EQ(selectedName(), "..");
}

TEST_F(PanelAccessibleTest, pressingACellOpensIt) {
    table().press(elementOf(2));
    EXPECT_EQ(delegate->calls.back(), "activate /d/a.txt");
    table().press(elementOf(1));
    EXPECT_EQ(panel->currentPath(), "/d/docs");
    table().press(elementOf(0));
    EXPECT_EQ(panel->currentPath(), "/d");
}

TEST_F(PanelAccessibleTest, pressingATitleSortsAsAClickOnItDoes) {
    EXPECT_EQ(table().element(0).description, "sorted ascending");
    EXPECT_EQ(table().element(1).description, "");
    table().press(1);
    EXPECT_EQ(panel->sortField(), SortField::size);
    EXPECT_EQ(table().element(1).description, "sorted ascending");
    table().press(1);
    EXPECT_EQ(table().element(1).description, "sorted descending");
    table().press(3);
    EXPECT_EQ(panel->sortField(), SortField::ext);
    EXPECT_EQ(table().element(3).description, "") << "times are not what it sorts by";
}

TEST_F(PanelAccessibleTest, itsRevisionGrowsWithEveryNewOrder) {
    const std::uint64_t before = table().revision();
    panel->moveDown();
    finishWalk("/d/docs", 1);
    EXPECT_EQ(table().revision(), before);
    panel->setSortDirection(SortDirection::descending);
    EXPECT_GT(table().revision(), before);
    const std::uint64_t sorted = table().revision();
    panel->loadDirectory();
    EXPECT_GT(table().revision(), sorted);
}

}  // namespace vantrel::test
