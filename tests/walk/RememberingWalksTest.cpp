#include <gmock/gmock.h>

#include <chrono>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "support/ManualCalendar.h"
#include "walk/ForwardingReader.h"
#include "walk/KnownTotals.h"
#include "walk/WalkFixture.h"

// What walks on real folders leave behind, and what they need not count again.

namespace vantrel::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// What a test makes of a reader's answers, and what was asked.
struct Disturbance {
    std::map<std::string, std::errc> opening;    ///< of the folders with these names
    std::map<std::string, std::errc> measuring;  ///< of the entries with these names
    std::set<std::string> breakingOff;           ///< folders that cannot be read
    std::optional<walking::FolderTrust> trust;
    std::map<std::string, CalendarTime> changed;
    std::set<std::string> mounts;
    std::function<void(const std::string&)> onOpen;
    std::vector<std::string> entered;  ///< names of folders that were opened
};

class DisturbedReader final : public ForwardingReader {
public:
    DisturbedReader(std::unique_ptr<DirectoryReader> real, Disturbance* disturbance)
        : ForwardingReader(std::move(real)), disturbance_(*disturbance) {}

    Result<FileDescriptor> openFolder(int parent, const char* name, walking::Volume& volume) override {
        if (disturbance_.onOpen) disturbance_.onOpen(name);
        if (const auto error = disturbance_.opening.find(name); error != disturbance_.opening.end())
            return std::make_error_code(error->second);
        disturbance_.entered.emplace_back(name);
        return ForwardingReader::openFolder(parent, name, volume);
    }
    walking::Batch read(int folder, walking::DirectoryStream* stream) override {
        if (!disturbance_.entered.empty() && disturbance_.breakingOff.contains(disturbance_.entered.back()))
            return walking::Batch::failed;
        return ForwardingReader::read(folder, stream);
    }
    std::error_code measure(int folder, const char* name, walking::Measure& measure) override {
        if (const auto error = disturbance_.measuring.find(name); error != disturbance_.measuring.end())
            return std::make_error_code(error->second);
        return ForwardingReader::measure(folder, name, measure);
    }
    Result<walking::FolderLook> look(int folder, const char* name) override {
        auto look = ForwardingReader::look(folder, name);
        if (!look) return look;
        walking::FolderLook seen = *look;
        if (const auto changed = disturbance_.changed.find(name); changed != disturbance_.changed.end())
            seen.changed = changed->second;
        if (disturbance_.mounts.contains(name)) seen.isMountPoint = true;
        return seen;
    }
    walking::FolderTrust trust(int folder) override {
        return disturbance_.trust.value_or(ForwardingReader::trust(folder));
    }

private:
    Disturbance& disturbance_;
};

/// By the walks' calendar everything was made an hour ago, and no change made by the test is seen in a
/// folder: only what is told.
class RememberingWalks : public testing::Test {
protected:
    RememberingWalks() {
        for (const char* name : {"a", "a/b", "a/b/c", "d"}) folder.makeFolder(name);
        for (const char* name : {"1", "a/2", "a/b/3", "a/b/c/4", "d/5"}) folder.makeFile(name, "content");
    }

    /// One walk by one thread, so that things happen in the same order each time.
    std::optional<WalkRecord::End> walk(const std::string& root) {
        disturbance.entered.clear();
        WalkPool pool(clock, options());
        const SubmittedWalk walk = submit(pool, root);
        return walk.record->waitForEnd();
    }
    std::optional<WalkRecord::End> walk() { return walk(folder.path()); }

    WalkPool::Options options() {
        auto options = nativeWalks();
        options.threads = 1;
        options.known = &known;
        options.makeReader = disturbed<DisturbedReader>(makeNativeReader, &disturbance);
        return options;
    }

    FileIdentity identityOf(const std::string& name) const {
        struct stat status {};
        EXPECT_EQ(::stat(folder.path(name).c_str(), &status), 0) << name;
        return {status.st_dev, status.st_ino};
    }

    /// How many items the folder is known to hold.
    std::optional<std::int64_t> items(const std::string& name) {
        const auto found = known.find(identityOf(name), calendar.now() - 1h);
        return found ? std::optional(found->totals.items) : std::nullopt;
    }

    /// The names of those that are known.
    std::vector<std::string> knownFolders() {
        std::vector<std::string> all;
        for (const char* name : {".", "a", "a/b", "a/b/c", "d"}) {
            if (items(name)) all.emplace_back(name);
        }
        return all;
    }

    TemporaryFolder folder;
    ManualClock clock;
    ManualCalendar calendar{clock, anHourAheadOf(clock)};
    KnownTotals known{clock, calendar};
    Disturbance disturbance;
};

