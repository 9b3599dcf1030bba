#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/PanelFixture.h"

namespace vantrel {
namespace {

using test::Cursor;
using test::fileEntry;
using test::folderEntry;
using testing::ElementsAre;
using testing::IsEmpty;

class OvPanelViewListing : public test::PanelTest {};

TEST_F(OvPanelViewListing, aNewPanelShowsNothingAndStartsWithItsDefaults) {
    EXPECT_EQ(panel->currentPath(), "");
    EXPECT_FALSE(panel->isActivePanel());
    EXPECT_THAT(panel->items(), IsEmpty());
    EXPECT_EQ(panel->selectedIndex(), 0);
    EXPECT_EQ(panel->scrollOffset(), 0);
    EXPECT_EQ(panel->sortField(), SortField::name);
    EXPECT_EQ(panel->sortDirection(), SortDirection::ascending);
    EXPECT_EQ(panel->sizeDisplayMode(), SizeDisplayMode::humanReadable);
    EXPECT_FALSE(panel->showHiddenFiles());
    EXPECT_EQ(panel->spinnerFrame(), 0);
    EXPECT_EQ(OvPanelView::rowHeight, 20);
    EXPECT_EQ(OvPanelView::headerHeight, 24);
    EXPECT_EQ(OvPanelView::topBarHeight, 24);
    EXPECT_EQ(OvPanelView::bottomBarHeight, 24);
    EXPECT_EQ(panel->retroFont(), (Font{"Menlo", 13, FontWeight::regular}));
    EXPECT_EQ(panel->boldRetroFont(), (Font{"Menlo", 13, FontWeight::bold}));
    EXPECT_THAT(desktop.files.listedFolders, IsEmpty());
}

TEST_F(OvPanelViewListing, aFolderIsListedWithItsParentRowFirst) {
    desktop.files.addFile("/d", "b.txt");
    desktop.files.addFolder("/d", "sub");
    panel->setCurrentPath("/d");
    EXPECT_THAT(names(), ElementsAre("..", "sub", "b.txt"));
    EXPECT_TRUE(panel->items()[0]->isParentDir);
    EXPECT_EQ(panel->items()[0]->path, "/");
    EXPECT_EQ(item("sub")->path, "/d/sub");
    EXPECT_FALSE(item("sub")->isParentDir);
}

TEST_F(OvPanelViewListing, atTheRootThereIsNoParentRowAndTheCursorStandsOnRowZero) {
    desktop.files.addFolder("/", "usr");
    desktop.files.addFolder("/", "home");
    panel->setCurrentPath("/");
    EXPECT_THAT(names(), ElementsAre("home", "usr"));
    EXPECT_EQ(item("usr")->path, "/usr");
    EXPECT_EQ(panel->selectedIndex(), 0);
}

TEST_F(OvPanelViewListing, onlyTheExactRootHasNoParentRow) {
    desktop.files.addFolder("//", "usr");
    panel->setCurrentPath("//");
    EXPECT_THAT(names(), ElementsAre("..", "usr"));
}

TEST_F(OvPanelViewListing, dotEntriesAreHiddenUntilAskedForAndAreNotEvenLookedAt) {
    desktop.files.addFile("/d", ".profile");
    desktop.files.addFile("/d", "plain");
    panel->setCurrentPath("/d");
    EXPECT_THAT(names(), ElementsAre("..", "plain"));
    EXPECT_THAT(desktop.files.inspectedNames, ElementsAre("plain"));
    panel->setShowHiddenFiles(true);
    EXPECT_THAT(names(), ElementsAre("..", ".profile", "plain"));
    EXPECT_TRUE(item(".profile")->isHidden);
    EXPECT_FALSE(item("plain")->isHidden);
}

TEST_F(OvPanelViewListing, anEntryWhoseTargetDoesNotExistIsNotListed) {
    DirectoryEntry dangling = fileEntry("dangling");
    dangling.target = PathTarget::missing;
    desktop.files.add("/d", dangling);
    desktop.files.addFile("/d", "real");
    panel->setCurrentPath("/d");
    EXPECT_THAT(names(), ElementsAre("..", "real"));
}

TEST_F(OvPanelViewListing, aLinkToAFolderIsAFolderAndALinkAndIsMeasured) {
    DirectoryEntry link = folderEntry("link");
    link.attributes->link = LinkKind::symbolicLink;
    desktop.files.add("/d", link);
    panel->setCurrentPath("/d");
    EXPECT_TRUE(item("link")->isDirectory);
    EXPECT_TRUE(item("link")->isSymlink);
    EXPECT_THAT(desktop.walks.roots(), ElementsAre("/d/link"));
}

TEST_F(OvPanelViewListing, anEntrysOwnAttributesFillItsRow) {
    using namespace std::chrono;
    DirectoryEntry script = fileEntry("run.sh", 4242);
    script.attributes->modificationDate = sys_days(2020y / January / 2);
    script.attributes->posixPermissions = 0744;
    desktop.files.add("/d", script);
    panel->setCurrentPath("/d");
    const auto row = item("run.sh");
    EXPECT_EQ(row->size, 4242);
    EXPECT_EQ(row->modDate, FileTime(sys_days(2020y / January / 2)));
    EXPECT_TRUE(row->isExecutable);
    EXPECT_FALSE(row->isDirectory);
    EXPECT_FALSE(row->isSymlink);
    EXPECT_EQ(row->fileExtension, "sh");
}

TEST_F(OvPanelViewListing, anyOfTheThreeExecuteBitsMakesARowExecutableAndFoldersUsuallyAre) {
    for (const auto& [name, bits] : std::map<std::string, std::uint32_t>{
             {"none", 0666}, {"owner", 0100}, {"group", 0010}, {"others", 0001}}) {
        DirectoryEntry entry = fileEntry(name);
        entry.attributes->posixPermissions = bits;
        desktop.files.add("/d", entry);
    }
    desktop.files.addFolder("/d", "folder");
    panel->setCurrentPath("/d");
    EXPECT_FALSE(item("none")->isExecutable);
    EXPECT_TRUE(item("owner")->isExecutable);
    EXPECT_TRUE(item("group")->isExecutable);
    EXPECT_TRUE(item("others")->isExecutable);
    EXPECT_TRUE(item("folder")->isExecutable);
}

TEST_F(OvPanelViewListing, anEntryWhoseAttributesCannotBeReadIsKeptWithDefaults) {
    DirectoryEntry locked = fileEntry("locked", 99);
    locked.attributes.reset();
    desktop.files.add("/d", locked);
    const auto before = std::chrono::system_clock::now();
    panel->setCurrentPath("/d");
    const auto row = item("locked");
    EXPECT_EQ(row->size, 0);
    EXPECT_FALSE(row->isExecutable);
    EXPECT_FALSE(row->isSymlink);
    EXPECT_GE(row->modDate, before);
    EXPECT_LE(row->modDate, std::chrono::system_clock::now());
}

TEST_F(OvPanelViewListing, aFilesStateIsParentAndTheEngineIsNotAskedForIt) {
    desktop.files.addFile("/d", "file");
    panel->setCurrentPath("/d");
    EXPECT_EQ(item("file")->vantrelState, VantrelState(state::Parent{}));
    EXPECT_THAT(desktop.walks.roots(), IsEmpty());
}

TEST_F(OvPanelViewListing, aFolderThatCannotBeReadPrintsOneLineAndShowsOnlyItsParentRow) {
    desktop.files.makeUnreadable("/locked");
    panel->setCurrentPath("/locked");
    EXPECT_THAT(names(), ElementsAre(".."));
    EXPECT_THAT(desktop.output.lines, ElementsAre("Error reading directory /locked: Permission denied"));
    EXPECT_EQ(panel->selectedIndex(), 0);
}

TEST_F(OvPanelViewListing, aRootThatCannotBeReadShowsNothing) {
    desktop.files.makeUnreadable("/");
    panel->setCurrentPath("/");
    EXPECT_THAT(panel->items(), IsEmpty());
    EXPECT_EQ(panel->selectedIndex(), 0);
    EXPECT_EQ(panel->selectedItem(), nullptr);
}

TEST_F(OvPanelViewListing, theCursorOfAFreshFolderStandsOnTheFirstRealEntry) {
    desktop.files.addFile("/d", "b");
    desktop.files.addFile("/d", "a");
    panel->setCurrentPath("/d");
    EXPECT_EQ(panel->selectedIndex(), 1);
    EXPECT_EQ(selectedName(), "a");
}

TEST_F(OvPanelViewListing, inAFolderWithOnlyTheParentRowTheCursorStandsOnIt) {
    desktop.files.clear("/empty");
    panel->setCurrentPath("/empty");
    EXPECT_THAT(names(), ElementsAre(".."));
    EXPECT_EQ(panel->selectedIndex(), 0);
}

TEST_F(OvPanelViewListing, theNameToKeepIsSearchedExactlyAndLetterCaseCounts) {
    for (const char* name : {"alpha", "Beta", "gamma"}) desktop.files.addFile("/d", name);
    panel->setCurrentPath("/d");
    panel->loadDirectory("gamma");
    EXPECT_EQ(selectedName(), "gamma");
    panel->loadDirectory("beta");
    EXPECT_EQ(selectedName(), "alpha");
    panel->loadDirectory("Beta");
    EXPECT_EQ(selectedName(), "Beta");
    panel->loadDirectory(std::nullopt);
    EXPECT_EQ(selectedName(), "alpha");
}

TEST_F(OvPanelViewListing, theNameToKeepMayBeTheParentRow) {
    desktop.files.addFile("/d", "alpha");
    panel->setCurrentPath("/d");
    panel->loadDirectory("..");
    EXPECT_EQ(panel->selectedIndex(), 0);
}

TEST_F(OvPanelViewListing, aLoadScrollsToTheCursorAndAsksForARedraw) {
    setRows(5);
    showNumberedFiles(30);
    host.redraws = 0;
    panel->loadDirectory("f020");
    EXPECT_EQ(cursor(), (Cursor{21, 17}));
    EXPECT_GT(host.redraws, 0);
    desktop.files.clear("/d");
    addNumberedFiles(6);
    panel->loadDirectory("f005");
    EXPECT_EQ(cursor(), (Cursor{6, 2})) << "a shorter list is not scrolled beyond its end";
}

TEST_F(OvPanelViewListing, togglingHiddenFilesPutsTheCursorBackOnTheFirstRealEntry) {
    for (const char* name : {"alpha", "beta", "gamma"}) desktop.files.addFile("/d", name);
    panel->setCurrentPath("/d");
    panel->end();
    panel->setShowHiddenFiles(true);
    EXPECT_EQ(selectedName(), "alpha");
    panel->end();
    panel->setShowHiddenFiles(true);
    EXPECT_EQ(selectedName(), "alpha") << "the same value is an assignment too";
}

TEST_F(OvPanelViewListing, everySubfolderIsAskedForInDisplayOrderAndIsCalculatingAtOnce) {
    for (const char* name : {"zeta", "alpha", "mid"}) desktop.files.addFolder("/d", name);
    panel->setCurrentPath("/d");
    EXPECT_THAT(desktop.walks.roots(), ElementsAre("/d/alpha", "/d/mid", "/d/zeta"));
    EXPECT_EQ(item("mid")->vantrelState, VantrelState(state::Calculating{0, 0}));
    EXPECT_EQ(panel->items()[0]->vantrelState, VantrelState(state::Parent{}));
    EXPECT_TRUE(panel->isCalculatingSizes());
}

TEST_F(OvPanelViewListing, progressAndTheFinalTotalLandInTheRowAndAskForARedraw) {
    desktop.files.addFolder("/d", "sub");
    panel->setCurrentPath("/d");
    host.redraws = 0;
    desktop.walks.walkOf("/d/sub").progress({100, 2});
    EXPECT_EQ(item("sub")->vantrelState, VantrelState(state::Calculating{0, 0}));
    desktop.mainQueue.runAll();
    EXPECT_EQ(item("sub")->vantrelState, VantrelState(state::Calculating{100, 2}));
    EXPECT_EQ(host.redraws, 1);
    finishWalk("/d/sub", 300, 4);
    EXPECT_EQ(item("sub")->vantrelState, VantrelState(state::Calculated{300, 4}));
    EXPECT_EQ(host.redraws, 2);
    EXPECT_EQ(host.redrawsInPassing, 2);
    EXPECT_FALSE(panel->isCalculatingSizes());
}

TEST_F(OvPanelViewListing, sortedBySizeEachCompletionReordersAtOnceAndProgressNever) {
    for (const char* name : {"a", "b", "c"}) desktop.files.addFolder("/d", name);
    desktop.files.addFile("/d", "small", 1);
    desktop.files.addFile("/d", "large", 1'000'000);
    panel->setCurrentPath("/d");
    panel->setSortField(SortField::size);
    EXPECT_THAT(names(), ElementsAre("..", "a", "b", "c", "large", "small"));
    desktop.walks.walkOf("/d/c").progress({50, 1});
    desktop.mainQueue.runAll();
    EXPECT_THAT(names(), ElementsAre("..", "a", "b", "c", "large", "small"));
    finishWalk("/d/b", 10);
    EXPECT_THAT(names(), ElementsAre("..", "c", "b", "a", "large", "small"));
    finishWalk("/d/a", 70);
    EXPECT_THAT(names(), ElementsAre("..", "a", "c", "b", "large", "small"));
}

TEST_F(OvPanelViewListing, sortedByNameACompletionLeavesTheOrderAlone) {
    for (const char* name : {"a", "b"}) desktop.files.addFolder("/d", name);
    panel->setCurrentPath("/d");
    finishWalk("/d/b", 1000);
    EXPECT_THAT(names(), ElementsAre("..", "a", "b"));
}

TEST_F(OvPanelViewListing, aFreshResultComesFromTheEnginesCache) {
    desktop.files.addFolder("/d", "sub");
    panel->setCurrentPath("/d");
    finishWalk("/d/sub", 300, 4);
    panel->loadDirectory();
    EXPECT_EQ(item("sub")->vantrelState, VantrelState(state::Calculating{0, 0}));
    desktop.mainQueue.runAll();
    EXPECT_EQ(item("sub")->vantrelState, VantrelState(state::Calculated{300, 4}));
    EXPECT_EQ(desktop.walks.walks.size(), 1U);
}

TEST_F(OvPanelViewListing, leavingAFolderCancelsTheWalksBelowIt) {
    desktop.files.addFolder("/d", "sub");
    desktop.files.addFolder("/e", "other");
    panel->setCurrentPath("/d");
    panel->setCurrentPath("/e");
    EXPECT_TRUE(desktop.walks.walkOf("/d/sub").isCancelled());
    EXPECT_FALSE(desktop.walks.walkOf("/e/other").isCancelled());
}

TEST_F(OvPanelViewListing, enteringAFolderBelowCancelsBeforeItAsksForTheNewSizes) {
    desktop.files.addFolder("/d", "sub");
    desktop.files.addFolder("/d/sub", "inner");
    panel->setCurrentPath("/d");
    panel->setCurrentPath("/d/sub");
    EXPECT_TRUE(desktop.walks.walkOf("/d/sub").isCancelled());
    EXPECT_FALSE(desktop.walks.walkOf("/d/sub/inner").isCancelled());
}

TEST_F(OvPanelViewListing, aReloadOfTheSameFolderReplacesItsWalksOneByOne) {
    desktop.files.addFolder("/d", "sub");
    panel->setCurrentPath("/d");
    panel->loadDirectory();
    ASSERT_THAT(desktop.walks.roots(), ElementsAre("/d/sub", "/d/sub"));
    EXPECT_TRUE(desktop.walks.walks[0].isCancelled());
    EXPECT_FALSE(desktop.walks.walks[1].isCancelled());
}

TEST_F(OvPanelViewListing, theFirstPathHasNothingToCancel) {
    desktop.engine->calculateVantrel("/elsewhere", [](std::int64_t, std::int64_t, bool) {});
    desktop.files.addFile("/d", "x");
    panel->setCurrentPath("/d");
    EXPECT_FALSE(desktop.walks.walkOf("/elsewhere").isCancelled());
}

TEST_F(OvPanelViewListing, assigningTheSamePathDoesNothing) {
    desktop.files.addFolder("/d", "sub");
    panel->setCurrentPath("/d");
    delegate->calls.clear();
    panel->setCurrentPath("/d");
    EXPECT_THAT(desktop.files.listedFolders, ElementsAre("/d"));
    EXPECT_FALSE(desktop.walks.walkOf("/d/sub").isCancelled());
    EXPECT_THAT(delegate->calls, IsEmpty());
}

TEST_F(OvPanelViewListing, theDelegateHearsOfANewPathAfterItsFolderHasBeenLoaded) {
    desktop.files.addFile("/d", "x");
    panel->setCurrentPath("/d");
    EXPECT_THAT(delegate->calls, ElementsAre("path /d"));
    EXPECT_EQ(delegate->rowsAtPathChange, 2U);
}

TEST_F(OvPanelViewListing, everySortAssignmentSortsAgainEvenWithTheSameValue) {
    for (const char* name : {"a", "b", "c"}) desktop.files.addFile("/d", name, 10);
    panel->setCurrentPath("/d");
    panel->setSortField(SortField::size);
    panel->setSortDirection(SortDirection::descending);
    // Equal keys under the negated order: every sort turns them round.
    EXPECT_THAT(names(), ElementsAre("..", "c", "b", "a"));
    panel->setSortDirection(SortDirection::descending);
    EXPECT_THAT(names(), ElementsAre("..", "a", "b", "c"));
    panel->setSortField(SortField::size);
    EXPECT_THAT(names(), ElementsAre("..", "c", "b", "a"));
}

TEST_F(OvPanelViewListing, settingASortFieldAModeOrTheActiveFlagAsksForARedraw) {
    desktop.files.addFile("/d", "a");
    panel->setCurrentPath("/d");
    host.redraws = 0;
    panel->setSortField(SortField::date);
    panel->setSortDirection(SortDirection::ascending);
    panel->setSizeDisplayMode(SizeDisplayMode::rawBytes);
    panel->setIsActivePanel(true);
    EXPECT_EQ(host.redraws, 4);
}

TEST_F(OvPanelViewListing, aReportForARowThatHasLeftTheListIsDropped) {
    desktop.files.addFolder("/d", "sub");
    panel->setCurrentPath("/d");
    desktop.walks.walkOf("/d/sub").progress({100, 2});
    panel->loadDirectory();
    desktop.mainQueue.runAll();
    EXPECT_EQ(item("sub")->vantrelState, VantrelState(state::Calculating{0, 0}));
}

TEST_F(OvPanelViewListing, aReportForAPanelThatIsGoneIsDropped) {
    desktop.files.addFolder("/d", "sub");
    panel->setCurrentPath("/d");
    desktop.walks.walkOf("/d/sub").finish({100, 2});
    const std::weak_ptr<OvPanelView> gone = panel;
    panel.reset();
    EXPECT_TRUE(gone.expired());
    desktop.mainQueue.runAll();
    EXPECT_TRUE(desktop.timers.running.empty());
}

TEST_F(OvPanelViewListing, namesAreKeptAsBytes) {
    for (const char* name : {"caf\xE9.txt", "two\nlines", "\x1B[31mred"}) desktop.files.addFile("/d", name);
    desktop.files.addFolder("/d", "\xFF\xFE");
    panel->setCurrentPath("/d");
    EXPECT_EQ(item("caf\xE9.txt")->path, "/d/caf\xE9.txt");
    EXPECT_EQ(item("two\nlines")->path, "/d/two\nlines");
    EXPECT_EQ(item("\xFF\xFE")->path, "/d/\xFF\xFE");
    EXPECT_THAT(desktop.walks.roots(), ElementsAre("/d/\xFF\xFE"));
    panel->loadDirectory("caf\xE9.txt");
    EXPECT_EQ(selectedName(), "caf\xE9.txt");
}

}  // namespace
}  // namespace vantrel
