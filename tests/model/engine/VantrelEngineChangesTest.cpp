#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "model/engine/EngineReports.h"
#include "model/engine/VantrelEngine.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"
#include "support/ManualWalkQueue.h"

// What becomes of totals, and of walks under way, when files are changed.

namespace vantrel {
namespace {

using test::Report;
using test::Reports;
using testing::ElementsAre;
using testing::IsEmpty;

class VantrelEngineChanges : public testing::Test {
protected:
    Reports request(const std::string& path) { return test::requestOf(*engine, path); }

    void count(const std::string& path, WalkTotals totals, const FolderPlace& place = {}) {
        engine->calculateVantrel(
            path, [](std::int64_t, std::int64_t, bool) {}, place);
        walks.walkOf(path).finish(totals);
        mainQueue.runAll();
    }

    void change(const std::string& path) { engine->contentsDidChange(ContentsChange({{.path = path}})); }

    void rename(const std::string& from, const std::string& to) {
        engine->contentsDidChange(
            ContentsChange({{.path = from, .afterwards = ContentsChange::Afterwards::gone}, {.path = to}},
                           ContentsChange::Renaming{from, to}));
    }

    test::ManualWalkQueue walks;
    test::ManualMainQueue mainQueue;
    test::ManualClock clock;
    std::shared_ptr<VantrelEngine> engine = VantrelEngine::make({walks, mainQueue, clock});
};

TEST_F(VantrelEngineChanges, totalsAboveAtAndBelowAChangeAreNotBelievedAnyMore) {
    for (const char* path : {"/", "/a", "/a/b", "/a/b/c", "/a/bb", "/z"}) count(path, {30, 3});
    change("/a/b");
    for (const char* path : {"/", "/a", "/a/b", "/a/b/c"}) {
        EXPECT_EQ(engine->cachedSize(path), std::nullopt) << path;
    }
    for (const char* path : {"/a/bb", "/z"}) {
        EXPECT_EQ(engine->cachedSize(path), (WalkTotals{30, 3})) << path;
    }
}

TEST_F(VantrelEngineChanges, anOutdatedTotalIsCountedAnewAndBelievedAgain) {
    count("/a", {30, 3});
    change("/a/b");
    const Reports reports = request("/a");
    ASSERT_EQ(walks.walks.size(), 2U);
    walks.walks[1].finish({20, 2});
    mainQueue.runAll();
    EXPECT_THAT(*reports, ElementsAre(Report{20, 2, true}));
    EXPECT_EQ(engine->cachedSize("/a"), (WalkTotals{20, 2}));
}

TEST_F(VantrelEngineChanges, aWalkThatBeganBeforeAChangeNeitherStoresNorReports) {
    const std::vector<Reports> concerned{request("/a"), request("/a/b"), request("/a/b/c")};
    const Reports other = request("/z");
    for (auto& walk : walks.walks) walk.begin();
    change("/a/b");
    for (auto& walk : walks.walks) walk.finishWithoutLooking({10, 1});
    mainQueue.runAll();
    for (const Reports& reports : concerned) EXPECT_THAT(*reports, IsEmpty());
    EXPECT_THAT(*other, ElementsAre(Report{10, 1, true}));
    for (const char* path : {"/a", "/a/b", "/a/b/c"}) EXPECT_EQ(engine->cachedSize(path), std::nullopt);
    EXPECT_EQ(engine->cachedSize("/z"), (WalkTotals{10, 1}));
}

TEST_F(VantrelEngineChanges, aRequestAfterAChangeIsAnsweredByAWalkOfItsOwn) {
    request("/a");
    walks.walks[0].progress({10, 1});
    change("/a/b");
    EXPECT_FALSE(engine->isCalculating("/a"));
    const Reports reports = request("/a");
    walks.walks[0].finishWithoutLooking({30, 3});
    ASSERT_EQ(walks.walks.size(), 2U);
    walks.walks[1].finish({20, 2});
    mainQueue.runAll();
    EXPECT_THAT(*reports, ElementsAre(Report{20, 2, true}));
    EXPECT_EQ(engine->cachedSize("/a"), (WalkTotals{20, 2}));
}

TEST_F(VantrelEngineChanges, aWalkBesideAChangeGoesOn) {
    const Reports reports = request("/a/sibling");
    change("/a/b");
    EXPECT_FALSE(walks.walks[0].isCancelled());
    walks.walks[0].finish({10, 1});
    mainQueue.runAll();
    EXPECT_THAT(*reports, ElementsAre(Report{10, 1, true}));
}

TEST_F(VantrelEngineChanges, aRenamedFolderTakesItsTotalsAlong) {
    count("/a/x", {30, 3});
    count("/a/x/d", {20, 2});
    count("/a", {50, 5});
    rename("/a/x", "/a/y");
    EXPECT_EQ(engine->cachedSize("/a/y"), (WalkTotals{30, 3}));
    EXPECT_EQ(engine->cachedSize("/a/y/d"), (WalkTotals{20, 2}));
    for (const char* path : {"/a/x", "/a/x/d", "/a"}) EXPECT_EQ(engine->cachedSize(path), std::nullopt);
}

TEST_F(VantrelEngineChanges, totalsThatWereTakenAlongAreNoYoungerForIt) {
    count("/a/x", {30, 3});
    clock.advance(200);
    rename("/a/x", "/a/y");
    clock.advance(99.5);
    EXPECT_EQ(engine->cachedSize("/a/y"), (WalkTotals{30, 3}));
    clock.advance(0.5);
    EXPECT_EQ(engine->cachedSize("/a/y"), std::nullopt);
}

TEST_F(VantrelEngineChanges, whatWasOutdatedBeforeARenamingStaysSo) {
    count("/a/x", {30, 3});
    count("/a/x/d", {20, 2});
    change("/a/x/new");
    rename("/a/x", "/a/y");
    EXPECT_EQ(engine->cachedSize("/a/y"), std::nullopt);
    EXPECT_EQ(engine->cachedSize("/a/y/d"), (WalkTotals{20, 2}));
}

TEST_F(VantrelEngineChanges, aRenamingReplacesWhatWasKnownOfTheNewName) {
    count("/a/y", {7, 7});
    count("/a/x", {30, 3});
    rename("/a/x", "/a/y");
    EXPECT_EQ(engine->cachedSize("/a/y"), (WalkTotals{30, 3}));
}

TEST_F(VantrelEngineChanges, aChangeReachesTotalsThatAreKnownByAnotherPath) {
    const FileIdentity top{1, 2};
    const FileIdentity real{1, 20};
    const FileIdentity item{1, 30};
    count("/link", {30, 3}, {real, nullptr});
    count("/link/x", {20, 2}, {item, std::make_shared<const Ancestry>(Ancestry{real, top})});
    count("/link/x/d", {10, 1},
          {FileIdentity{1, 40}, std::make_shared<const Ancestry>(Ancestry{item, real})});
    count("/link/z", {5, 1}, {FileIdentity{1, 50}, std::make_shared<const Ancestry>(Ancestry{real, top})});
    engine->contentsDidChange(
        ContentsChange({{.path = "/top/real/x", .identities = {item}, .above = {real, top}}}));
    for (const char* path : {"/link", "/link/x", "/link/x/d"}) {
        EXPECT_EQ(engine->cachedSize(path), std::nullopt) << path;
    }
    EXPECT_EQ(engine->cachedSize("/link/z"), (WalkTotals{5, 1}));
}

TEST_F(VantrelEngineChanges, aTotalIsThatOfOneFolderNotOfWhateverHasItsPath) {
    const FolderPlace counted{FileIdentity{1, 20}, nullptr};
    const FolderPlace another{FileIdentity{1, 21}, nullptr};
    count("/a", {30, 3}, counted);
    EXPECT_EQ(engine->cachedSize("/a", counted), (WalkTotals{30, 3}));
    EXPECT_EQ(engine->cachedSize("/a"), (WalkTotals{30, 3}));
    EXPECT_EQ(engine->cachedSize("/a", another), std::nullopt);
}

TEST_F(VantrelEngineChanges, aTotalIsAsOldAsTheBeginningOfItsWalk) {
    request("/a");
    clock.advance(50);
    walks.walkOf("/a").begin();
    clock.advance(100);
    walks.walkOf("/a").finish({30, 3});
    clock.advance(199.5);
    EXPECT_EQ(engine->cachedSize("/a"), (WalkTotals{30, 3}));
    clock.advance(0.5);
    EXPECT_EQ(engine->cachedSize("/a"), std::nullopt);
}

TEST_F(VantrelEngineChanges, whatACancelledCallbackHoldsMayCallTheEngineWhenItGoes) {
    struct Caller {
        VantrelEngine& engine;
        ~Caller() { (void)engine.cachedSize("/a"); }
    };
    engine->calculateVantrel("/a", [caller = std::make_shared<Caller>(*engine)](std::int64_t, std::int64_t,
                                                                                bool) { (void)caller; });
    change("/a/b");
    EXPECT_TRUE(walks.walks[0].isCancelled());
}

TEST_F(VantrelEngineChanges, aChangeAmongThousandsOfKnownTotalsReachesItsOwnOnly) {
    std::string path = "/deep";
    for (int depth = 0; depth < 2'000; ++depth, path += "/d") count(path, {1, 1});
    change(path);
    EXPECT_EQ(engine->cachedSize("/deep"), std::nullopt);
    for (int number = 0; number < 2'000; ++number) count("/wide/" + std::to_string(number), {1, 1});
    change("/wide/7/x");
    EXPECT_EQ(engine->cachedSize("/wide/7"), std::nullopt);
    EXPECT_EQ(engine->cachedSize("/wide/8"), (WalkTotals{1, 1}));
}

}  // namespace
}  // namespace vantrel
