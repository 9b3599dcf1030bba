#include "sizes/FolderSizes.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>

#include "sizes/FolderContents.h"
#include "support/ManualClock.h"
#include "support/NativeWalks.h"
#include "support/TemporaryFolder.h"
#include "walk/WalkPool.h"

namespace vantrel::sizes {
namespace {

TEST(FolderContents, namesSubfoldersButNoLinks) {
    const test::TemporaryFolder folder;
    folder.makeFolder("b\xFF");
    folder.makeFolder(".hidden");
    folder.makeFile("file");
    folder.makeLink("link", ".hidden");
    std::vector<std::string> names;
    const auto ownFiles = readFolder(*makeNativeReader(), folder.path(),
                                     [&](const std::string& name) { names.push_back(name); });
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{".hidden", "b\xFF"}));
    ASSERT_TRUE(ownFiles);
    EXPECT_EQ(ownFiles.value(), OwnFiles::some);
}

TEST(FolderContents, saysWhenThereIsNothingToMeasure) {
    const test::TemporaryFolder folder;
    folder.makeFolder("a");
    folder.makeLink("link", "a");
    const auto ownFiles = readFolder(*makeNativeReader(), folder.path(), [](const std::string&) {});
    ASSERT_TRUE(ownFiles);
    EXPECT_EQ(ownFiles.value(), OwnFiles::none);
}

TEST(FolderContents, saysWhyAFolderCannotBeRead) {
    const test::TemporaryFolder folder;
    const auto ownFiles = readFolder(*makeNativeReader(), folder.path("nothing"), [](const std::string&) {});
    EXPECT_EQ(ownFiles.error(), std::errc::no_such_file_or_directory);
}

class FolderSizesTest : public testing::Test {
protected:
    FolderSizesTest() {
        EXPECT_EQ(::pipe(interruption), 0);
        queue.emplace(interruption[0]);
        engine = VantrelEngine::make({pool, *queue, clock});
    }
    ~FolderSizesTest() override {
        ::close(interruption[0]);
        ::close(interruption[1]);
    }

    SizesQuestion::Services services() { return {*engine, pool, *queue}; }

    int interruption[2];
    test::ManualClock clock;
    std::optional<CommandLineQueue> queue;
    WalkPool pool{clock, test::nativeWalks()};
    std::shared_ptr<VantrelEngine> engine;
    test::TemporaryFolder folder;
};

TEST_F(FolderSizesTest, areThoseOfEverySubfolderAndOfTheFilesBesideThem) {
    folder.makeFolder("a");
    folder.makeFolder("a/deeper");
    folder.makeFile("a/deeper/1");
    folder.makeFile("a/2");
    folder.makeFolder("b");
    folder.makeFile("b/3");
    folder.makeFolder("empty");
    for (const char* name : {"4", "5", "6"}) folder.makeFile(name);
    SizesQuestion question(services());
    ASSERT_FALSE(question.ask(folder.path()));
    EXPECT_EQ(question.wait([](const SizesQuestion&) {}), Interrupted::no);
    FolderSizes sizes = question.sizes();
    sortRows(sizes.subfolders, RowOrder::byName);
    EXPECT_EQ(sizes.subfolders,
              (std::vector<Row>{
                  {folder.path("a"), {0, 2}}, {folder.path("b"), {0, 1}}, {folder.path("empty"), {0, 0}}}));
    EXPECT_EQ(sizes.own, (WalkTotals{0, 3}));
    EXPECT_EQ(sizes.total(), (WalkTotals{0, 6}));
    EXPECT_EQ(question.finishedCount(), 3U);
}

TEST_F(FolderSizesTest, ofAnEmptyFolderAreThereAtOnce) {
    SizesQuestion question(services());
    ASSERT_FALSE(question.ask(folder.path()));
    EXPECT_EQ(question.wait([](const SizesQuestion&) {}), Interrupted::no);
    EXPECT_EQ(question.sizes().total(), (WalkTotals{0, 0}));
}

TEST_F(FolderSizesTest, cannotBeHadOfWhatIsNoFolder) {
    SizesQuestion question(services());
    EXPECT_EQ(question.ask(folder.makeFile("file")), std::errc::not_a_directory);
}

// With one sub-folder, whose walk never begins.
class MissingFolderSizes : public FolderSizesTest {
protected:
    MissingFolderSizes() {
        folder.makeFolder("a");
        engine = VantrelEngine::make({sleeping_, *queue, clock});
    }

private:
    class SleepingQueue final : public WalkQueue {
        void submit(std::string, std::stop_token, std::unique_ptr<WalkObserver>) override {}
    };
    SleepingQueue sleeping_;
};

TEST_F(MissingFolderSizes, areNotWaitedForOnceInterrupted) {
    SizesQuestion question(services());
    ASSERT_FALSE(question.ask(folder.path()));
    ASSERT_EQ(::write(interruption[1], "", 1), 1);
    EXPECT_EQ(question.wait([](const SizesQuestion&) {}), Interrupted::yes);
    EXPECT_EQ(question.finishedCount(), 0U);
}

TEST_F(MissingFolderSizes, tellOfProgress) {
    SizesQuestion question(services());
    ASSERT_FALSE(question.ask(folder.path()));
    int calls = 0;
    const auto interrupted = question.wait([&](const SizesQuestion& asked) {
        EXPECT_EQ(asked.folderCount(), 1U);
        if (++calls < 2) return;
        EXPECT_EQ(::write(interruption[1], "", 1), 1);
    });
    EXPECT_EQ(interrupted, Interrupted::yes);
    EXPECT_EQ(calls, 2);
}

}  // namespace
}  // namespace vantrel::sizes
