#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "model/engine/EngineReports.h"
#include "model/engine/VantrelEngine.h"
#include "support/ManualCalendar.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"
#include "support/ManualWalkQueue.h"

// What the engine makes of totals that walks remember.

namespace vantrel {
namespace {

using namespace std::chrono_literals;
using test::Report;
using test::Reports;
using testing::ElementsAre;
using testing::IsEmpty;

class VantrelEngineMemory : public testing::Test {
protected:
    static constexpr FileIdentity top{1, 2};
    static constexpr FileIdentity folder{1, 20};

    void remember(const FileIdentity& identity, WalkTotals totals) {
        known.remember({.identity = identity,
                        .totals = totals,
                        .entries = 1,
                        .unchangedSince = calendar.now(),
                        .oldest = calendar.now(),
                        .changes = known.changes()});
    }

    bool isKnown(const FileIdentity& identity) { return known.find(identity, longAgo).has_value(); }

    FolderPlace placeOf(const FileIdentity& identity) const {
        return {.identity = identity, .changed = longAgo};
    }

    Reports request(const std::string& path, const FolderPlace& place) {
        return test::requestOf(*engine, path, place);
    }

    test::ManualWalkQueue walks;
    test::ManualMainQueue mainQueue;
    test::ManualClock clock;
    test::ManualCalendar calendar{clock};
    KnownTotals known{clock, calendar};
    std::shared_ptr<VantrelEngine> engine = VantrelEngine::make({walks, mainQueue, clock, &known});
    const CalendarTime longAgo = calendar.now() - 1h;
};

TEST_F(VantrelEngineMemory, whatAWalkAboveHasCountedIsReportedOnceAndLater) {
    remember(folder, {30, 3});
    const Reports reports = request("/a", placeOf(folder));
    EXPECT_THAT(*reports, IsEmpty());
    mainQueue.runAll();
    EXPECT_THAT(*reports, ElementsAre(Report{30, 3, true}));
    EXPECT_THAT(walks.roots(), IsEmpty());
}

TEST_F(VantrelEngineMemory, aFolderOfWhichTooLittleIsKnownIsWalked) {
    remember(folder, {30, 3});
    request("/nothing", {});
    request("/when", {.identity = folder});
    request("/who", {.changed = longAgo});
    request("/changed", {.identity = folder, .changed = calendar.now()});
    request("/another", placeOf({1, 21}));
    EXPECT_THAT(walks.roots(), ElementsAre("/nothing", "/when", "/who", "/changed", "/another"));
}

TEST_F(VantrelEngineMemory, whatTheEngineHasCountedItselfComesFirst) {
    request("/a", {});
    walks.walkOf("/a").finish({10, 1});
    mainQueue.runAll();
    remember(folder, {30, 3});
    const Reports reports = request("/a", placeOf(folder));
    mainQueue.runAll();
    EXPECT_THAT(*reports, ElementsAre(Report{10, 1, true}));
}

TEST_F(VantrelEngineMemory, aTotalIsAsOldAsTheOldestThatItsWalkTookOver) {
    request("/a", {});
    clock.advance(1'000);
    walks.walkOf("/a").begin();
    walks.walkOf("/a").observer->walkDidTakeOver(Seconds(200));
    walks.walkOf("/a").finish({30, 3});
    clock.advance(99);
    EXPECT_TRUE(engine->cachedSize("/a"));
    clock.advance(2);
    EXPECT_FALSE(engine->cachedSize("/a"));
}

TEST_F(VantrelEngineMemory, aTotalIsNoYoungerThanTheBeginningOfItsWalk) {
    request("/a", {});
    walks.walkOf("/a").begin();
    clock.advance(100);
    walks.walkOf("/a").observer->walkDidTakeOver(Seconds(50));
    walks.walkOf("/a").finish({30, 3});
    clock.advance(201);
    EXPECT_FALSE(engine->cachedSize("/a"));
}

TEST_F(VantrelEngineMemory, aChangeIsForgottenInTheItemAndTheFoldersThatHoldIt) {
    const FileIdentity beside{1, 30};
    const FileIdentity item{1, 40};
    for (const FileIdentity& identity : {top, folder, beside, item}) remember(identity, {30, 3});
    engine->contentsDidChange(ContentsChange({{.path = "/a/x",
                                               .afterwards = ContentsChange::Afterwards::gone,
                                               .identities = {item},
                                               .above = {folder, top}}}));
    EXPECT_FALSE(isKnown(top));
    EXPECT_FALSE(isKnown(folder));
    EXPECT_FALSE(isKnown(item));
    EXPECT_TRUE(isKnown(beside));
}

TEST_F(VantrelEngineMemory, whatAWalkReadBeforeAChangeIsNotRemembered) {
    const CountedFolder before{.identity = folder, .changes = known.changes()};
    engine->contentsDidChange(ContentsChange({{.path = "/z/x"}}));
    known.remember(before);
    EXPECT_FALSE(isKnown(folder));
}

TEST_F(VantrelEngineMemory, whereSomethingMayBeGoneInPartNothingIsBelieved) {
    const FileIdentity below{1, 41};
    remember(below, {30, 3});
    engine->contentsDidChange(ContentsChange(
        {{.path = "/a/x", .afterwards = ContentsChange::Afterwards::inPart, .above = {folder, top}}}));
    EXPECT_FALSE(isKnown(below));
}

TEST_F(VantrelEngineMemory, aRenamingLeavesWhatIsBelowTheItemAsItIs) {
    const FileIdentity item{1, 40};
    const FileIdentity below{1, 41};
    remember(below, {30, 3});
    engine->contentsDidChange(ContentsChange({{.path = "/a/x",
                                               .afterwards = ContentsChange::Afterwards::gone,
                                               .identities = {item},
                                               .above = {folder, top}},
                                              {.path = "/a/y", .identities = {item}, .above = {folder, top}}},
                                             ContentsChange::Renaming{"/a/x", "/a/y"}));
    EXPECT_TRUE(isKnown(below));
}

TEST_F(VantrelEngineMemory, aCancelledWalkLeavesNoEntryOfItsOwn) {
    request("/a", placeOf(folder));
    walks.walkOf("/a").begin();
    engine->cancelForPrefix("/a");
    walks.walkOf("/a").finishWithoutLooking({30, 3});
    EXPECT_FALSE(engine->cachedSize("/a"));
}

}  // namespace
}  // namespace vantrel
