#include "walk/ForwardingReader.h"
#include "walk/WalkFixture.h"

namespace vantrel::test {
namespace {

// Zero when a walk begins, `later` ever after.
class TwoTimesClock final : public Clock {
public:
    explicit TwoTimesClock(double later) : later_(later) {}
    Seconds now() const override { return Seconds(begun_.exchange(true) ? later_ : 0.0); }

private:
    const double later_;
    mutable std::atomic<bool> begun_{false};
};

class WalkReporting : public EveryReader {
protected:
    void makeFiles(int count, const std::string& where = {}) const {
        for (int i = 0; i < count; ++i) folder.makeFile(where + std::to_string(i));
    }

    std::vector<WalkTotals> progressBy(const Clock& time) const { return progressBy(time, options()); }

    std::vector<WalkTotals> progressBy(const Clock& time, const WalkPool::Options& chosen) const {
        WalkPool pool(time, chosen);
        const auto walk = submit(pool, folder.path());
        EXPECT_TRUE(walk.record->waitForEnd());
        return walk.record->progress();
    }
};
VANTREL_FOR_EVERY_READER(WalkReporting);

TEST_P(WalkReporting, isSilentWithinTheFirstTenthOfASecond) {
    makeFiles(50);
    EXPECT_EQ(progressBy(TwoTimesClock(0.1)).size(), 0U) << "only after more than 0.1 seconds";
}

TEST_P(WalkReporting, comesOnceWhenMoreThanATenthOfASecondHasPassedOnce) {
    makeFiles(50);
    EXPECT_EQ(progressBy(TwoTimesClock(0.1001)), (std::vector<WalkTotals>{{0, 1}}));
}

TEST_P(WalkReporting, comesAfterFoldersToo) {
    folder.makeFolder("a");
    EXPECT_EQ(progressBy(TwoTimesClock(1)), (std::vector<WalkTotals>{{0, 0}}));
}

TEST_P(WalkReporting, doesNotComeForLinks) {
    folder.makeLink("a", "nowhere");
    EXPECT_TRUE(progressBy(TwoTimesClock(1)).empty());
    auto silent = options();
    silent.makeReader = disturbed<SilentAboutKinds>(GetParam());
    EXPECT_TRUE(progressBy(TwoTimesClock(1), silent).empty()) << "nor where only a look tells that it is one";
}

TEST_P(WalkReporting, neverFallsAndEndsWithTheTotals) {
    for (const char* name : {"a/", "b/", "c/", "d/"}) {
        folder.makeFolder(name);
        for (int i = 0; i < 50; ++i) folder.makeFile(name + std::to_string(i), "x");
    }
    const std::int64_t each = allocatedBytes(folder.path("a/0"));
    const HurryingClock hurrying;
    WalkPool pool(hurrying, options());
    const auto walk = submit(pool, folder.path());
    EXPECT_EQ(walk.record->waitForEnd(), finished(200 * each, 200));
    EXPECT_FALSE(walk.record->sawDisorder()) << "calls come one at a time, the end last";
    const auto progress = walk.record->progress();
    ASSERT_FALSE(progress.empty());
    WalkTotals before;
    for (const WalkTotals& totals : progress) {
        EXPECT_GE(totals.items, before.items);
        EXPECT_EQ(totals.bytes, totals.items * each) << "bytes and items belong together";
        before = totals;
    }
    EXPECT_LE(before.items, 200);
}

TEST_P(WalkReporting, isSilentOnceTheWalkIsCancelled) {
    makeFiles(200);
    const HurryingClock hurrying;
    WalkPool pool(hurrying, options());
    std::stop_source stop;
    auto record = std::make_shared<WalkRecord>();
    pool.submit(
        folder.path(), stop.get_token(),
        std::make_unique<RecordingObserver>(record, [stop](WalkTotals) mutable { stop.request_stop(); }));
    const auto end = record->waitForEnd();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->outcome, WalkOutcome::cancelled);
    EXPECT_EQ(record->progress().size(), 1U);
    EXPECT_TRUE(record->waitForDestruction());
    EXPECT_EQ(record->ends(), 1);
}

TEST_P(WalkReporting, aCancelledWalkStopsWithinOneEntryPerThread) {
    for (const char* name : {"a/", "b/", "c/", "d/", "e/"}) {
        folder.makeFolder(name);
        makeFiles(20, name);
    }
    CountingReader::Counts counts;
    auto counting = options();
    counting.makeReader = disturbed<CountingReader>(GetParam(), &counts);
    const HurryingClock hurrying;
    WalkPool pool(hurrying, counting);
    std::stop_source stop;
    auto record = std::make_shared<WalkRecord>();
    int atCancelling = 0;
    pool.submit(folder.path(), stop.get_token(),
                std::make_unique<RecordingObserver>(record, [&](WalkTotals soFar) {
                    if (soFar.items < 10 || stop.stop_requested()) return;
                    stop.request_stop();
                    atCancelling = counts.measures;
                }));
    ASSERT_TRUE(record->waitForEnd());
    EXPECT_GT(atCancelling, 0);
    EXPECT_LE(counts.measures, atCancelling + 4);
}

TEST_P(WalkReporting, aWalkCancelledBeforeItBeginsOpensNothing) {
    makeFiles(3);
    CountingReader::Counts counts;
    auto counting = options();
    counting.makeReader = disturbed<CountingReader>(GetParam(), &counts);
    WalkPool pool(clock, counting);
    std::stop_source stop;
    auto record = std::make_shared<WalkRecord>();
    stop.request_stop();
    pool.submit(folder.path(), stop.get_token(), std::make_unique<RecordingObserver>(record));
    EXPECT_EQ(record->waitForEnd(), (WalkRecord::End{WalkOutcome::cancelled, {0, 0}}));
    EXPECT_EQ(counts.roots, 0);
}

TEST_P(WalkReporting, aWalkCancelledBeforeAnUnreadableRootIsCancelled) {
    WalkPool pool(clock, options());
    std::stop_source stop;
    auto record = std::make_shared<WalkRecord>();
    stop.request_stop();
    pool.submit(folder.path("nothing"), stop.get_token(), std::make_unique<RecordingObserver>(record));
    EXPECT_EQ(record->waitForEnd(), (WalkRecord::End{WalkOutcome::cancelled, {0, 0}}));
}

}  // namespace
}  // namespace vantrel::test
