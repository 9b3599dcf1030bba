#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/PanelFixture.h"

// The sizes on show when files are changed and the panel is not loaded anew.

namespace vantrel {
namespace {

using testing::ElementsAre;

class OvPanelViewChanges : public test::PanelTest {
protected:
    OvPanelViewChanges() {
        for (const char* name : {"a", "b", "c"}) desktop.files.addFolder("/d", name);
    }

    void showCounted() {
        panel->setCurrentPath("/d");
        desktop.walks.finishAll({100, 1});
        desktop.mainQueue.runAll();
    }

    void change(const std::string& path,
                ContentsChange::Afterwards afterwards = ContentsChange::Afterwards::there) {
        const ContentsChange change({{.path = path, .afterwards = afterwards}});
        desktop.engine->contentsDidChange(change);
        panel->contentsDidChange(change);
    }

    VantrelState state(const std::string& name) const { return item(name)->vantrelState; }
};

TEST_F(OvPanelViewChanges, aRowAboveAChangeIsAskedForAgainWithoutAReload) {
    showCounted();
    change("/d/b/deep/down");
    EXPECT_THAT(desktop.files.listedFolders, ElementsAre("/d"));
    ASSERT_THAT(desktop.walks.roots(), ElementsAre("/d/a", "/d/b", "/d/c", "/d/b"));
    finishWalk("/d/b", 60);
    EXPECT_EQ(state("b"), VantrelState(state::Calculated{60, 1}));
    EXPECT_EQ(state("a"), VantrelState(state::Calculated{100, 1}));
}

TEST_F(OvPanelViewChanges, untilItsNewTotalArrivesARowCountsWithItsOldOneAndItsSpinnerTurns) {
    showCounted();
    panel->setSortField(SortField::size);
    host.redraws = 0;
    change("/d/b/x");
    EXPECT_EQ(state("b"), VantrelState(state::Calculating{100, 1}));
    EXPECT_TRUE(panel->isCalculatingSizes());
    EXPECT_GT(host.redraws, 0);
}

TEST_F(OvPanelViewChanges, aNewTotalMovesItsRowInAnOrderBySize) {
    showCounted();
    panel->setSortField(SortField::size);
    change("/d/a/x");
    finishWalk("/d/a", 60);
    EXPECT_THAT(names(), ElementsAre("..", "b", "c", "a"));
}

TEST_F(OvPanelViewChanges, aTotalFromBeforeTheChangeThatWaitsInTheMainQueueDoesNotArrive) {
    panel->setCurrentPath("/d");
    desktop.walks.walkOf("/d/b").finish({100, 1});
    change("/d/b/x");
    desktop.mainQueue.runAll();
    EXPECT_EQ(state("b"), VantrelState(state::Calculating{0, 0}));
    finishWalk("/d/b", 60);
    EXPECT_EQ(state("b"), VantrelState(state::Calculated{60, 1}));
}

TEST_F(OvPanelViewChanges, aWalkFromBeforeTheChangeIsNotWaitedFor) {
    panel->setCurrentPath("/d");
    desktop.walks.walks[1].progress({70, 1});
    change("/d/b/x");
    ASSERT_EQ(desktop.walks.walks.size(), 4U);
    desktop.walks.walks[1].finishWithoutLooking({100, 1});
    desktop.walks.walks[3].finish({60, 1});
    desktop.mainQueue.runAll();
    EXPECT_EQ(state("b"), VantrelState(state::Calculated{60, 1}));
}

TEST_F(OvPanelViewChanges, rowsBesideAChangeAreLeftInPeace) {
    showCounted();
    change("/d/file");
    change("/elsewhere/x");
    EXPECT_EQ(desktop.walks.walks.size(), 3U);
    EXPECT_FALSE(panel->isCalculatingSizes());
}

TEST_F(OvPanelViewChanges, whatAFailedChangeMayHaveLeftInARowIsCountedToo) {
    showCounted();
    change("/d/b");
    EXPECT_EQ(desktop.walks.walks.size(), 4U);
    EXPECT_EQ(desktop.walks.walks.back().root, "/d/b");
}

TEST_F(OvPanelViewChanges, aRowWhoseFolderIsGoneKeepsItsLastTotal) {
    showCounted();
    change("/d/b", ContentsChange::Afterwards::gone);
    EXPECT_EQ(desktop.walks.walks.size(), 3U);
    EXPECT_EQ(state("b"), VantrelState(state::Calculated{100, 1}));
}

TEST_F(OvPanelViewChanges, aRowThatIsShownThroughALinkIsKnownByItsFolder) {
    DirectoryEntry link = test::folderEntry("link");
    link.attributes->link = LinkKind::symbolicLink;
    link.identity = FileIdentity{.device = 1, .inode = 20};
    desktop.files.add("/d", link);
    showCounted();
    const ContentsChange change({{.path = "/real/x", .above = {*link.identity}}});
    desktop.engine->contentsDidChange(change);
    panel->contentsDidChange(change);
    ASSERT_EQ(desktop.walks.walks.size(), 5U);
    EXPECT_EQ(desktop.walks.walks.back().root, "/d/link");
}

TEST_F(OvPanelViewChanges, aFolderThatTookTheNameOfACountedOneIsCountedItself) {
    DirectoryEntry entry = test::folderEntry("x");
    entry.identity = FileIdentity{.device = 1, .inode = 20};
    desktop.files.add("/e", entry);
    panel->setCurrentPath("/e");
    finishWalk("/e/x", 100);
    desktop.files.clear("/e");
    entry.identity = FileIdentity{.device = 1, .inode = 21};
    desktop.files.add("/e", entry);
    panel->loadDirectory();
    desktop.mainQueue.runAll();
    EXPECT_EQ(desktop.walks.walks.size(), 2U);
    EXPECT_TRUE(isCalculating(state("x")));
}

TEST_F(OvPanelViewChanges, thousandsOfRowsAreAskedForAgainOnceEach) {
    for (int number = 0; number < 3'000; ++number) desktop.files.addFolder("/d", std::to_string(number));
    showCounted();
    change("/d/7/x");
    change("/d/8/x");
    EXPECT_EQ(desktop.walks.walks.size(), 3'005U);
    change("/d");
    EXPECT_EQ(desktop.walks.walks.size(), 3'005U + 3'003U);
}

}  // namespace
}  // namespace vantrel
