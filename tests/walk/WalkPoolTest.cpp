#include "walk/WalkPool.h"

#include <sys/resource.h>
#include <unistd.h>

#include <thread>

#include "walk/ForwardingReader.h"
#include "walk/WalkFixture.h"

namespace vantrel::test {
namespace {

class WalkPoolRules : public EveryReader {
protected:
    WalkPool::Options singleThread() const {
        auto single = options();
        single.threads = 1;
        return single;
    }
};
VANTREL_FOR_EVERY_READER(WalkPoolRules);

TEST_P(WalkPoolRules, runsManyWalksAtOnce) {
    constexpr int count = 60;
    for (int i = 0; i < count; ++i) {
        const std::string name = std::to_string(i);
        folder.makeFolder(name);
        folder.makeFolder(name + "/sub");
        for (int file = 0; file < i % 5; ++file) folder.makeFile(name + "/sub/" + std::to_string(file));
    }
    WalkPool pool(clock, options());
    std::vector<SubmittedWalk> walks;
    walks.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) walks.push_back(submit(pool, folder.path(std::to_string(i))));
    for (int i = 0; i < count; ++i) EXPECT_EQ(walks[i].record->waitForEnd(), finished(0, i % 5)) << i;
}

TEST_P(WalkPoolRules, takesWalksFromSeveralThreads) {
    folder.makeFile("file");
    WalkPool pool(clock, options());
    std::vector<std::thread> submitters;
    submitters.reserve(4);
    for (int i = 0; i < 4; ++i) {
        submitters.emplace_back([&] {
            for (int k = 0; k < 50; ++k) {
                const auto walk = submit(pool, folder.path());
                if (k % 3 == 0) walk.stop.request_stop();
                const auto end = walk.record->waitForEnd();
                EXPECT_TRUE(end);
                if (end && k % 3 != 0) {
                    EXPECT_EQ(*end, finished(0, 1));
                }
            }
        });
    }
    for (auto& submitter : submitters) submitter.join();
}

// Lets a test hold the pool's only thread while it submits walks.
struct HeldPool {
    HeldPool(const Clock& clock, const TemporaryFolder& folder, WalkPool::Options options)
        : real(options.makeReader) {
        options.makeReader = disturbed<GatedReader>(real, &gate);
        pool = std::make_unique<WalkPool>(clock, options);
        folder.makeFolder("holding");
        folder.makeFile("holding/file");
        holding = submit(*pool, folder.path("holding"));
        EXPECT_TRUE(gate.waitForArrivals(1));
    }

    Gate gate;
    WalkPool::ReaderFactory real;
    std::unique_ptr<WalkPool> pool;
    SubmittedWalk holding;
};

// A walk whose threads stop before each file until the test opens the gate.
struct GatedWalk {
    GatedWalk(const Clock& clock, const TemporaryFolder& folder, WalkPool::Options options) {
        options.makeReader = disturbed<GatedReader>(options.makeReader, &gate);
        pool = std::make_unique<WalkPool>(clock, options);
        walk = submit(*pool, folder.path());
    }

    Gate gate;
    std::unique_ptr<WalkPool> pool;
    SubmittedWalk walk;
};

// Writes down in which order walks end.
class OrderObserver final : public WalkObserver {
public:
    OrderObserver(std::vector<int>& order, int number, std::shared_ptr<WalkRecord> record)
        : order_(order), number_(number), last_(std::move(record)) {}
    void walkDidProgress(WalkTotals) override {}
    void walkDidEnd(WalkOutcome outcome, WalkTotals totals) override {
        order_.push_back(number_);
        last_.walkDidEnd(outcome, totals);
    }

private:
    std::vector<int>& order_;
    int number_;
    RecordingObserver last_;
};

TEST_P(WalkPoolRules, beginsWalksInTheOrderOfSubmission) {
    folder.makeFolder("small");
    HeldPool held(clock, folder, singleThread());
    std::vector<int> order;
    auto record = std::make_shared<WalkRecord>();
    for (int i = 0; i < 20; ++i) {
        held.pool->submit(
            folder.path("small"), {},
            std::make_unique<OrderObserver>(order, i, i == 19 ? record : std::make_shared<WalkRecord>()));
    }
    held.gate.open();
    ASSERT_TRUE(record->waitForDestruction());
    EXPECT_EQ(order,
              (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19}));
}

