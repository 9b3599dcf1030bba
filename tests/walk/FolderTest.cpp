#include "walk/Folder.h"

#include <fcntl.h>

#include "support/ManualCalendar.h"
#include "support/ManualClock.h"
#include "walk/FolderQueue.h"
#include "walk/RecordingObserver.h"
#include "walk/RunningWalk.h"

namespace vantrel::test {
namespace {

using namespace walking;

FileDescriptor openRoot() {
    return FileDescriptor(::open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

class FolderHandles : public testing::Test {
protected:
    FolderReference adoptedBy(Folder& parent) const {
        std::vector<FolderReference> children;
        children.push_back(Folder::make(parent.walk(), "child"));
        parent.adopt(children);
        return std::move(children.back());
    }

    std::shared_ptr<WalkRecord> record = std::make_shared<WalkRecord>();
    ManualClock clock;
    FolderReference root = Folder::makeRoot(std::make_unique<RunningWalk>(
        WalkRequest{"/", {}, std::make_unique<RecordingObserver>(record)}, clock, std::stop_token()));
};

TEST_F(FolderHandles, aWalkEndsWithTheLastReferenceToItsRoot) {
    FolderReference other = root.again();
    root = {};
    EXPECT_EQ(record->end(), std::nullopt);
    other = {};
    EXPECT_EQ(record->end(), (WalkRecord::End{WalkOutcome::finished, {}}));
    EXPECT_TRUE(record->isDestroyed());
}

TEST_F(FolderHandles, aFolderLastsAsLongAsItsSubFolders) {
    FolderReference child = adoptedBy(*root);
    root = {};
    EXPECT_EQ(record->ends(), 0);
    child = {};
    EXPECT_EQ(record->ends(), 1);
}

TEST_F(FolderHandles, aFolderThatNobodyAdoptedEndsNothingButItself) {
    Folder::make(root->walk(), "child");
    EXPECT_EQ(record->ends(), 0);
}

TEST_F(FolderHandles, aDescriptorIsOpenUntilTheLastUseOfItEnds) {
    FolderUse reader = root->opened(openRoot());
    FolderUse other = reader.again();
    reader = {};
    EXPECT_NE(::fcntl(other.descriptor(), F_GETFD), -1);
    EXPECT_TRUE(root->tryUse());
    other = {};
    EXPECT_FALSE(root->tryUse());
}

TEST_F(FolderHandles, aDescriptorIsOpenUntilTheLastSubFolderIsOpened) {
    FolderUse reader = root->opened(openRoot());
    const FolderReference child = adoptedBy(*root);
    FolderReference dropped = adoptedBy(*root);
    reader = {};
    dropped = {};
    EXPECT_TRUE(root->tryUse());
    const FolderUse opened = child->opened(openRoot());
    EXPECT_FALSE(root->tryUse());
}

TEST_F(FolderHandles, aDescriptorCanBeGivenUpAlthoughASubFolderWaits) {
    DescriptorBudget budget(1);
    FolderUse reader = root->opened(openRoot());
    const auto identity = identify(reader.descriptor());
    const FolderReference child = adoptedBy(*root);
    reader.keepWithin(budget);
    reader.keepWithin(budget);
    EXPECT_TRUE(budget.isUsedUp());
    reader.giveUp();
    EXPECT_FALSE(reader);
    EXPECT_FALSE(root->tryUse());
    EXPECT_FALSE(budget.isUsedUp());
    EXPECT_EQ(root->identity(), identity);
}

TEST_F(FolderHandles, aDescriptorIsNotGivenUpWhileOthersUseIt) {
    FolderUse reader = root->opened(openRoot());
    const FolderUse other = reader.again();
    reader.giveUp();
    EXPECT_TRUE(reader);
    EXPECT_NE(::fcntl(other.descriptor(), F_GETFD), -1);
}

TEST_F(FolderHandles, aVisitThatIsReplacedEndsItsUseBeforeItsFolder) {
    FolderUse reader = root->opened(openRoot());
    Visit visit(std::move(root), std::move(reader), nullptr);
    visit = {};
    EXPECT_EQ(record->ends(), 1);
    EXPECT_FALSE(visit);
}

/// What a folder that was read to its end leaves, or does not.
class RememberedFolders : public FolderHandles {
protected:
    std::optional<CountedFolder> afterTheEndOfARoot(bool isPoolDestroyed) {
        constexpr FileIdentity identity{1, 20};
        FolderReference root = Folder::makeRoot(std::make_unique<RunningWalk>(
            WalkRequest{
                .root = "/", .observer = std::make_unique<RecordingObserver>(record), .known = &known},
            clock, poolStop.get_token()));
        root->tally()->setIdentity(identity);
        root->tally()->willOpen(known);
        root->tally()->didOpen();
        if (isPoolDestroyed) poolStop.request_stop();
        root = {};
        return known.find(identity, calendar.now() - std::chrono::hours(1));
    }

    ManualCalendar calendar{clock};
    KnownTotals known{clock, calendar};
    std::stop_source poolStop;
};

TEST_F(RememberedFolders, areThoseThatWereReadToTheirEnd) {
    EXPECT_TRUE(afterTheEndOfARoot(false));
}

TEST_F(RememberedFolders, areNoneOfAPoolThatIsBeingDestroyed) {
    EXPECT_FALSE(afterTheEndOfARoot(true));
}

}  // namespace
}  // namespace vantrel::test
