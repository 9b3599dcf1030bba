#include <sys/resource.h>
#include <sys/wait.h>

#include <atomic>
#include <cerrno>
#include <filesystem>

#include "support/OwnNamespaces.h"
#include "support/SystemCallFaults.h"
#include "walk/WalkFixture.h"

// What becomes of walks when the system starts no further threads.

namespace vantrel::test {
namespace {

class WalkThreads : public EveryReader {
protected:
    WalkThreads() {
        for (int i = 0; i < 20; ++i) {
            const std::string name = "d" + std::to_string(i);
            folder.makeFolder(name);
            folder.makeFolder(name + "/sub");
            for (int file = 0; file < 10; ++file) folder.makeFile(name + "/sub/" + std::to_string(file));
        }
    }

    /// Lets the system start so many threads and no more; counts the attempts.
    SystemCallFaults::Plan onlySoMany(int threads) {
        return [this, threads](std::string_view call) {
            return call == "pthread_create" && attempts++ >= threads ? EAGAIN : 0;
        };
    }

    std::atomic<int> attempts{0};
};
VANTREL_FOR_EVERY_READER(WalkThreads);

TEST_P(WalkThreads, walksGoOnWithTheThreadsThatTheyHave) {
    for (const int threads : {1, 2, 3}) {
        attempts = 0;
        const SystemCallFaults faults(onlySoMany(threads));
        WalkPool pool(clock, options());
        std::vector<SubmittedWalk> walks;
        walks.reserve(20);
        for (int i = 0; i < 20; ++i) walks.push_back(submit(pool, folder.path("d" + std::to_string(i))));
        const SubmittedWalk all = submit(pool, folder.path());
        for (const SubmittedWalk& walk : walks) EXPECT_EQ(walk.record->waitForEnd(), finished(0, 10));
        EXPECT_EQ(all.record->waitForEnd(), finished(0, 200));
    }
}

TEST_P(WalkThreads, aRefusedThreadIsNotAskedForAtEveryFolder) {
    const SystemCallFaults faults(onlySoMany(1));
    WalkPool pool(clock, options());
    EXPECT_EQ(submit(pool, folder.path()).record->waitForEnd(), finished(0, 200));
    EXPECT_LE(attempts, 2) << "the clock stands still";
}

TEST_P(WalkThreads, aRefusedThreadIsStartedLaterOn) {
    WalkPool pool(clock, options());
    SubmittedWalk waiting;
    {
        const SystemCallFaults faults(onlySoMany(0));
        waiting = submit(pool, folder.path());
        clock.advance(1);
        EXPECT_TRUE(pool.catchUp(Seconds(0)));
    }
    EXPECT_EQ(attempts, 2);
    EXPECT_EQ(waiting.record->end(), std::nullopt);
    clock.advance(1);
    EXPECT_FALSE(pool.catchUp(Seconds(0))) << "it has a thread now";
    EXPECT_EQ(waiting.record->waitForEnd(), finished(0, 200));
}

TEST_P(WalkThreads, aFurtherWalkStartsTheThreadThatAnEarlierOneWasRefused) {
    WalkPool pool(clock, options());
    SubmittedWalk waiting;
    {
        const SystemCallFaults faults(onlySoMany(0));
        waiting = submit(pool, folder.path("d0"));
    }
    clock.advance(1);
    EXPECT_EQ(submit(pool, folder.path("d1")).record->waitForEnd(), finished(0, 10));
    EXPECT_EQ(waiting.record->waitForEnd(), finished(0, 10));
}

TEST_P(WalkThreads, withoutAnyThreadWalksRunOnOneThatIsLent) {
    const SystemCallFaults faults(onlySoMany(0));
    WalkPool pool(clock, options());
    std::vector<SubmittedWalk> walks;
    walks.reserve(20);
    for (int i = 0; i < 20; ++i) walks.push_back(submit(pool, folder.path("d" + std::to_string(i))));
    walks[7].stop.request_stop();
    EXPECT_TRUE(pool.catchUp(Seconds(1)));
    for (int i = 0; i < 20; ++i) {
        ASSERT_EQ(walks[i].record->ends(), 1);
        if (i != 7) {
            EXPECT_EQ(walks[i].record->end(), finished(0, 10));
        }
    }
    EXPECT_EQ(walks[7].record->end()->outcome, WalkOutcome::cancelled);
    EXPECT_FALSE(pool.catchUp(Seconds(1))) << "nothing is left";
}

TEST_P(WalkThreads, aThreadIsLentForAWhileOnly) {
    const SystemCallFaults faults(onlySoMany(0));
    const HurryingClock hurrying;
    WalkPool pool(hurrying, options());
    const SubmittedWalk walk = submit(pool, folder.path());
    int turns = 0;
    for (; walk.record->ends() == 0 && turns < 1000; ++turns) EXPECT_TRUE(pool.catchUp(Seconds(1)));
    EXPECT_GT(turns, 20) << "a turn for each folder";
    EXPECT_EQ(walk.record->end(), finished(0, 200));
}

TEST_P(WalkThreads, threadsTakeOverWhatALentOneHasBegun) {
    const HurryingClock hurrying;
    WalkPool pool(hurrying, options());
    SubmittedWalk walk;
    {
        const SystemCallFaults faults(onlySoMany(0));
        walk = submit(pool, folder.path());
        for (int turn = 0; turn < 5; ++turn) EXPECT_TRUE(pool.catchUp(Seconds(1)));
        EXPECT_EQ(walk.record->ends(), 0);
    }
    EXPECT_FALSE(pool.catchUp(Seconds(1)));
    EXPECT_EQ(walk.record->waitForEnd(), finished(0, 200));
}

TEST_P(WalkThreads, aLentThreadIsBackInItsWorkingFolder) {
    const SystemCallFaults faults(onlySoMany(0));
    folder.makeFolder("wide");
    for (int file = 0; file < 200; ++file) folder.makeFile("wide/" + std::to_string(file));
    const std::string before = std::filesystem::current_path();
    WalkPool pool(clock, options());
    const SubmittedWalk walk = submit(pool, folder.path("wide"));
    EXPECT_TRUE(pool.catchUp(Seconds(1)));
    EXPECT_EQ(walk.record->end(), finished(0, 200));
    EXPECT_EQ(std::filesystem::current_path(), before);
}

TEST_P(WalkThreads, aPoolWithoutThreadsEndsWithItsWalks) {
    const SystemCallFaults faults(onlySoMany(0));
    const HurryingClock hurrying;
    auto pool = std::make_unique<WalkPool>(hurrying, options());
    const SubmittedWalk begun = submit(*pool, folder.path());
    const SubmittedWalk waiting = submit(*pool, folder.path());
    EXPECT_TRUE(pool->catchUp(Seconds(1)));
    pool.reset();
    for (const SubmittedWalk& walk : {begun, waiting}) {
        EXPECT_TRUE(walk.record->isDestroyed());
        EXPECT_EQ(walk.record->ends(), 0);
    }
}

// A real limit, which holds for ordinary users only.
TEST_P(WalkThreads, walksWaitWhileTheUserMayHaveNoFurtherThread) {
    inOwnNamespaces(
        folder, Privileges::none, [] { return true; },
        [this] {
            rlimit former{};
            ASSERT_EQ(::getrlimit(RLIMIT_NPROC, &former), 0);
            const rlimit lowered{1, former.rlim_max};
            ASSERT_EQ(::setrlimit(RLIMIT_NPROC, &lowered), 0);
            WalkPool pool(clock, options());
            const SubmittedWalk walk = submit(pool, folder.path());
            EXPECT_TRUE(pool.catchUp(Seconds(0)));
            EXPECT_EQ(walk.record->ends(), 0);
            ASSERT_EQ(::setrlimit(RLIMIT_NPROC, &former), 0);
            clock.advance(1);
            EXPECT_FALSE(pool.catchUp(Seconds(0)));
            EXPECT_EQ(walk.record->waitForEnd(), finished(0, 200));
        });
}

}  // namespace
}  // namespace vantrel::test
