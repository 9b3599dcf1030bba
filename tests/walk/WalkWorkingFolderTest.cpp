#include <chrono>
#include <filesystem>
#include <thread>

#include "walk/WalkFixture.h"

namespace vantrel::test {
namespace {

class WalkWorkingFolder : public EveryReader {};
VANTREL_FOR_EVERY_READER(WalkWorkingFolder);

// Enough names for one batch to be worth a working folder of the thread's own.
void makeManyFiles(const TemporaryFolder& folder) {
    for (int i = 0; i < 60; ++i) folder.makeFile("a file with a name of some length " + std::to_string(i));
}

TEST_P(WalkWorkingFolder, takesARelativeRootFromTheWorkingFolderWhateverWasWalkedBefore) {
    makeManyFiles(folder);
    const std::string before = std::filesystem::current_path();
    const TemporaryFolder working;
    working.makeFolder("relative");
    working.makeFile("relative/file");
    std::filesystem::current_path(working.path());
    {
        auto single = options();
        single.threads = 1;
        WalkPool pool(clock, single);
        EXPECT_EQ(submit(pool, folder.path()).record->waitForEnd(), finished(0, 60));
        EXPECT_EQ(submit(pool, "relative").record->waitForEnd(), finished(0, 1));
        EXPECT_EQ(submit(pool, folder.path()).record->waitForEnd(), finished(0, 60));
        EXPECT_EQ(submit(pool, "./relative").record->waitForEnd(), finished(0, 1));
    }
    EXPECT_EQ(std::filesystem::current_path(), working.path());
    std::filesystem::current_path(before);
}

// Whether a thread of this process has its working folder at or below `path`.
bool isWorkingFolderOfAThread(const std::string& path) {
    std::error_code gone;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        const std::string folder = std::filesystem::read_symlink(task.path() / "cwd", gone);
        if (folder.starts_with(path)) return true;
    }
    return false;
}

TEST_P(WalkWorkingFolder, letsGoOfTheFoldersOfAFinishedWalkSoThatTheyCanBeUnmounted) {
    if (!std::filesystem::exists("/proc/self/task")) GTEST_SKIP() << "no /proc/self/task here";
    makeManyFiles(folder);
    WalkPool pool(clock, options());
    EXPECT_EQ(submit(pool, folder.path()).record->waitForEnd(), finished(0, 60));
    const auto limit = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (isWorkingFolderOfAThread(folder.path()) && std::chrono::steady_clock::now() < limit)
        std::this_thread::yield();
    EXPECT_FALSE(isWorkingFolderOfAThread(folder.path()));
}

}  // namespace
}  // namespace vantrel::test