TEST_P(WalkPoolRules, tellsOfTheBeginningOfWalksThatBegin) {
    HeldPool held(clock, folder, singleThread());
    const SubmittedWalk waiting = submit(*held.pool, folder.path());
    const SubmittedWalk missing = submit(*held.pool, folder.path("missing"));
    const SubmittedWalk cancelled = submit(*held.pool, folder.path());
    cancelled.stop.request_stop();
    EXPECT_EQ(held.holding.record->beginnings(), 1);
    EXPECT_EQ(waiting.record->beginnings(), 0);
    held.gate.open();
    for (const SubmittedWalk& walk : {held.holding, waiting, missing, cancelled}) {
        EXPECT_TRUE(walk.record->waitForEnd());
        EXPECT_EQ(walk.record->beginnings(), walk.stop == cancelled.stop ? 0 : 1);
        EXPECT_FALSE(walk.record->sawDisorder());
    }
}

TEST_P(WalkPoolRules, doesNotLetASmallWalkWaitForALargeOne) {
    folder.makeFolder("small");
    folder.makeFolder("large");
    for (int i = 0; i < 100; ++i) folder.makeFolder("large/" + std::to_string(i));
    HeldPool held(clock, folder, singleThread());
    std::vector<int> order;
    auto large = std::make_shared<WalkRecord>();
    auto small = std::make_shared<WalkRecord>();
    held.pool->submit(folder.path("large"), {}, std::make_unique<OrderObserver>(order, 1, large));
    held.pool->submit(folder.path("small"), {}, std::make_unique<OrderObserver>(order, 2, small));
    held.gate.open();
    ASSERT_TRUE(small->waitForDestruction());
    ASSERT_TRUE(large->waitForDestruction());
    EXPECT_EQ(order, (std::vector<int>{2, 1}));
}

TEST_P(WalkPoolRules, readsOneWideFolderOnSeveralThreads) {
    const std::string filler(250, 'n');
    for (int i = 0; i < 300; ++i) folder.makeFile(std::to_string(i) + filler);
    GatedWalk gated(clock, folder, options());
    // Each thread stops at its first file, so that only further threads can arrive.
    EXPECT_TRUE(gated.gate.waitForArrivals(2));
    gated.gate.open();
    EXPECT_EQ(gated.walk.record->waitForEnd(), finished(0, 300));
}

TEST_P(WalkPoolRules, dealsTheFoldersOfOneWalkToAllThreads) {
    for (int i = 0; i < 4; ++i) {
        const std::string name = "only/" + std::to_string(i);
        if (i == 0) folder.makeFolder("only");
        folder.makeFolder(name);
        folder.makeFile(name + "/file");
    }
    GatedWalk gated(clock, folder, options());
    EXPECT_TRUE(gated.gate.waitForArrivals(4));
    gated.gate.open();
    EXPECT_EQ(gated.walk.record->waitForEnd(), finished(0, 4));
}

TEST_P(WalkPoolRules, handsSubFoldersOutBeforeItLooksAtFiles) {
    folder.makeFile("file");
    folder.makeFolder("inner");
    folder.makeFile("inner/file");
    GatedWalk gated(clock, folder, options());
    // The thread that read the root stops at its file, so that only another can come to the inner one.
    EXPECT_TRUE(gated.gate.waitForArrivals(2));
    gated.gate.open();
    EXPECT_EQ(gated.walk.record->waitForEnd(), finished(0, 2));
}

