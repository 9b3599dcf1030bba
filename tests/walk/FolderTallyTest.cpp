#include "walk/FolderTally.h"

#include <gtest/gtest.h>

#include <memory>

#include "support/ManualCalendar.h"
#include "support/ManualClock.h"

namespace vantrel::test {
namespace {

using namespace std::chrono_literals;
using walking::FolderTally;

class FolderTallyTest : public testing::Test {
protected:
    static constexpr std::uint64_t device = 1;
    static constexpr std::uint64_t rootInode = 10;
    static constexpr std::uint64_t childInode = 20;

    std::unique_ptr<FolderTally> found(std::uint64_t inode) const {
        return std::make_unique<FolderTally>(FileIdentity{device, inode}, calendar.now());
    }

    std::unique_ptr<FolderTally> opened(std::uint64_t inode) const {
        auto tally = found(inode);
        tally->willOpen(known);
        tally->didOpen();
        return tally;
    }

    void endChild(std::uint64_t inode, std::int64_t items = 1) {
        const auto child = opened(inode);
        child->add({{items * 512, items}, static_cast<std::uint64_t>(items)});
        child->end(root.get(), known);
    }

    std::optional<WalkTotals> find(std::uint64_t inode) {
        const auto counted = known.find({device, inode}, longAgo);
        return counted ? std::optional(counted->totals) : std::nullopt;
    }

    /// So much that small folders are not worth keeping any more.
    void makeMuchKnown() {
        for (std::uint64_t inode = 1'000'000; known.smallest() < 1'000; ++inode)
            known.remember({.identity = {device, inode}, .oldest = calendar.now()});
    }

    ManualClock clock;
    ManualCalendar calendar{clock};
    KnownTotals known{clock, calendar};
    const CalendarTime longAgo = calendar.now() - 1h;
    std::unique_ptr<FolderTally> root = opened(rootInode);
};

TEST_F(FolderTallyTest, aFolderHoldsWhatItsSubFoldersHoldAndItsOwn) {
    root->add({{1'024, 2}, 2});
    endChild(childInode, 3);
    root->end(nullptr, known);
    EXPECT_EQ(find(childInode), (WalkTotals{1'536, 3}));
    EXPECT_EQ(find(rootInode), (WalkTotals{2'560, 5}));
    EXPECT_EQ(known.find({device, rootInode}, longAgo)->entries, 6U);
}

TEST_F(FolderTallyTest, anEmptyFolderIsAsGoodAsAnyOther) {
    endChild(childInode, 0);
    EXPECT_EQ(find(childInode), WalkTotals());
}

TEST_F(FolderTallyTest, aGapReachesAllFoldersAboveAndNoneBeside) {
    const auto child = opened(childInode);
    const auto grandchild = opened(30);
    grandchild->hasGap();
    grandchild->end(child.get(), known);
    child->end(root.get(), known);
    endChild(21);
    root->end(nullptr, known);
    EXPECT_FALSE(find(30));
    EXPECT_FALSE(find(childInode));
    EXPECT_FALSE(find(rootInode));
    EXPECT_TRUE(find(21));
}

TEST_F(FolderTallyTest, aSubFolderThatNobodyOpenedIsAGap) {
    found(childInode)->end(root.get(), known);
    root->end(nullptr, known);
    EXPECT_FALSE(find(childInode));
    EXPECT_FALSE(find(rootInode));
}

TEST_F(FolderTallyTest, aSubFolderThatIsNotThereIsNone) {
    const auto child = found(childInode);
    child->isAbsent();
    child->end(root.get(), known);
    root->end(nullptr, known);
    EXPECT_FALSE(find(childInode));
    EXPECT_TRUE(find(rootInode));
}

TEST_F(FolderTallyTest, aSubFolderToWhichTheWayIsLostIsAGap) {
    const auto child = found(childInode);
    child->hasGap();
    child->isAbsent();
    child->end(root.get(), known);
    root->end(nullptr, known);
    EXPECT_FALSE(find(rootInode));
}

TEST_F(FolderTallyTest, isAsOldAsItsOldestPart) {
    clock.advance(100);
    endChild(childInode);
    root->end(nullptr, known);
    clock.advance(199);
    EXPECT_TRUE(find(rootInode));
    clock.advance(2);
    EXPECT_FALSE(find(rootInode)) << "it was opened 301 seconds ago";
    EXPECT_TRUE(find(childInode)) << "which was opened later";
}

TEST_F(FolderTallyTest, isAsOldAsTheOldestTotalThatWasTakenOver) {
    clock.advance(1'000);
    root = opened(rootInode);
    const auto child = opened(childInode);
    child->add({{512, 1}, 1, calendar.now() - 250s});
    child->end(root.get(), known);
    root->end(nullptr, known);
    EXPECT_TRUE(find(rootInode));
    clock.advance(51);
    EXPECT_FALSE(find(childInode));
    EXPECT_FALSE(find(rootInode));
}

TEST_F(FolderTallyTest, isBelievedOnlyIfUnchangedSinceItsNameWasRead) {
    const auto child = found(childInode);
    const CalendarTime read = calendar.now();
    clock.advance(60);  // in a queue
    child->willOpen(known);
    child->didOpen();
    child->end(root.get(), known);
    EXPECT_TRUE(known.find({device, childInode}, read - 3s));
    EXPECT_FALSE(known.find({device, childInode}, read + 30s));
}

TEST_F(FolderTallyTest, aFolderThatWasOpenedBeforeAChangeIsNotRemembered) {
    endChild(childInode);
    known.forget({{device, 99}});
    endChild(21);
    root->end(nullptr, known);
    EXPECT_TRUE(find(childInode)) << "the change was elsewhere";
    EXPECT_TRUE(find(21));
    EXPECT_FALSE(find(rootInode));
}

TEST_F(FolderTallyTest, whenMuchIsKnownOnlyTheContentsOfLargeFoldersAreRemembered) {
    makeMuchKnown();
    endChild(childInode, 998);
    EXPECT_FALSE(find(childInode)) << "with 999 entries so far";
    endChild(21, 0);
    EXPECT_TRUE(find(childInode)) << "with 1,000";
    EXPECT_TRUE(find(21));
}

TEST_F(FolderTallyTest, whatASmallFolderHoldsIsDroppedWithIt) {
    makeMuchKnown();
    const auto child = opened(childInode);
    const auto grandchild = opened(30);
    grandchild->end(child.get(), known);
    child->end(root.get(), known);
    root->add({{512'000, 1'000}, 1'000});
    root->end(nullptr, known);
    EXPECT_TRUE(find(childInode));
    EXPECT_FALSE(find(30));
}

TEST_F(FolderTallyTest, whatAnUnfinishedFolderHoldsIsRememberedByItsSize) {
    makeMuchKnown();
    endChild(childInode, 500);
    root->add({{512'000, 1'000}, 1'000});
    root->hasGap();
    root->end(nullptr, known);
    EXPECT_TRUE(find(childInode));
    EXPECT_FALSE(find(rootInode));
}

TEST_F(FolderTallyTest, ofVeryManySubFoldersOnlyTheLargeOnesAreRemembered) {
    for (std::uint64_t inode = 100'000; inode < 111'000; ++inode) endChild(inode);
    endChild(childInode, 1'001);
    EXPECT_TRUE(find(100'000));
    EXPECT_FALSE(find(110'999));
    EXPECT_TRUE(find(childInode));
}

}  // namespace
}  // namespace vantrel::test