TEST_F(RememberingWalks, leaveTheTotalOfEveryFolder) {
    const auto end = walk();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->totals.items, 5);
    EXPECT_EQ(items("."), 5);
    EXPECT_EQ(items("a"), 3);
    EXPECT_EQ(items("a/b"), 2);
    EXPECT_EQ(items("a/b/c"), 1);
    EXPECT_EQ(items("d"), 1);
    EXPECT_EQ(known.find(identityOf("a"), calendar.now() - 1h)->totals.bytes,
              allocatedBytes(folder.path("a/2")) + allocatedBytes(folder.path("a/b/3")) +
                  allocatedBytes(folder.path("a/b/c/4")));
}

TEST_F(RememberingWalks, doNotEnterWhatIsKnown) {
    walk(folder.path("a/b"));
    EXPECT_THAT(disturbance.entered, ElementsAre("c"));
    const auto end = walk();
    EXPECT_THAT(disturbance.entered, UnorderedElementsAre("a", "d"));
    ASSERT_TRUE(end);
    EXPECT_EQ(end->totals.items, 5);
    EXPECT_EQ(walk(), end);
    EXPECT_THAT(disturbance.entered, IsEmpty());
}

TEST_F(RememberingWalks, takeOverWhatIsKnownAlsoWhereTheirDirectoriesDoNotTellKinds) {
    const auto right = walk();
    disturbance.entered.clear();
    auto silent = options();
    silent.makeReader = disturbed<SilentAboutKinds>(silent.makeReader);
    WalkPool pool(clock, silent);
    const SubmittedWalk walk = submit(pool, folder.path());
    EXPECT_EQ(walk.record->waitForEnd(), right);
    EXPECT_THAT(disturbance.entered, IsEmpty());
}

TEST_F(RememberingWalks, lookAtEachFolderWhereItsDirectoryMayNameAnother) {
    disturbance.trust = walking::FolderTrust::looks;
    const auto end = walk();
    EXPECT_EQ(items("a"), 3);
    EXPECT_EQ(walk(), end);
    EXPECT_THAT(disturbance.entered, IsEmpty());
}

TEST_F(RememberingWalks, leaveNothingWhereTheFileSystemCannotBeTrusted) {
    disturbance.trust = walking::FolderTrust::none;
    const auto end = walk();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->totals.items, 5);
    EXPECT_THAT(knownFolders(), IsEmpty());
}

TEST_F(RememberingWalks, enterAFolderThatHasChanged) {
    walk();
    disturbance.changed["a"] = calendar.now();
    const auto end = walk();
    EXPECT_THAT(disturbance.entered, ElementsAre("a"));
    EXPECT_EQ(end->totals.items, 5);
}

TEST_F(RememberingWalks, doNotTakeWhatIsMountedForWhatWasCounted) {
    walk();
    disturbance.mounts = {"a"};
    walk();
    EXPECT_THAT(disturbance.entered, ElementsAre("a"));
}

TEST_F(RememberingWalks, enterWhatWasCountedTooLongAgo) {
    walk();
    clock.advance(301);
    walk();
    EXPECT_THAT(disturbance.entered, UnorderedElementsAre("a", "b", "c", "d"));
}

TEST_F(RememberingWalks, tellHowOldTheOldestTotalWas) {
    walk(folder.path("a/b"));
    clock.advance(100);
    walk(folder.path("d"));
    clock.advance(50);
    WalkPool pool(clock, options());
    const SubmittedWalk last = submit(pool, folder.path());
    ASSERT_TRUE(last.record->waitForEnd());
    ASSERT_TRUE(last.record->age());
    EXPECT_NEAR(last.record->age()->count(), 150, 0.01);
    clock.advance(140);
    EXPECT_EQ(items("."), 5);
    clock.advance(20);
    EXPECT_FALSE(items(".")) << "a part of it is 310 seconds old";
    EXPECT_FALSE(items("a"));
    EXPECT_TRUE(items("d"));
}

TEST_F(RememberingWalks, sayNothingOfAgeWhereNothingWasTakenOver) {
    WalkPool pool(clock, options());
    const SubmittedWalk first = submit(pool, folder.path());
    ASSERT_TRUE(first.record->waitForEnd());
    EXPECT_FALSE(first.record->age());
}

TEST_F(RememberingWalks, doNotRememberAFolderThatCannotBeOpenedNorThoseAbove) {
    disturbance.opening["b"] = std::errc::permission_denied;
    walk();
    EXPECT_THAT(knownFolders(), ElementsAre("d"));
}

