#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "support/ManualCalendar.h"
#include "walk/KnownTotals.h"
#include "walk/WalkFixture.h"

// Walks above, below and beside each other on several threads, some of them cancelled, while what they count
// is changed: what they leave is right at any time.

namespace vantrel::test {
namespace {

namespace fs = std::filesystem;

class ChangingFolders : public testing::TestWithParam<unsigned> {
protected:
    ChangingFolders() {
        add(folder.path(), 3);
        for (const std::string& name : folders) std::ofstream(name + "/file") << "x";
    }

    void add(const std::string& path, int levels) {
        folders.push_back(path);
        if (levels == 0) return;
        for (const char* name : {"a", "b", "c"}) {
            fs::create_directory(path + "/" + name);
            add(path + "/" + name, levels - 1);
        }
    }

    const std::string& anyFolder() { return folders[random() % folders.size()]; }

    static FileIdentity identityOf(const std::string& path) {
        struct stat status {};
        EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
        return {status.st_dev, status.st_ino};
    }

    /// One file comes or goes, and who remembers hears of it.
    void change() {
        const fs::path changed = anyFolder();
        const fs::path file = changed / "more";
        if (!fs::remove(file)) std::ofstream(file) << "x";
        std::vector<FileIdentity> holding;
        for (fs::path above = changed; above != fs::path(folder.path()).parent_path();
             above = above.parent_path())
            holding.push_back(identityOf(above));
        known.forget(holding);
    }

    void begin() {
        SubmittedWalk walk = submit(pool, anyFolder());
        if (random() % 3 == 0) walk.stop.request_stop();
        walks.push_back(std::move(walk));
    }

    void cancelOne() { walks[random() % walks.size()].stop.request_stop(); }

    void settle() {
        for (const SubmittedWalk& walk : walks) ASSERT_TRUE(walk.record->waitForDestruction());
        walks.clear();
    }

    static std::int64_t itemsIn(const std::string& path) {
        return std::count_if(fs::recursive_directory_iterator(path), fs::recursive_directory_iterator(),
                             [](const fs::directory_entry& entry) { return entry.is_regular_file(); });
    }

    int expectRight() {
        int all = 0;
        for (const std::string& path : folders) {
            const auto found = known.find(identityOf(path), CalendarTime());
            if (!found) continue;
            EXPECT_EQ(found->totals.items, itemsIn(path)) << path;
            ++all;
        }
        return all;
    }

    WalkPool::Options options() {
        auto options = nativeWalks();
        options.threads = 4;
        options.known = &known;
        return options;
    }

    TemporaryFolder folder{quickPlace()};
    std::vector<std::string> folders;
    ManualClock clock;
    // No change is seen in a folder's time stamp.
    ManualCalendar calendar{clock, anHourAheadOf(clock)};
    KnownTotals known{clock, calendar};
    WalkPool pool{clock, options()};
    std::vector<SubmittedWalk> walks;
    std::mt19937 random{GetParam()};
};

TEST_P(ChangingFolders, areRememberedAsTheyAre) {
    int known = 0;
    for (int round = 0; round < 60 && !HasFailure(); ++round) {
        begin();
        for (int step = 0; step < 12; ++step) {
            switch (random() % 4) {
                case 0:
                    change();
                    break;
                case 1:
                    cancelOne();
                    break;
                default:
                    begin();
            }
        }
        if (random() % 2 == 0) expectRight();  // while walks are under way
        settle();
        known += expectRight();
    }
    EXPECT_GT(known, 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, ChangingFolders, testing::Range(0U, 8U));

}  // namespace
}  // namespace vantrel::test
