#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>

#include "base/PathLocation.h"
#include "walk/ForwardingReader.h"
#include "walk/WalkFixture.h"

namespace vantrel::test {
namespace {

// An empty file, however long its path is.
void makeFileAt(const std::string& path) {
    const auto location = PathLocation::of(path);
    ASSERT_TRUE(location);
    ASSERT_TRUE(FileDescriptor(
        ::openat(location.value().folder(), location.value().path(), O_WRONLY | O_CREAT | O_EXCL, 0644)));
}

class WalkDepth : public EveryReader {
protected:
    // A chain of folders "down", each with two further folders of one file: 3 files for 2 levels.
    void makeComb(int levels) const {
        std::string path;
        for (int i = 0; i < levels; ++i) {
            for (const char* name : {"left", "right"}) {
                folder.makeFolder(path + name);
                folder.makeFile(path + name + "/file");
            }
            folder.makeFolder(path + "down");
            path += "down/";
        }
    }

    WalkPool::Options scarce(int budget) const {
        auto scarce = options();
        scarce.descriptorBudget = budget;
        return scarce;
    }
};
VANTREL_FOR_EVERY_READER(WalkDepth);

TEST_P(WalkDepth, sumsTreesDeeperThanPathMax) {
    const std::string innermost = folder.makeDeepFolder(150, "a folder name of 32 bytes ......");
    ASSERT_GT(innermost.size(), 4096U);
    makeFileAt(innermost + "/file");
    EXPECT_EQ(walk(folder.path()), finished(0, 1));
}

TEST_P(WalkDepth, walksARootWhosePathIsLongerThanPathMax) {
    const std::string innermost = folder.makeDeepFolder(150, "a folder name of 32 bytes ......");
    makeFileAt(innermost + "/file");
    EXPECT_EQ(walk(innermost), finished(0, 1));
    EXPECT_EQ(walk(innermost.substr(0, innermost.size() - 33)), finished(0, 1));
}

TEST_P(WalkDepth, survivesAChainOfAThousandFolders) {
    makeFileAt(folder.makeDeepFolder(1000, "d") + "/file");
    EXPECT_EQ(walk(folder.path()), finished(0, 1));
    EXPECT_EQ(walk(folder.path(), scarce(0)), finished(0, 1));
}

TEST_P(WalkDepth, sumsACombWithNextToNoDescriptors) {
    makeComb(40);
    for (const int budget : {0, 1, 2, 7}) {
        EXPECT_EQ(walk(folder.path(), scarce(budget)), finished(0, 80)) << budget;
    }
}

TEST_P(WalkDepth, reopensByPathsLongerThanPathMax) {
    const std::string name = "a folder name of 32 bytes ......";
    std::string path = folder.path();
    folder.makeDeepFolder(140, name);
    for (int i = 0; i < 140; ++i) {
        path += '/' + name;
        makeFileAt(path + "/file");
        const auto location = PathLocation::of(path + "/side");
        ASSERT_TRUE(location);
        ASSERT_EQ(::mkdirat(location.value().folder(), location.value().path(), 0755), 0);
        makeFileAt(path + "/side/file");
    }
    EXPECT_EQ(walk(folder.path(), scarce(1)), finished(0, 280));
}

TEST_P(WalkDepth, readsAWideFolderWithoutADescriptorToSpare) {
    const std::string filler(250, 'n');
    for (int i = 0; i < 300; ++i) {
        const std::string name = std::to_string(i);
        if (i % 2 == 0) {
            folder.makeFolder(name + filler);
            folder.makeFile(name + filler + "/file");
        } else {
            folder.makeFile(name + filler);
        }
    }
    EXPECT_EQ(walk(folder.path(), scarce(0)), finished(0, 300));
    EXPECT_EQ(walk(folder.path()), finished(0, 300));
}

TEST_P(WalkDepth, keepsNoMoreDescriptorsThanItsBudgetAndAFewForEachThread) {
    makeComb(40);
    for (const int budget : {0, 10}) {
        const HurryingClock hurrying;
        const std::size_t before = openDescriptors();
        std::size_t most = 0;
        WalkPool pool(hurrying, scarce(budget));
        const auto walk = submit(pool, folder.path(),
                                 [&](WalkTotals) { most = std::max(most, openDescriptors() - before); });
        EXPECT_EQ(walk.record->waitForEnd(), finished(0, 80));
        EXPECT_GT(most, 0U);
        // Per thread: the folder it reads (twice with the portable reader), and an ancestor and its place
        // while it finds one again. One more is for counting them.
        EXPECT_LE(most, static_cast<std::size_t>(budget + 4 * 4 + 1));
    }
}

TEST_P(WalkDepth, hasClosedAllDescriptorsAtTheEnd) {
    makeComb(30);
    WalkPool pool(clock, scarce(3));
    const std::size_t before = openDescriptors();
    const auto finishing = submit(pool, folder.path());
    EXPECT_EQ(finishing.record->waitForEnd(), finished(0, 60));
    EXPECT_EQ(openDescriptors(), before);

    const auto cancelled = submit(pool, folder.path());
    cancelled.stop.request_stop();
    ASSERT_TRUE(cancelled.record->waitForEnd());
    EXPECT_EQ(openDescriptors(), before);
}

class ScopedDescriptorLimit {
public:
    explicit ScopedDescriptorLimit(rlim_t limit) {
        ::getrlimit(RLIMIT_NOFILE, &former_);
        const rlimit lowered{limit, former_.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &lowered), 0);
    }
    ~ScopedDescriptorLimit() { ::setrlimit(RLIMIT_NOFILE, &former_); }

private:
    rlimit former_{};
};

TEST_P(WalkDepth, losesNothingWhenTheProcessRunsOutOfDescriptors) {
    makeComb(40);
    WalkPool pool(clock, scarce(1000));
    // Room for six: not enough for four threads and the levels that they would keep open.
    const ScopedDescriptorLimit limit(openDescriptors() - 1 + 6);
    const auto first = submit(pool, folder.path());
    const auto second = submit(pool, folder.path());
    EXPECT_EQ(first.record->waitForEnd(), finished(0, 80));
    EXPECT_EQ(second.record->waitForEnd(), finished(0, 80));
}

TEST_P(WalkDepth, isNotLedElsewhereByARenamedTree) {
    // With no descriptor to spare "tree" is given up after it was read and opened anew for its sub-folders.
    for (const char* name : {"tree", "tree/a", "tree/b", "tree/c", "other", "other/a", "other/b", "other/c"})
        folder.makeFolder(name);
    for (const char* name : {"tree/a/1", "tree/b/1", "tree/c/1"}) folder.makeFile(name);
    for (const char* name : {"other/a/1", "other/b/1", "other/c/1"}) {
        folder.makeFile(name);
        folder.makeFile(std::string(name) + "x");
        folder.makeFile(std::string(name) + "y");
    }
    const HurryingClock hurrying;
    auto one = scarce(0);
    one.threads = 1;
    TemporaryFolder outside;
    bool renamed = false;
    WalkPool pool(hurrying, one);
    folder.makeFolder("root");
    ASSERT_EQ(::rename(folder.path("tree").c_str(), folder.path("root/tree").c_str()), 0);
    const auto walk = submit(pool, folder.path("root"), [&](WalkTotals soFar) {
        if (soFar.items == 0 || std::exchange(renamed, true)) return;
        EXPECT_EQ(::rename(folder.path("root/tree").c_str(), outside.path("tree").c_str()), 0);
        EXPECT_EQ(::rename(folder.path("other").c_str(), folder.path("root/tree").c_str()), 0);
    });
    // The first file of "tree" was counted before; the rest is no longer below the root.
    EXPECT_EQ(walk.record->waitForEnd(), finished(0, 1));
    EXPECT_TRUE(renamed);
}

}  // namespace
}  // namespace vantrel::test
