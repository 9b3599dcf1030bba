#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

#include "model/engine/EngineReports.h"
#include "model/engine/VantrelEngine.h"
#include "posix/SystemClock.h"
#include "support/ManualMainQueue.h"
#include "support/ManualWalkQueue.h"
#include "support/NativeWalks.h"
#include "support/TemporaryFolder.h"
#include "walk/WalkPool.h"

// The engine with real threads on real folders.

namespace vantrel {
namespace {

using test::Report;
using test::Reports;
using testing::ElementsAre;

class VantrelEngineThreads : public testing::Test {
protected:
    Reports request(const std::string& path) { return test::requestOf(*engine, path); }

    bool waitForFinalReport(const Reports& reports) {
        return mainQueue.runUntil([&] { return !reports->empty() && reports->back().isComplete; });
    }

    test::TemporaryFolder folder;
    SystemClock clock;
    test::ManualMainQueue mainQueue;
    WalkPool pool{clock, test::nativeWalks()};
    std::shared_ptr<VantrelEngine> engine = VantrelEngine::make({pool, mainQueue, clock});
};

TEST_F(VantrelEngineThreads, aFolderOnDiskIsCountedAndThenKnown) {
    folder.makeFolder("d");
    folder.makeFolder("d/sub");
    folder.makeFile("d/one", "1");
    folder.makeFile("d/.hidden", "2");
    folder.makeFile("d/sub/three", "3");
    folder.makeLink("d/link", folder.path("d"));
    const Reports reports = request(folder.path("d"));
    ASSERT_TRUE(waitForFinalReport(reports));
    EXPECT_EQ(reports->back().items, 3);
    const auto known = engine->cachedSize(folder.path("d"));
    ASSERT_TRUE(known.has_value());
    EXPECT_EQ(known->bytes, reports->back().bytes);

    const Reports again = request(folder.path("d"));
    EXPECT_FALSE(engine->isCalculating(folder.path("d")));
    ASSERT_TRUE(waitForFinalReport(again));
    EXPECT_THAT(*again, ElementsAre(reports->back()));
}

TEST_F(VantrelEngineThreads, anEmptyFolderIsZeroAndZeroAndIsCached) {
    const Reports reports = request(folder.makeFolder("empty"));
    ASSERT_TRUE(waitForFinalReport(reports));
    EXPECT_THAT(*reports, ElementsAre(Report{0, 0, true}));
    EXPECT_EQ(engine->cachedSize(folder.path("empty")), (WalkTotals{0, 0}));
}

TEST_F(VantrelEngineThreads, aPathThatDoesNotExistIsZeroAndZeroAndIsNotCached) {
    const Reports reports = request(folder.path("missing"));
    ASSERT_TRUE(waitForFinalReport(reports));
    EXPECT_THAT(*reports, ElementsAre(Report{0, 0, true}));
    EXPECT_EQ(engine->cachedSize(folder.path("missing")), std::nullopt);
}

TEST_F(VantrelEngineThreads, manyFoldersAtOnceEachEndInTheirOwnTotal) {
    std::vector<Reports> all;
    all.reserve(200);
    for (int number = 0; number < 200; ++number) {
        const std::string name = "d" + std::to_string(number);
        folder.makeFolder(name);
        for (int file = 0; file < number % 7; ++file) folder.makeFile(name + "/f" + std::to_string(file));
        all.push_back(request(folder.path(name)));
    }
    for (int number = 0; number < 200; ++number) {
        ASSERT_TRUE(waitForFinalReport(all[static_cast<std::size_t>(number)]));
        EXPECT_EQ(all[static_cast<std::size_t>(number)]->back().items, number % 7);
    }
}

TEST_F(VantrelEngineThreads, aRequestThatIsReplacedAgainAndAgainEndsInOneFinalReportOfTheLast) {
    folder.makeFolder("d");
    for (int file = 0; file < 50; ++file) folder.makeFile("d/f" + std::to_string(file));
    Reports last;
    for (int turn = 0; turn < 100; ++turn) last = request(folder.path("d"));
    ASSERT_TRUE(waitForFinalReport(last));
    EXPECT_FALSE(engine->isCalculating(folder.path("d")));
    mainQueue.runAll();
    EXPECT_EQ(last->back().items, 50);
    EXPECT_EQ(std::ranges::count_if(*last, &Report::isComplete), 1);
}

TEST_F(VantrelEngineThreads, anEngineThatItsOwnerLetsGoEndsWithTheWalksThatRun) {
    for (int file = 0; file < 200; ++file) folder.makeFile("f" + std::to_string(file));
    for (int turn = 0; turn < 100; ++turn) {
        const Reports reports = request(folder.path());
        const Reports missing = request(folder.path("missing"));
        const std::weak_ptr<VantrelEngine> held = engine;
        if (turn % 2 == 0) std::this_thread::yield();
        engine.reset();
        while (!held.expired()) std::this_thread::yield();
        mainQueue.runAll();
        for (const Reports& each : {reports, missing})
            EXPECT_LE(std::ranges::count_if(*each, &Report::isComplete), 1);
        if (!reports->empty()) {
            EXPECT_TRUE(reports->back().isComplete);
            EXPECT_EQ(reports->back().items, 200);
        }
        engine = VantrelEngine::make({pool, mainQueue, clock});
    }
}

// The walk of the marker gives the cancelled one time to say what it must not say.
TEST_F(VantrelEngineThreads, aCancelledWalkNeitherReportsItsEndNorIsCached) {
    folder.makeFolder("d");
    for (int file = 0; file < 300; ++file) folder.makeFile("d/f" + std::to_string(file));
    folder.makeFolder("marker");
    for (int turn = 0; turn < 50; ++turn) {
        const Reports cancelled = request(folder.path("d"));
        engine->cancelForPrefix(folder.path("d"));
        const bool wasFinishedBefore = engine->cachedSize(folder.path("d")).has_value();
        const Reports marker = request(folder.path("marker"));
        ASSERT_TRUE(waitForFinalReport(marker));
        mainQueue.runAll();
        if (wasFinishedBefore) break;
        for (const Report& report : *cancelled) EXPECT_FALSE(report.isComplete);
        EXPECT_EQ(engine->cachedSize(folder.path("d")), std::nullopt);
    }
}

// Reports of each request in its order, written by the main queue only.
struct Watch {
    std::int64_t lastBytes = 0;
    std::int64_t lastItems = 0;
    int finals = 0;
};

TEST_F(VantrelEngineThreads, fourThreadsMayMixEveryOperation) {
    std::vector<std::string> roots;
    for (int number = 0; number < 12; ++number) {
        roots.push_back(folder.makeFolder("r" + std::to_string(number)));
        for (int sub = 0; sub < 4; ++sub) {
            const std::string name = "r" + std::to_string(number) + "/s" + std::to_string(sub);
            folder.makeFolder(name);
            for (int file = 0; file < 5; ++file)
                folder.makeFile(name + "/f" + std::to_string(file), "content");
        }
    }
    roots.push_back(folder.path("missing"));

    const auto mixOperations = [&](unsigned seed) {
        std::mt19937 random(seed);
        for (int turn = 0; turn < 300; ++turn) {
            const std::string& path = roots[random() % roots.size()];
            switch (random() % 9) {
                case 0:
                    engine->cancelFor(path);
                    break;
                case 1:
                    engine->cancelForPrefix(path);
                    break;
                case 2:
                    if (turn % 50 == 0) engine->cancelAll();
                    break;
                case 3:
                    (void)engine->cachedSize(path);
                    break;
                case 4:
                    (void)engine->isCalculating(path);
                    break;
                case 5:
                    engine->contentsDidChange(ContentsChange({{.path = path + "/s1/new"}}));
                    break;
                default:
                    engine->calculateVantrel(
                        path, [watch = std::make_shared<Watch>()](std::int64_t bytes, std::int64_t items,
                                                                  bool isComplete) {
                            EXPECT_EQ(watch->finals, 0) << "a report after the final one";
                            EXPECT_GE(bytes, watch->lastBytes);
                            EXPECT_GE(items, watch->lastItems);
                            *watch = {bytes, items, isComplete ? 1 : 0};
                        });
            }
        }
    };
    std::atomic<int> running{4};
    std::vector<std::thread> threads;
    for (unsigned seed = 1; seed <= 4; ++seed) {
        threads.emplace_back([&, seed] {
            mixOperations(seed);
            --running;
            mainQueue.post([] {});  // wakes the wait below
        });
    }
    EXPECT_TRUE(mainQueue.runUntil([&] { return running == 0; }));
    for (std::thread& thread : threads) thread.join();

    engine->cancelAll();
    for (const std::string& root : roots) {
        const Reports last = request(root);
        ASSERT_TRUE(waitForFinalReport(last));
        EXPECT_EQ(last->back().items, root == folder.path("missing") ? 0 : 20);
    }
}

TEST_F(VantrelEngineThreads, whatAChangeMeetsOnTheWayNeverLeavesAnOldTotalBehind) {
    for (const char* name : {"p", "p/child", "p/child/deep", "p/sibling"}) folder.makeFolder(name);
    for (int number = 0; number < 40; ++number) folder.makeFolder("p/child/" + std::to_string(number));
    const std::vector<std::string> all{folder.path("p"), folder.path("p/child"), folder.path("p/child/deep"),
                                       folder.path("p/sibling")};
    for (int turn = 0; turn < 300; ++turn) {
        // Walks of a parent, of a child and of a sibling are somewhere between their beginning and their end;
        // now and then the folder is left and entered in the same moment.
        std::vector<Reports> before;
        for (const std::string& path : all) before.push_back(request(path));
        if (turn % 3 == 0) engine->cancelForPrefix(folder.path("p"));
        if (turn % 3 == 1) {
            ASSERT_TRUE(waitForFinalReport(before[static_cast<std::size_t>(turn) % 4]));
        }
        const std::string file = folder.makeFile("p/child/deep/" + std::to_string(turn));
        engine->contentsDidChange(ContentsChange({{.path = file}}));
        for (std::size_t index = 0; index < all.size(); ++index) {
            const std::int64_t right = index == 3 ? 0 : turn + 1;
            const Reports after = request(all[index]);
            ASSERT_TRUE(waitForFinalReport(after));
            EXPECT_EQ(after->back().items, right) << all[index];
            const auto known = engine->cachedSize(all[index]);
            EXPECT_EQ(known ? known->items : right, right) << all[index];
        }
    }
}

TEST(VantrelEngineShared, isMadeOnceByWhicheverThreadAsksFirst) {
    static test::ManualMainQueue mainQueue;
    static SystemClock clock;
    static test::ManualWalkQueue walks;  // a pool would leave its threads to all later tests
    static std::atomic<int> made{0};
    VantrelEngine::provideShared([] {
        ++made;
        return VantrelEngineServices{walks, mainQueue, clock};
    });
    std::mutex mutex;
    std::map<VantrelEngine*, int> seen;
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            VantrelEngine* const engine = &VantrelEngine::shared();
            const std::lock_guard lock(mutex);
            ++seen[engine];
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(made, 1);
    EXPECT_EQ(seen.size(), 1U);
}

}  // namespace
}  // namespace vantrel
