#include "walk/KnownTotals.h"

#include <gtest/gtest.h>

#include "support/ManualCalendar.h"
#include "support/ManualClock.h"

namespace vantrel::test {
namespace {

using namespace std::chrono_literals;

class KnownTotalsTest : public testing::Test {
protected:
    static constexpr FileIdentity folder{1, 20};

    /// A folder that was found, opened and counted at this moment.
    CountedFolder countedNow(const FileIdentity& identity = folder, WalkTotals totals = {4'096, 3}) const {
        return {.identity = identity,
                .totals = totals,
                .entries = 4,
                .unchangedSince = calendar.now(),
                .oldest = calendar.now(),
                .changes = known.changes()};
    }

    std::optional<WalkTotals> find(const FileIdentity& identity = folder) { return find(identity, longAgo); }

    std::optional<WalkTotals> find(const FileIdentity& identity, CalendarTime changed) {
        const auto found = known.find(identity, changed);
        return found ? std::optional(found->totals) : std::nullopt;
    }

    ManualClock clock;
    ManualCalendar calendar{clock};
    KnownTotals known{clock, calendar};
    const CalendarTime longAgo = calendar.now() - 1h;
};

TEST_F(KnownTotalsTest, tellsWhatAWalkHasCounted) {
    EXPECT_EQ(find(), std::nullopt);
    known.remember(countedNow());
    EXPECT_EQ(find(), (WalkTotals{4'096, 3}));
    const auto found = known.find(folder, longAgo);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->entries, 4U);
    EXPECT_EQ(found->oldest, calendar.now());
}

TEST_F(KnownTotalsTest, knowsAFolderByItsDeviceAndItsInode) {
    known.remember(countedNow());
    EXPECT_EQ(find({1, 21}), std::nullopt);
    EXPECT_EQ(find({2, 20}), std::nullopt);
}

TEST_F(KnownTotalsTest, theLatestCountIsTheOneThatIsTold) {
    known.remember(countedNow());
    known.remember(countedNow(folder, {8'192, 5}));
    EXPECT_EQ(find(), (WalkTotals{8'192, 5}));
}

TEST_F(KnownTotalsTest, isBelievedForThreeHundredSecondsFromItsOldestPart) {
    CountedFolder counted = countedNow();
    counted.oldest -= 100s;
    known.remember(counted);
    clock.advance(199.9);
    EXPECT_TRUE(find());
    clock.advance(0.2);
    EXPECT_FALSE(find());
}

TEST_F(KnownTotalsTest, isBelievedWhereTheFolderHadNotChangedForAWhileBeforeItWasFound) {
    clock.advance(0.5);
    const CountedFolder counted = countedNow();
    known.remember(counted);
    EXPECT_TRUE(find(folder, counted.unchangedSince - 20ms - 1ns));
    EXPECT_FALSE(find(folder, counted.unchangedSince - 20ms));
    EXPECT_FALSE(find(folder, counted.unchangedSince + 1h));
}

TEST_F(KnownTotalsTest, aStampInWholeSecondsMayBeAsOldAsThat) {
    const CountedFolder counted = countedNow();  // in a whole second
    known.remember(counted);
    EXPECT_TRUE(find(folder, counted.unchangedSince - 3s));
    EXPECT_FALSE(find(folder, counted.unchangedSince - 2s));
}

TEST_F(KnownTotalsTest, whatHasChangedIsForgottenAndNothingElse) {
    known.remember(countedNow());
    known.remember(countedNow({1, 21}));
    known.forget({{1, 19}, folder});
    EXPECT_FALSE(find());
    EXPECT_TRUE(find({1, 21}));
}

TEST_F(KnownTotalsTest, whatWasReadBeforeAChangeIsNotRememberedAfterIt) {
    const CountedFolder before = countedNow();
    known.forget({{1, 99}});
    known.remember(before);
    EXPECT_FALSE(find());
    known.remember(countedNow());
    EXPECT_TRUE(find());
}

TEST_F(KnownTotalsTest, everythingCanBeForgotten) {
    const CountedFolder before = countedNow();
    known.remember(before);
    known.forgetAll();
    EXPECT_FALSE(find());
    known.remember(before);
    EXPECT_FALSE(find());
}

TEST_F(KnownTotalsTest, aCalendarThatIsSetMakesAllStampsWorthless) {
    for (const Seconds jump : {Seconds(2), Seconds(-2)}) {
        const CountedFolder before = countedNow();
        known.remember(before);
        ASSERT_TRUE(find());
        calendar.jump(jump);
        EXPECT_FALSE(find());
        known.remember(before);
        EXPECT_FALSE(find()) << "what was read before it was set";
        known.remember(countedNow());
        EXPECT_TRUE(find());
    }
}

TEST_F(KnownTotalsTest, aCalendarThatIsSlowlyPutRightIsFollowed) {
    known.remember(countedNow());
    for (int i = 0; i < 10; ++i) {
        calendar.jump(Seconds(0.5));
        EXPECT_TRUE(find());
    }
}

TEST_F(KnownTotalsTest, saysOfEachFolderWhetherALookAtItIsWorthIt) {
    known.remember(countedNow());
    EXPECT_TRUE(known.isKnown(folder));
    for (std::uint64_t inode = 1'000; inode < 2'000; ++inode) EXPECT_FALSE(known.isKnown({1, inode}));
    known.forget({folder});
    EXPECT_FALSE(known.isKnown(folder));
}

TEST_F(KnownTotalsTest, theMoreIsKnownTheLargerAFolderHasToBe) {
    EXPECT_EQ(known.smallest(), 0U);
    std::uint64_t inode = 0;
    const auto rememberUpTo = [&](std::uint64_t end) {
        for (; inode < end; ++inode) known.remember(countedNow({1, inode}));
    };
    rememberUpTo(4'096);
    EXPECT_EQ(known.smallest(), 100U);
    rememberUpTo(16'000);
    EXPECT_EQ(known.smallest(), 1'000U);
    rememberUpTo(40'000);
    EXPECT_EQ(known.smallest(), 10'000U);
    rememberUpTo(60'000);
    EXPECT_EQ(known.smallest(), 100'000U);
    known.forgetAll();
    EXPECT_EQ(known.smallest(), 0U);
}

TEST_F(KnownTotalsTest, whatIsTooOldToBeBelievedMakesRoom) {
    for (int minutes = 0; minutes < 60; minutes += 5) {
        for (std::uint64_t inode = 0; inode < 2'000; ++inode)
            known.remember(countedNow({static_cast<std::uint64_t>(minutes), inode}));
        clock.advance(300);
        EXPECT_EQ(known.smallest(), 0U) << "after " << minutes << " minutes";
    }
}

class KnownTotalsInGreatNumber : public KnownTotalsTest {
protected:
    static constexpr std::uint64_t far = 400'000;

    std::size_t countKnown() {
        std::size_t all = 0;
        for (std::uint64_t inode = 0; inode < far; ++inode) all += find({1, inode}) ? 1 : 0;
        return all;
    }
};

TEST_F(KnownTotalsInGreatNumber, theOldestAreDropped) {
    for (std::uint64_t inode = 0; inode < far; ++inode) known.remember(countedNow({1, inode}));
    EXPECT_FALSE(find({1, 0}));
    EXPECT_TRUE(find({1, far - 1}));
    EXPECT_LE(countKnown(), 80'000U);
}

TEST_F(KnownTotalsInGreatNumber, whatIsAskedForAgainAndAgainStays) {
    known.remember(countedNow());
    for (std::uint64_t inode = 1'000; inode < far; ++inode) {
        known.remember(countedNow({1, inode}));
        if (inode % 10'000 == 0) {
            ASSERT_TRUE(find()) << inode;
        }
    }
}

}  // namespace
}  // namespace vantrel::test