TEST_F(RememberingWalks, doNotRememberAFolderThatALinkHasTakenThePlaceOf) {
    disturbance.opening["b"] = std::errc::too_many_symbolic_link_levels;
    walk();
    EXPECT_THAT(knownFolders(), ElementsAre("d"));
}

TEST_F(RememberingWalks, doNotRememberAFolderWhoseEntriesCannotBeRead) {
    disturbance.breakingOff = {"c"};
    walk();
    EXPECT_THAT(knownFolders(), ElementsAre("d"));
}

TEST_F(RememberingWalks, doNotRememberAFolderWithAFileThatCannotBeMeasured) {
    disturbance.measuring["3"] = std::errc::io_error;
    walk();
    EXPECT_THAT(knownFolders(), ElementsAre("a/b/c", "d"));
}

TEST_F(RememberingWalks, missNothingWhereSomethingHasGoneOnTheWay) {
    disturbance.opening["c"] = std::errc::no_such_file_or_directory;
    disturbance.measuring["2"] = std::errc::no_such_file_or_directory;
    walk();
    EXPECT_EQ(items("a"), 1);
    EXPECT_FALSE(items("a/b/c"));
}

TEST_F(RememberingWalks, doNotRememberWhatIsMountedBelow) {
    disturbance.opening["b"] = std::errc::cross_device_link;
    walk();
    EXPECT_EQ(items("a"), 1);
    EXPECT_FALSE(items("a/b"));
}

TEST_F(RememberingWalks, aCancelledWalkKeepsWhatItHadFinished) {
    SubmittedWalk cancelled;
    std::vector<std::string> finishedBefore;
    // The thread gets no further than to the fourth folder.
    disturbance.onOpen = [&](const std::string&) {
        if (disturbance.entered.size() < 3) return;
        finishedBefore = knownFolders();
        cancelled.stop.request_stop();
    };
    WalkPool pool(clock, options());
    pool.submit(folder.path(), cancelled.stop.get_token(),
                std::make_unique<RecordingObserver>(cancelled.record));
    const auto end = cancelled.record->waitForEnd();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->outcome, WalkOutcome::cancelled);
    ASSERT_THAT(finishedBefore, testing::Not(IsEmpty()));
    EXPECT_THAT(knownFolders(), testing::IsSupersetOf(finishedBefore));
    EXPECT_FALSE(items("."));
    disturbance.onOpen = {};
    EXPECT_EQ(walk()->totals.items, 5);
    EXPECT_THAT(disturbance.entered, testing::Not(testing::Contains(finishedBefore.front())));
}

TEST_F(RememberingWalks, whatOneHasFinishedIsKnownWhileItGoesOn) {
    std::vector<std::string> early;
    disturbance.onOpen = [&](const std::string&) { early = knownFolders(); };
    walk();
    EXPECT_THAT(early, testing::Not(IsEmpty())) << "before the last folder was opened";
    EXPECT_THAT(early, testing::Not(testing::Contains(".")));
}

TEST_F(RememberingWalks, doNotRememberWhatTheyOpenedBeforeAChange) {
    disturbance.onOpen = [&](const std::string& name) {
        if (name == "b") known.forget({identityOf("d")});
    };
    walk();
    EXPECT_TRUE(items("a/b/c")) << "opened after it";
    EXPECT_FALSE(items("a/b"));
    EXPECT_FALSE(items("a"));
    EXPECT_FALSE(items("."));
}

TEST_F(RememberingWalks, rememberNothingOfARootsOwnFilesAlone) {
    WalkPool pool(clock, options());
    const SubmittedWalk walk;
    pool.submit(folder.path(), {}, std::make_unique<RecordingObserver>(walk.record),
                WalkPool::Reach::ownFilesOnly);
    EXPECT_EQ(walk.record->waitForEnd()->totals.items, 1);
    EXPECT_FALSE(items("."));
}

TEST_F(RememberingWalks, reachAFolderByAnyPath) {
    folder.makeLink("link", folder.path("a"));
    walk(folder.path("link"));
    walk();
    EXPECT_THAT(disturbance.entered, ElementsAre("d"));
}

TEST_F(RememberingWalks, aFolderThatWasMovedTakesWhatIsBelowAlong) {
    walk();
    ASSERT_EQ(::rename(folder.path("a").c_str(), folder.path("d/e").c_str()), 0);
    known.forget({identityOf("."), identityOf("d"), identityOf("d/e")});
    EXPECT_EQ(walk()->totals.items, 5);
    EXPECT_THAT(disturbance.entered, UnorderedElementsAre("d", "e"));
}

}  // namespace
}  // namespace vantrel::test
