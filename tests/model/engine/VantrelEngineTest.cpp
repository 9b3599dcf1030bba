#include "model/engine/VantrelEngine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "model/engine/EngineReports.h"
#include "support/FakeFileManager.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"
#include "support/ManualWalkQueue.h"

namespace vantrel {
namespace {

using test::Report;
using test::Reports;
using testing::ElementsAre;
using testing::IsEmpty;

class VantrelEngineTest : public testing::Test {
protected:
    Reports request(const std::string& path) { return test::requestOf(*engine, path); }

    test::ManualWalkQueue walks;
    test::ManualMainQueue mainQueue;
    test::ManualClock clock;
    std::shared_ptr<VantrelEngine> engine = VantrelEngine::make({walks, mainQueue, clock});
};

TEST_F(VantrelEngineTest, aRequestIsWalkedAndReportsProgressAndThenOneFinalReport) {
    const Reports reports = request("/a");
    EXPECT_THAT(walks.roots(), ElementsAre("/a"));
    walks.walkOf("/a").progress({10, 1});
    walks.walkOf("/a").progress({20, 2});
    walks.walkOf("/a").finish({30, 3});
    mainQueue.runAll();
    EXPECT_THAT(*reports, ElementsAre(Report{10, 1, false}, Report{20, 2, false}, Report{30, 3, true}));
}

TEST_F(VantrelEngineTest, aWalkHoldsTheEngineFromItsBeginningToItsEnd) {
    const Reports running = request("/a");
    walks.walkOf("/a").progress({10, 1});
    const std::weak_ptr<VantrelEngine> held = engine;
    engine.reset();
    EXPECT_FALSE(held.expired());
    walks.walkOf("/a").finish({30, 3});
    EXPECT_TRUE(held.expired());
    mainQueue.runAll();
    EXPECT_THAT(*running, ElementsAre(Report{10, 1, false}, Report{30, 3, true}));
}

TEST_F(VantrelEngineTest, aWalkThatWaitsDoesNotHoldTheEngine) {
    const Reports waiting = request("/a");
    const std::weak_ptr<VantrelEngine> held = engine;
    engine.reset();
    EXPECT_TRUE(held.expired());
    EXPECT_TRUE(walks.walkOf("/a").isCancelled());
    walks.walkOf("/a").finish({30, 3});
    mainQueue.runAll();
    EXPECT_THAT(*waiting, IsEmpty());
}

TEST_F(VantrelEngineTest, everyReportComesThroughTheMainQueueAndNeverInsideACall) {
    const Reports first = request("/a");
    walks.walkOf("/a").progress({10, 1});
    walks.walkOf("/a").finish({30, 3});
    EXPECT_THAT(*first, IsEmpty());
    mainQueue.runAll();
    const Reports fromCache = request("/a");
    EXPECT_THAT(*fromCache, IsEmpty());
    mainQueue.runAll();
    EXPECT_THAT(*fromCache, ElementsAre(Report{30, 3, true}));
}

TEST_F(VantrelEngineTest, aSecondRequestForTheSamePathSilencesTheFirst) {
    const Reports first = request("/a");
    const Reports second = request("/a");
    ASSERT_EQ(walks.walks.size(), 2U);
    EXPECT_TRUE(walks.walks[0].isCancelled());
    EXPECT_FALSE(walks.walks[1].isCancelled());
    walks.walks[0].progress({1, 1});
    walks.walks[0].finish({2, 2});
    walks.walks[1].progress({10, 1});
    walks.walks[1].finish({30, 3});
    mainQueue.runAll();
    EXPECT_THAT(*first, IsEmpty());
    EXPECT_THAT(*second, ElementsAre(Report{10, 1, false}, Report{30, 3, true}));
}

TEST_F(VantrelEngineTest, whatAReplacedWalkHadPostedBeforeStillArrives) {
    const Reports first = request("/a");
    walks.walks[0].progress({5, 1});
    request("/a");
    walks.walks[0].progress({6, 2});
    mainQueue.runAll();
    EXPECT_THAT(*first, ElementsAre(Report{5, 1, false}));
}

TEST_F(VantrelEngineTest, withinFiveMinutesTheCacheAnswersWithOneFinalReportAndNoWalk) {
    clock.advance(5000);  // it is a result's age that counts
    request("/a");
    walks.walkOf("/a").finish({30, 3});
    mainQueue.runAll();
    clock.advance(299.5);
    const Reports again = request("/a");
    mainQueue.runAll();
    EXPECT_THAT(*again, ElementsAre(Report{30, 3, true}));
    EXPECT_EQ(walks.walks.size(), 1U);
    EXPECT_FALSE(engine->isCalculating("/a"));
}

TEST_F(VantrelEngineTest, at300SecondsANewWalkStartsAndItsResultReplacesTheOldOne) {
    request("/a");
    walks.walkOf("/a").finish({30, 3});
    clock.advance(300);
    EXPECT_EQ(engine->cachedSize("/a"), std::nullopt);
    const Reports again = request("/a");
    ASSERT_EQ(walks.walks.size(), 2U);
    walks.walks[1].finish({40, 4});
    mainQueue.runAll();
    EXPECT_THAT(*again, ElementsAre(Report{40, 4, true}));
    EXPECT_EQ(engine->cachedSize("/a"), (WalkTotals{40, 4}));
}

TEST_F(VantrelEngineTest, cachedSizeKnowsOnlyExactlyThePathsThatWereFinished) {
    EXPECT_EQ(engine->cachedSize("/a"), std::nullopt);
    request("/a");
    EXPECT_EQ(engine->cachedSize("/a"), std::nullopt);
    walks.walkOf("/a").finish({30, 3});
    EXPECT_EQ(engine->cachedSize("/a"), (WalkTotals{30, 3}));
    EXPECT_EQ(engine->cachedSize("/a/"), std::nullopt);
    EXPECT_EQ(engine->cachedSize("/"), std::nullopt);
}

TEST_F(VantrelEngineTest, anEmptyFolderIsZeroAndZeroAndIsCached) {
    const Reports reports = request("/empty");
    walks.walkOf("/empty").finish({0, 0});
    mainQueue.runAll();
    EXPECT_THAT(*reports, ElementsAre(Report{0, 0, true}));
    EXPECT_EQ(engine->cachedSize("/empty"), (WalkTotals{0, 0}));
}

TEST_F(VantrelEngineTest, aRootThatCannotBeOpenedGivesOneFinalReportOfZeroAndIsNotCached) {
    const Reports reports = request("/gone");
    walks.walkOf("/gone").failToOpenRoot();
    mainQueue.runAll();
    EXPECT_THAT(*reports, ElementsAre(Report{0, 0, true}));
    EXPECT_EQ(engine->cachedSize("/gone"), std::nullopt);
}

TEST_F(VantrelEngineTest, aRootThatCouldNotBeOpenedIsNoLongerBeingCalculated) {
    request("/gone");
    EXPECT_TRUE(engine->isCalculating("/gone"));
    walks.walkOf("/gone").failToOpenRoot();
    EXPECT_FALSE(engine->isCalculating("/gone"));
}

TEST_F(VantrelEngineTest, isCalculatingFromTheRequestToTheEndOfItsWalk) {
    EXPECT_FALSE(engine->isCalculating("/a"));
    request("/a");
    EXPECT_TRUE(engine->isCalculating("/a"));
    EXPECT_FALSE(engine->isCalculating("/"));
    walks.walkOf("/a").finish({1, 1});
    EXPECT_FALSE(engine->isCalculating("/a"));
    request("/b");
    engine->cancelFor("/b");
    EXPECT_FALSE(engine->isCalculating("/b"));
}

TEST_F(VantrelEngineTest, cancellingAPrefixIsAPlainTestOfStrings) {
    for (const char* path : {"/a", "/a/b", "/ab", "/b/a", "/"}) request(path);
    engine->cancelForPrefix("/a");
    EXPECT_TRUE(walks.walkOf("/a").isCancelled());
    EXPECT_TRUE(walks.walkOf("/a/b").isCancelled());
    EXPECT_TRUE(walks.walkOf("/ab").isCancelled());
    EXPECT_FALSE(walks.walkOf("/b/a").isCancelled());
    EXPECT_FALSE(walks.walkOf("/").isCancelled());
}

TEST_F(VantrelEngineTest, walksCancelledByPrefixNeverReportAgain) {
    const std::vector<Reports> silenced{request("/a"), request("/a/b"), request("/ab")};
    engine->cancelForPrefix("/a");
    for (auto& walk : walks.walks) {
        walk.progress({9, 9});
        walk.finish({10, 10});
    }
    mainQueue.runAll();
    for (const Reports& reports : silenced) EXPECT_THAT(*reports, IsEmpty());
}

TEST_F(VantrelEngineTest, cancellingAnEmptyPrefixCancelsNothing) {
    request("/a");
    engine->cancelForPrefix("");
    EXPECT_FALSE(walks.walkOf("/a").isCancelled());
    EXPECT_TRUE(engine->isCalculating("/a"));
}

TEST_F(VantrelEngineTest, cancelForReachesExactlyThatPath) {
    const Reports silenced = request("/a");
    request("/a/b");
    engine->cancelFor("/a");
    engine->cancelFor("/never asked for");
    EXPECT_TRUE(walks.walkOf("/a").isCancelled());
    EXPECT_FALSE(walks.walkOf("/a/b").isCancelled());
    walks.walkOf("/a").finish({1, 1});
    mainQueue.runAll();
    EXPECT_THAT(*silenced, IsEmpty());
}

TEST_F(VantrelEngineTest, cancelAllCancelsEveryWalkAndKeepsTheCache) {
    request("/done");
    walks.walkOf("/done").finish({5, 1});
    request("/a");
    request("/b");
    engine->cancelAll();
    EXPECT_TRUE(walks.walkOf("/a").isCancelled());
    EXPECT_TRUE(walks.walkOf("/b").isCancelled());
    EXPECT_FALSE(engine->isCalculating("/a"));
    EXPECT_EQ(engine->cachedSize("/done"), (WalkTotals{5, 1}));
}

TEST_F(VantrelEngineTest, aWalkThatFinishesWithoutHavingSeenItsFlagStillStoresAndReportsNothing) {
    const Reports reports = request("/a");
    engine->cancelForPrefix("/a");
    walks.walkOf("/a").finishWithoutLooking({10, 1});
    mainQueue.runAll();
    EXPECT_THAT(*reports, IsEmpty());
    EXPECT_EQ(engine->cachedSize("/a"), std::nullopt);
}

TEST_F(VantrelEngineTest, aReplacedWalkThatFinishesLateDoesNotDisturbItsSuccessor) {
    request("/a");
    const Reports second = request("/a");
    walks.walks[0].finishWithoutLooking({10, 1});
    EXPECT_TRUE(engine->isCalculating("/a"));
    EXPECT_EQ(engine->cachedSize("/a"), std::nullopt);
    walks.walks[1].finish({20, 2});
    mainQueue.runAll();
    EXPECT_THAT(*second, ElementsAre(Report{20, 2, true}));
}

TEST_F(VantrelEngineTest, aFailedRootThatWasCancelledReportsNothing) {
    const Reports reports = request("/gone");
    engine->cancelFor("/gone");
    walks.walkOf("/gone").failToOpenRoot();
    mainQueue.runAll();
    EXPECT_THAT(*reports, IsEmpty());
}

TEST_F(VantrelEngineTest, aWalkWhoseEngineIsGoneIsCancelledAndReportsNothing) {
    const Reports reports = request("/a");
    engine.reset();
    EXPECT_TRUE(walks.walkOf("/a").isCancelled());
    walks.walkOf("/a").progress({1, 1});
    walks.walkOf("/a").finishWithoutLooking({2, 2});
    mainQueue.runAll();
    EXPECT_THAT(*reports, IsEmpty());
}

TEST_F(VantrelEngineTest, aCallbackMayAskTheEngineAgain) {
    int answers = 0;
    engine->calculateVantrel("/a", [&](std::int64_t, std::int64_t, bool) {
        ++answers;
        if (answers == 1) {
            engine->calculateVantrel("/a", [&](std::int64_t, std::int64_t, bool) { ++answers; });
        }
    });
    walks.walkOf("/a").finish({1, 1});
    mainQueue.runAll();
    EXPECT_EQ(answers, 2);
}

TEST(VantrelEngineCapacity, theVolumesFreeAndTotalBytesOrNothing) {
    test::FakeFileManager files;
    EXPECT_EQ(VantrelEngine::getVolumeCapacity(files, "/x"), std::nullopt);
    files.addFolder("/", "x");
    files.capacity = VolumeCapacity{.freeBytes = 10, .totalBytes = 100};
    EXPECT_EQ(VantrelEngine::getVolumeCapacity(files, "/x"), (VolumeCapacity{10, 100}));
}

}  // namespace
}  // namespace vantrel
