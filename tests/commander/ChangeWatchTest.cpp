#include "commander/ChangeWatch.h"

#include <gtest/gtest.h>

#include <optional>

#include "support/FakeFileManager.h"

namespace vantrel {
namespace {

class ChangeWatchTest : public testing::Test {
protected:
    ChangeWatchTest() {
        files.tellsIdentities = true;
        files.addFolder("/a", "x");
        files.addFolder("/", "b");
    }

    FolderPlace placeOf(const std::string& path) { return {files.identityOf(path), nullptr}; }

    test::FakeFileManager files;
};

TEST_F(ChangeWatchTest, aFolderThatHeldTheItemBeforeOrHoldsItNowIsOutdatedUnderAnyPath) {
    const FolderPlace before = placeOf("/a");
    const ChangeWatch watch(files, {"/a/new"});
    files.clear("/");
    files.addFolder("/", "a");
    const ContentsChange change = watch.afterChange();
    const FolderPlace after = placeOf("/a");
    ASSERT_NE(before.identity, after.identity);
    EXPECT_TRUE(change.outdates("/by/a/link", before));
    EXPECT_TRUE(change.outdates("/by/a/link", after));
}

TEST_F(ChangeWatchTest, anItemThatShouldHaveLeftItsFileSystemAndIsThereMayBeGoneInPart) {
    files.add("/", {.name = "far",
                    .target = PathTarget::directory,
                    .attributes = FileAttributes{},
                    .identity = FileIdentity{9, 1}});
    const ChangeWatch watch(files, {"/a/x", "/far/x"});
    EXPECT_TRUE(watch.afterMove().isInPart());
    EXPECT_TRUE(watch.afterTakingAway().isInPart());
    EXPECT_FALSE(watch.afterChange().isInPart());
    ASSERT_EQ(files.moveItem("/a/x", "/far/x"), std::error_code());
    EXPECT_FALSE(watch.afterMove().isInPart());
}

TEST_F(ChangeWatchTest, anItemThatWasNeverThereIsNotGoneInPart) {
    EXPECT_FALSE(ChangeWatch(files, {"/a/missing", "/b/missing"}).afterTakingAway().isInPart());
}

TEST_F(ChangeWatchTest, onOneFileSystemAnItemIsThereOrGone) {
    files.addFolder("/b", "x");
    const ChangeWatch watch(files, {"/a/x", "/b/x"});
    EXPECT_FALSE(watch.afterMove().isInPart());
    EXPECT_FALSE(watch.afterTakingAway().isInPart()) << "and what has its name in the trash stays as it is";
}

TEST_F(ChangeWatchTest, whereFoldersOnTheWayAreMissingTheNextOneAboveCounts) {
    const FolderPlace place = placeOf("/a/x");
    const ChangeWatch watch(files, {"/a/x/not/yet/there"});
    EXPECT_TRUE(watch.afterChange().outdates("/by/a/link", place));
}

TEST_F(ChangeWatchTest, theFoldersAroundAreThoseToWhichAPathReallyLeads) {
    const FolderPlace place = placeOf("/b");
    const ChangeWatch watch(files, {"/a/x/../../b/new"});
    EXPECT_TRUE(watch.afterChange().outdates("/by/a/link", place));
    EXPECT_FALSE(watch.afterChange().outdates("/by/a/link", placeOf("/a")));
}

TEST_F(ChangeWatchTest, anItemThatWentIsGoneAndOneThatCameIsThere) {
    const ChangeWatch watch(files, {"/a/x", "/b/y"});
    ASSERT_EQ(files.moveItem("/a/x", "/b/y"), std::error_code());
    const ContentsChange change = watch.afterMove();
    EXPECT_TRUE(change.takesAway("/a/x", {}));
    EXPECT_FALSE(change.takesAway("/b/y", {}));
    EXPECT_EQ(change.newPathOf("/a/x/d"), "/b/y/d");
}

TEST_F(ChangeWatchTest, anItemThatStayedOrIsACopyNowWasNotRenamed) {
    const ChangeWatch watch(files, {"/a/x", "/b/y"});
    EXPECT_EQ(watch.afterMove().newPathOf("/a/x"), std::nullopt);
    files.clear("/a");
    files.addFolder("/b", "y");
    EXPECT_EQ(watch.afterMove().newPathOf("/a/x"), std::nullopt);
}

TEST_F(ChangeWatchTest, ofANewPlaceWithDotsInItNothingIsTakenAlong) {
    const ChangeWatch watch(files, {"/a/x", "/a/../b/y"});
    ASSERT_EQ(files.moveItem("/a/x", "/a/../b/y"), std::error_code());
    EXPECT_EQ(watch.afterMove().newPathOf("/a/x"), std::nullopt);
}

}  // namespace
}  // namespace vantrel