TEST_P(WalkPoolRules, canStayOnTheFirstLevel) {
    folder.makeFolder("sub");
    folder.makeFile("sub/1");
    folder.makeFile("2");
    folder.makeFile("3");
    WalkPool pool(clock, options());
    auto record = std::make_shared<WalkRecord>();
    pool.submit(folder.path(), {}, std::make_unique<RecordingObserver>(record),
                WalkPool::Reach::ownFilesOnly);
    EXPECT_EQ(record->waitForEnd(), finished(0, 2));
}

TEST_P(WalkPoolRules, destroyingItDestroysTheObserversOfRunningAndWaitingWalks) {
    folder.makeFile("file");
    SubmittedWalk running, waiting;
    Gate gate;
    std::thread opener;
    {
        auto gated = singleThread();
        gated.makeReader = disturbed<GatedReader>(GetParam(), &gate);
        WalkPool pool(clock, gated);
        running = submit(pool, folder.path());
        ASSERT_TRUE(gate.waitForArrivals(1));
        waiting = submit(pool, folder.path());
        opener = std::thread([&gate] { gate.open(); });
    }
    opener.join();
    EXPECT_TRUE(running.record->isDestroyed());
    EXPECT_TRUE(waiting.record->isDestroyed());
    EXPECT_FALSE(running.record->sawDisorder());
    EXPECT_FALSE(waiting.record->sawDisorder());
}

TEST_P(WalkPoolRules, destroyingItDropsWaitingFolders) {
    for (int i = 0; i < 60; ++i) {
        folder.makeFolder(std::to_string(i));
        folder.makeFile(std::to_string(i) + "/file");
    }
    const std::size_t before = openDescriptors();
    std::vector<std::shared_ptr<WalkRecord>> records;
    {
        WalkPool pool(clock, options());
        for (int i = 0; i < 20; ++i) records.push_back(submit(pool, folder.path()).record);
    }
    for (const auto& record : records) EXPECT_TRUE(record->isDestroyed());
    EXPECT_EQ(openDescriptors(), before);
}

TEST_P(WalkPoolRules, survivesATreeThatChangesAllTheTime) {
    folder.makeFolder("stays");
    for (int i = 0; i < 20; ++i) folder.makeFile("stays/" + std::to_string(i));
    std::atomic<bool> done{false};
    std::thread churn([&] {
        while (!done) {
            folder.makeFolder("x");
            folder.makeFile("x/1");
            folder.makeFolder("x/y");
            folder.makeFile("x/y/2");
            ::rename(folder.path("x").c_str(), folder.path("z").c_str());
            ::unlink(folder.path("z/1").c_str());
            ::unlink(folder.path("z/y/2").c_str());
            ::rmdir(folder.path("z/y").c_str());
            ::rmdir(folder.path("z").c_str());
        }
    });
    for (int i = 0; i < 60; ++i) {
        auto scarce = options();
        scarce.descriptorBudget = i % 2;
        const auto end = walk(folder.path(), scarce);
        ASSERT_TRUE(end);
        EXPECT_EQ(end->outcome, WalkOutcome::finished);
        EXPECT_GE(end->totals.items, 20);
        EXPECT_LE(end->totals.items, 24) << "an entry that is renamed during the walk may be met twice";
    }
    done = true;
    churn.join();
}

TEST(WalkPoolOptions, chooseBetweenEightAndThirtyTwoThreads) {
    EXPECT_GE(WalkPool::recommendedThreads(), 8U);
    EXPECT_LE(WalkPool::recommendedThreads(), 32U);
}

TEST(WalkPoolOptions, leaveHalfOfTheDescriptorsToOthers) {
    rlimit former{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &former), 0);
    const rlimit lowered{1024, former.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &lowered), 0);
    EXPECT_EQ(descriptorBudgetOfWalks(), 512);
    ::setrlimit(RLIMIT_NOFILE, &former);
}

}  // namespace
}  // namespace vantrel::test
