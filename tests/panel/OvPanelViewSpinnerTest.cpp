#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/PanelFixture.h"

namespace vantrel {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

class OvPanelViewSpinner : public test::PanelTest {};

TEST_F(OvPanelViewSpinner, theTimerRunsFromTheStartEvery150MillisecondsAndAsLongAsThePanelLives) {
    ASSERT_EQ(desktop.timers.running.size(), 1U);
    EXPECT_EQ(desktop.timers.running[0]->interval, milliseconds(150));
    panel.reset();
    EXPECT_TRUE(desktop.timers.running.empty());
}

TEST_F(OvPanelViewSpinner, anIdlePanelIsNeitherTurnedNorRedrawn) {
    desktop.files.addFile("/d", "file");
    panel->setCurrentPath("/d");
    host.redraws = 0;
    desktop.timers.tickAll();
    EXPECT_EQ(panel->spinnerFrame(), 0);
    EXPECT_EQ(host.redraws, 0);
}

TEST_F(OvPanelViewSpinner, whileAnyFolderIsCalculatingEachTickTurnsTheSpinnerAndRedraws) {
    for (const char* name : {"a", "b"}) desktop.files.addFolder("/d", name);
    panel->setCurrentPath("/d");
    finishWalk("/d/a", 5);
    host.redraws = 0;
    for (int i = 0; i < 5; ++i) desktop.timers.tickAll();
    EXPECT_EQ(panel->spinnerFrame(), 5);
    EXPECT_EQ(host.redraws, 5);
    finishWalk("/d/b", 5);
    desktop.timers.tickAll();
    EXPECT_EQ(panel->spinnerFrame(), 5);
}

TEST_F(OvPanelViewSpinner, theFrameIsNeverSetBack) {
    desktop.files.addFolder("/d", "a");
    panel->setCurrentPath("/d");
    desktop.timers.tickAll();
    panel->loadDirectory();
    EXPECT_EQ(panel->spinnerFrame(), 1);
    desktop.timers.tickAll();
    EXPECT_EQ(panel->spinnerFrame(), 2);
}

TEST_F(OvPanelViewSpinner, aRowWhoseWalkTheOtherPanelReplacedEndsInTheSameTotal) {
    desktop.files.addFolder("/d", "sub");
    const auto other = OvPanelView::make(desktop.ports(), *desktop.engine);
    panel->setCurrentPath("/d");
    other->setCurrentPath("/d");
    ASSERT_THAT(desktop.walks.roots(), ElementsAre("/d/sub", "/d/sub"));
    desktop.timers.tickAll();  // the other's walk is in flight: nobody asks again
    EXPECT_EQ(desktop.walks.walks.size(), 2U);
    desktop.walks.walks[1].finish({70, 7});
    desktop.mainQueue.runAll();
    EXPECT_EQ(item("sub")->vantrelState, VantrelState(state::Calculating{0, 0}));
    desktop.timers.tickAll();
    desktop.mainQueue.runAll();
    EXPECT_EQ(item("sub")->vantrelState, VantrelState(state::Calculated{70, 7}));
    EXPECT_EQ(desktop.walks.walks.size(), 2U) << "the total came from the cache";
}

TEST_F(OvPanelViewSpinner, aRowWhoseFinalReportWaitsInTheMainQueueIsNotAskedForAgain) {
    desktop.files.addFolder("/d", "sub");
    panel->setCurrentPath("/d");
    desktop.walks.walks[0].finish({70, 7});
    desktop.clock.advance(301);  // the cache would not answer any more
    for (int i = 0; i < 3; ++i) desktop.timers.tickAll();
    EXPECT_EQ(desktop.walks.walks.size(), 1U);
    EXPECT_EQ(desktop.mainQueue.size(), 1U);
    desktop.mainQueue.runAll();
    EXPECT_EQ(item("sub")->vantrelState, VantrelState(state::Calculated{70, 7}));
    EXPECT_FALSE(panel->isCalculatingSizes());
}

TEST_F(OvPanelViewSpinner, theReportOfAFolderThatCouldNotBeOpenedIsAwaitedLikeAnyOther) {
    desktop.files.addFolder("/d", "sub");
    panel->setCurrentPath("/d");
    desktop.walks.walks[0].failToOpenRoot();
    for (int i = 0; i < 3; ++i) desktop.timers.tickAll();
    EXPECT_EQ(desktop.walks.walks.size(), 1U);
    EXPECT_EQ(desktop.mainQueue.size(), 1U);
}

TEST_F(OvPanelViewSpinner, aReportFromTheCacheThatWaitsInTheMainQueueIsNotAskedForAgain) {
    desktop.files.addFolder("/d", "sub");
    panel->setCurrentPath("/d");
    finishWalk("/d/sub", 70);
    panel->loadDirectory();
    for (int i = 0; i < 3; ++i) desktop.timers.tickAll();
    EXPECT_EQ(desktop.mainQueue.size(), 1U);
}

TEST_F(OvPanelViewSpinner, aTickBetweenATotalAndItsReportTurnsEqualRowsRoundNoMoreThanOnce) {
    for (const char* name : {"a", "b", "s"}) desktop.files.addFolder("/d", name);
    panel->setCurrentPath("/d");
    panel->setSortField(SortField::size);
    panel->setSortDirection(SortDirection::descending);
    const std::vector<std::string> before = names();
    desktop.walks.walkOf("/d/s").finish({0, 0});
    desktop.timers.tickAll();
    desktop.mainQueue.runAll();
    EXPECT_THAT(names(), ElementsAre("..", before[3], before[2], before[1]));
}

TEST_F(OvPanelViewSpinner, whileReportsWaitForAnyNumberOfTicksEachRowGetsOne) {
    constexpr std::size_t count = 50;
    for (std::size_t i = 0; i < count; ++i) desktop.files.addFolder("/d", "f" + std::to_string(i));
    panel->setSortField(SortField::size);
    panel->setCurrentPath("/d");
    desktop.walks.finishAll({10, 1});
    for (int i = 0; i < 10; ++i) desktop.timers.tickAll();
    EXPECT_EQ(desktop.mainQueue.size(), count);
    desktop.mainQueue.runAll();
    EXPECT_EQ(desktop.walks.walks.size(), count);
    EXPECT_FALSE(panel->isCalculatingSizes());
}

TEST_F(OvPanelViewSpinner, aSilencedRowIsAskedForOnlyWhenItsLastProgressHasBeenServed) {
    desktop.files.addFolder("/home/ann2", "sub");
    desktop.files.addFolder("/home/ann", "docs");
    const auto other = OvPanelView::make(desktop.ports(), *desktop.engine);
    other->setCurrentPath("/home/ann");
    panel->setCurrentPath("/home/ann2");
    desktop.walks.walkOf("/home/ann2/sub").progress({10, 1});
    other->setCurrentPath("/elsewhere");
    const std::size_t walks = desktop.walks.walks.size();
    desktop.timers.tickAll();
    EXPECT_EQ(desktop.walks.walks.size(), walks);
    desktop.mainQueue.runAll();
    desktop.timers.tickAll();
    EXPECT_EQ(desktop.walks.walks.size(), walks + 1);
}

TEST_F(OvPanelViewSpinner, aRowWhoseWalkTheOtherPanelCancelledByPrefixIsAskedForAgain) {
    desktop.files.addFolder("/home/ann2", "sub");
    desktop.files.addFolder("/home/ann", "docs");
    desktop.files.addFile("/elsewhere", "x");
    const auto other = OvPanelView::make(desktop.ports(), *desktop.engine);
    other->setCurrentPath("/home/ann");
    panel->setCurrentPath("/home/ann2");
    other->setCurrentPath("/elsewhere");
    EXPECT_TRUE(desktop.walks.walkOf("/home/ann2/sub").isCancelled());
    desktop.timers.tickAll();
    EXPECT_FALSE(desktop.walks.walkOf("/home/ann2/sub").isCancelled());
    finishWalk("/home/ann2/sub", 33, 3);
    EXPECT_EQ(item("sub")->vantrelState, VantrelState(state::Calculated{33, 3}));
    EXPECT_FALSE(panel->isCalculatingSizes());
}

TEST_F(OvPanelViewSpinner, aRowSilencedByAWalkWhoseRootCouldNotBeOpenedIsAskedForAgain) {
    desktop.files.addFolder("/d", "sub");
    const auto other = OvPanelView::make(desktop.ports(), *desktop.engine);
    panel->setCurrentPath("/d");
    other->setCurrentPath("/d");
    desktop.walks.walks[1].failToOpenRoot();
    desktop.mainQueue.runAll();
    desktop.timers.tickAll();
    ASSERT_EQ(desktop.walks.walks.size(), 3U);
    desktop.walks.walks[2].failToOpenRoot();
    desktop.mainQueue.runAll();
    EXPECT_EQ(item("sub")->vantrelState, VantrelState(state::Calculated{0, 0}));
}

// They may wait for a thread, which the engine has to be given the occasion to ask for; this one is not lent.
TEST_F(OvPanelViewSpinner, eachTickLetsTheWalksCatchUpWhileSizesAreAwaited) {
    desktop.files.addFolder("/d", "sub");
    panel->setCurrentPath("/d");
    desktop.timers.tickAll();
    desktop.timers.tickAll();
    EXPECT_THAT(desktop.walks.lentTimes, testing::ElementsAre(Seconds(0), Seconds(0)));
    desktop.walks.finishAll({10, 1});
    desktop.mainQueue.runAll();
    desktop.timers.tickAll();
    EXPECT_EQ(desktop.walks.lentTimes.size(), 2U);
}

TEST_F(OvPanelViewSpinner, twoPanelsOnTheSameFolderBothEndWithAllTotals) {
    for (const char* name : {"a", "b", "c"}) desktop.files.addFolder("/home", name);
    const auto other = OvPanelView::make(desktop.ports(), *desktop.engine);
    panel->setCurrentPath("/home");
    other->setCurrentPath("/home");
    for (int turn = 0; turn < 4; ++turn) {
        desktop.walks.finishAll({10, 1});
        desktop.mainQueue.runAll();
        desktop.timers.tickAll();
        desktop.mainQueue.runAll();
    }
    EXPECT_FALSE(panel->isCalculatingSizes());
    EXPECT_FALSE(other->isCalculatingSizes());
    for (const auto& row : other->items()) {
        if (!row->isParentDir) {
            EXPECT_EQ(row->vantrelState, VantrelState(state::Calculated{10, 1}));
        }
    }
}

}  // namespace
}  // namespace vantrel
