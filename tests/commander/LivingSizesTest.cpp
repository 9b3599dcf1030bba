#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/FencedFiles.h"
#include "support/ManualCalendar.h"
#include "support/ManualClock.h"
#include "support/NativeWalks.h"
#include "support/RealFilesWindow.h"
#include "support/ScopedEnvironment.h"
#include "walk/ForwardingReader.h"
#include "walk/KnownTotals.h"
#include "walk/WalkPool.h"

// The whole program but its window, counting real folders on threads: what a person changes shows in every
// size.

namespace vantrel {
namespace {

namespace fs = std::filesystem;

/// What a walk of `folder` has to find, counted plainly.
WalkTotals recount(const std::string& folder) {
    WalkTotals totals;
    for (const auto& entry : fs::recursive_directory_iterator(folder + "/.")) {
        struct stat status {};
        if (::lstat(entry.path().c_str(), &status) != 0 || S_ISDIR(status.st_mode) ||
            S_ISLNK(status.st_mode)) {
            continue;
        }
        totals.bytes += status.st_blocks * 512;
        ++totals.items;
    }
    return totals;
}

/// Whether the row is still of the folder to which its path leads: a link may lead elsewhere by now.
bool isCurrent(const FileItem& row) {
    struct stat status {};
    return ::stat(row.path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           row.place().identity == FileIdentity{status.st_dev, status.st_ino};
}

class LivingSizes : public testing::Test, protected test::RealFilesWindow {
protected:
    // In memory, where the room that a file takes is known at once.
    LivingSizes() : RealFilesWindow(test::quickPlace()), dataHome("XDG_DATA_HOME", folder.path("data")) {
        desktop.engine = VantrelEngine::make({pool, desktop.mainQueue, clock, &known});
        for (const char* name : {"x/a", "x/a/deep", "x/a/deep/er", "x/b", "y/c", "y/c/d", "data"}) {
            folder.makeFolder(name);
        }
        for (const char* name :
             {"x/a/1", "x/a/deep/2", "x/a/deep/er/3", "x/b/4", "y/c/5", "y/c/d/6", "x/7"}) {
            folder.makeFile(name, std::string(5'000, 'x'));
        }
        folder.makeLink("y/link", folder.path("x/a"));
        folder.makeLink("x/b/away", folder.path("y/c"));
    }

    void open() {
        commander = OvCommanderView::make(desktop.portsWith(fenced), *desktop.engine, {0, 0, 1100, 720});
    }

    void answer(Key key, const std::string& input) {
        press(key);
        desktop.mainQueue.endEvent();
        if (desktop.textFields.alive.empty()) return;  // there was nothing to ask about
        desktop.textFields.alive.back()->type(input);
        press(Key::returnKey);
    }

    void trash(OvPanelView& panel, const std::string& name) {
        commander->setActive(panel);
        panel.loadDirectory(name);
        throwAway();
    }

    void throwAway() {
        press(Key::f8);
        if (commander->dialogOverlay()) press(Key::returnKey);
    }

    void settle() {
        ASSERT_TRUE(desktop.mainQueue.runUntil([&] {
            desktop.timers.tickAll();
            return !commander->leftPanel().isCalculatingSizes() &&
                   !commander->rightPanel().isCalculatingSizes();
        }));
    }

    void expectRightSizes(const std::string& when) {
        settle();
        for (const OvPanelView* panel : {&commander->leftPanel(), &commander->rightPanel()}) {
            for (const auto& row : panel->items()) {
                if (!row->isDirectory || row->isParentDir || !isCurrent(*row)) continue;
                const WalkTotals right = recount(row->path);
                EXPECT_EQ(row->vantrelState, VantrelState(state::Calculated{right.bytes, right.items}))
                    << row->path << " " << when;
            }
        }
    }

    WalkPool::Options rememberingWalks() {
        auto options = test::nativeWalks();
        options.known = &known;
        options.makeReader = test::disturbed<test::CountingReader>(options.makeReader, &counts);
        return options;
    }

    /// Everything that was asked for is answered without a walk.
    void expectAllKnown(const std::string& when) {
        const int walks = counts.roots;
        desktop.mainQueue.runAll();
        EXPECT_FALSE(commander->leftPanel().isCalculatingSizes()) << when;
        EXPECT_EQ(counts.roots, walks) << when;
        expectRightSizes(when);
    }

    test::FencedFiles fenced{folder.path()};
    test::ManualClock clock;
    // No change is seen in a folder's time stamp, so that nothing but being told of it helps.
    test::ManualCalendar calendar{clock, test::anHourAheadOf(clock)};
    KnownTotals known{clock, calendar};
    test::CountingReader::Counts counts;
    WalkPool pool{clock, rememberingWalks()};
    const test::ScopedEnvironment dataHome;  // with the trash
};

TEST_F(LivingSizes, whatIsTrashedThreeLevelsDownIsMissingInEverySizeOnTheWayUp) {
    open();
    OvPanelView& panel = commander->leftPanel();
    expectRightSizes("at first");
    for (const char* deeper : {"a", "deep", "er"}) {
        panel.setCurrentPath(panel.currentPath() + "/" + deeper);
        expectRightSizes("on the way down");
    }
    trash(panel, "3");
    ASSERT_FALSE(fs::exists(folder.path("x/a/deep/er/3")));
    while (panel.currentPath() != folder.path()) {
        panel.navigateUp();
        expectRightSizes("on the way up");
    }
}

TEST_F(LivingSizes, whatWasCountedFromAboveIsKnownAtAnyDepth) {
    open();
    OvPanelView& panel = commander->leftPanel();
    panel.setCurrentPath(folder.path());
    expectRightSizes("at first");
    for (const char* deeper : {"x", "a", "deep", "er"}) {
        panel.setCurrentPath(panel.currentPath() + "/" + deeper);
        expectAllKnown("on the way down");
    }
    commander->rightPanel().setCurrentPath(folder.path("x/b"));
    expectAllKnown("in the other panel");
    while (panel.currentPath() != folder.path()) {
        panel.navigateUp();
        expectAllKnown("on the way up");
    }
}

TEST_F(LivingSizes, onTheWayUpOnlyWhatIsNewIsRead) {
    open();
    OvPanelView& panel = commander->leftPanel();
    for (const char* deep : {"x/a/deep", "x/a"}) {
        panel.setCurrentPath(folder.path(deep));
        expectRightSizes("deep down");
    }
    const int entered = counts.folders;
    panel.setCurrentPath(folder.path("x"));
    expectRightSizes("one up");
    EXPECT_EQ(counts.folders, entered) << "below its rows all is known";
    panel.setCurrentPath(folder.path());
    expectRightSizes("two up");
    EXPECT_EQ(counts.folders, entered) << "except what the other panel shows";
}

TEST_F(LivingSizes, afterAChangeOneFolderIsReadForEachLevel) {
    open();
    OvPanelView& panel = commander->leftPanel();
    commander->rightPanel().setCurrentPath(folder.path());
    panel.setCurrentPath(folder.path("x/a/deep"));
    expectRightSizes("at first");
    const int before = counts.folders;
    trash(panel, "2");
    expectRightSizes("after the change");
    // Of the right panel's rows "x" is walked, with "a" and "deep" in it, and the trash is.
    EXPECT_LE(counts.folders - before, 2 + 4);
}

TEST_F(LivingSizes, aChangeThroughALinkShowsInThePanelOfTheFolderItselfAndTheOtherWayRound) {
    open();
    commander->leftPanel().setCurrentPath(folder.path("x"));
    commander->rightPanel().setCurrentPath(folder.path("y/link"));
    expectRightSizes("at first");
    trash(commander->rightPanel(), "deep");
    expectRightSizes("after a change through the link");
    commander->rightPanel().setCurrentPath(folder.path("y"));
    expectRightSizes("one folder up");
    commander->leftPanel().setCurrentPath(folder.path("x/a"));
    trash(commander->leftPanel(), "1");
    expectRightSizes("after a change of what the link leads to");
}

TEST_F(LivingSizes, theTrashGrowsByWhatIsThrownAway) {
    open();
    commander->rightPanel().setCurrentPath(folder.path());
    expectRightSizes("at first");
    trash(commander->leftPanel(), "a");
    ASSERT_TRUE(fs::exists(folder.path("data/Trash/files/a")));
    expectRightSizes("afterwards");
}

/// Random keys in both panels, from a fixed seed.
class RandomHunt : public LivingSizes, public testing::WithParamInterface<unsigned> {
protected:
    // Never from the row "..", and never out of the test's folder.
    void step() {
        OvPanelView& panel = commander->activePanel();
        if (!fs::is_directory(panel.currentPath())) panel.setCurrentPath(folder.path());
        const bool isTop = panel.currentPath() == folder.path();
        const auto rows = static_cast<unsigned>(panel.items().size());
        if (rows > 1) panel.selectRow(1 + below(rows - 1));
        const auto row = panel.selectedItem();
        const bool isItem = rows > 1 && row && row->path != folder.path("data");
        switch (below(12)) {
            case 0:
            case 1:
            case 2:
                return isItem && row->isDirectory ? panel.activateCurrentItem() : void();
            case 3:
                return isTop ? void() : panel.navigateUp();
            case 4:
                return commander->toggleActivePanel();
            case 5:
                return isItem ? throwAway() : void();
            case 6:
                return isItem ? answer(Key::f6, someName()) : void();
            case 7:
                return isItem ? answer(Key::f6, (isTop ? someName() : "..") + "/" + someName()) : void();
            case 8:
            case 9:
                return isItem ? copy() : void();
            case 10:
                return answer(Key::f7, someName() + "/" + someName());
            default:
                return panel.loadDirectory();
        }
    }

    void copy() {
        if (recount(folder.path()).items > 200) return;
        const std::string into =
            below(2) == 0 ? commander->otherPanel().currentPath() : folder.path("y/link");
        answer(Key::f5, into + "/" + someName());
    }

    std::string someName() { return std::string(1, static_cast<char>('a' + below(6))); }
    unsigned below(unsigned limit) { return static_cast<unsigned>(random() % limit); }

    std::mt19937 random{GetParam()};
};

TEST_P(RandomHunt, everySizeOnShowIsRightAfterEachChange) {
    open();
    for (int number = 0; number < 60 && !HasFailure(); ++number) {
        if (commander->dialogOverlay()) press(Key::escape);
        step();
        // What is under way is now and then met by the next step.
        if (below(3) != 0) expectRightSizes("after step " + std::to_string(number));
    }
    expectRightSizes("at the end");
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomHunt, testing::Range(0U, 12U));

/// The same while another program adds and removes files, of which nobody is told, and hours pass.
class RandomHuntInCompany : public RandomHunt {
protected:
    /// How many files a folder itself has held, from which moment on.
    using History = std::vector<std::pair<Seconds, std::int64_t>>;
    struct Bounds {
        std::int64_t least = 0;
        std::int64_t most = 0;
    };

    static FileIdentity identityOf(const fs::path& path) {
        struct stat status {};
        EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
        return {status.st_dev, status.st_ino};
    }

    static std::int64_t ownFiles(const fs::path& path) {
        return std::count_if(fs::directory_iterator(path), fs::directory_iterator(), [](const auto& entry) {
            return entry.symlink_status().type() == fs::file_type::regular;
        });
    }

    static std::vector<fs::path> foldersIn(const fs::path& top) {
        std::vector<fs::path> all{top};
        for (const auto& entry : fs::recursive_directory_iterator(top / ".")) {
            if (entry.symlink_status().type() == fs::file_type::directory) all.push_back(entry.path());
        }
        return all;
    }

    void notice() {
        for (const fs::path& path : foldersIn(folder.path())) {
            History& history = histories[identityOf(path)];
            const std::int64_t now = ownFiles(path);
            if (history.empty() || history.back().second != now) history.emplace_back(clock.now(), now);
        }
    }

    /// Of the numbers that a folder has held within the time for which totals are believed.
    Bounds boundsOf(const fs::path& path) const {
        const History& history = histories.at(identityOf(path));
        Bounds bounds{history.back().second, history.back().second};
        for (std::size_t i = 0; i + 1 < history.size(); ++i) {
            if (clock.now() - history[i + 1].first >= VantrelEngine::cacheLifetime) continue;
            bounds.least = std::min(bounds.least, history[i].second);
            bounds.most = std::max(bounds.most, history[i].second);
        }
        return bounds;
    }

    void meddle() {
        std::vector<fs::path> all = foldersIn(folder.path());
        std::erase_if(all,
                      [&](const fs::path& path) { return path.string().starts_with(folder.path("data")); });
        const fs::path file = all[below(static_cast<unsigned>(all.size()))] / "foreign";
        if (!fs::remove(file)) std::ofstream(file) << "x";
    }

    /// Both panels ask again, so that no figure on show is older than it was when it appeared.
    void expectFiguresOfTheLastMinutes(const std::string& when) {
        for (OvPanelView* panel : {&commander->leftPanel(), &commander->rightPanel()}) panel->loadDirectory();
        settle();
        for (const OvPanelView* panel : {&commander->leftPanel(), &commander->rightPanel()}) {
            for (const auto& row : panel->items()) {
                if (row->isDirectory && !row->isParentDir && isCurrent(*row)) expectWithinBounds(*row, when);
            }
        }
    }

    void expectWithinBounds(const FileItem& row, const std::string& when) {
        Bounds sum;
        for (const fs::path& path : foldersIn(row.path)) {
            const Bounds bounds = boundsOf(path);
            sum.least += bounds.least;
            sum.most += bounds.most;
        }
        const auto* const total = std::get_if<state::Calculated>(&row.vantrelState);
        ASSERT_NE(total, nullptr) << row.path << " " << when;
        EXPECT_GE(total->itemsCount, sum.least) << row.path << " " << when;
        EXPECT_LE(total->itemsCount, sum.most) << row.path << " " << when;
    }

    std::map<FileIdentity, History> histories;
};

TEST_P(RandomHuntInCompany, noFigureThatAppearsIsOlderThanTotalsAreBelieved) {
    open();
    notice();
    for (int number = 0; number < 60 && !HasFailure(); ++number) {
        if (commander->dialogOverlay()) press(Key::escape);
        switch (below(4)) {
            case 0:
                meddle();
                break;
            case 1:
                clock.advance(10.0 * below(40));
                break;
            default:
                step();
        }
        notice();
        if (below(2) == 0) expectFiguresOfTheLastMinutes("after step " + std::to_string(number));
    }
    clock.advance(VantrelEngine::cacheLifetime.count());
    expectFiguresOfTheLastMinutes("at the end");
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomHuntInCompany, testing::Range(0U, 12U));

}  // namespace
}  // namespace vantrel
