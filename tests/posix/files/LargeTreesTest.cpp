#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/PathLocation.h"
#include "panel/OvPanelView.h"
#include "posix/files/FileOperations.h"
#include "posix/files/FileOperationsFixture.h"
#include "posix/files/PosixFileManager.h"
#include "posix/files/Trash.h"
#include "posix/files/Trees.h"
#include "support/FakeDesktop.h"
#include "support/LongTests.h"
#include "support/RecordingCanvas.h"
#include "walk/WalkFixture.h"

// Trees deeper and folders larger than anybody has.

namespace vantrel {
namespace {

using test::TemporaryFolder;

constexpr std::size_t depth = 10'000;

class DeepTree : public testing::Test {
protected:
    DeepTree() : folder(test::quickPlace()) {
        folder.makeFolder("tree");
        const TemporaryFolder deep(folder.path("tree"));
        top = "tree" + deep.path().substr(folder.path("tree").size());
        innermost = deep.makeDeepFolder(depth, "d").substr(folder.path().size());
        EXPECT_TRUE(openPath(folder.path() + innermost + "/file", O_WRONLY | O_CREAT));
        // Away from its TemporaryFolder, which would remove it.
        EXPECT_EQ(::rename(deep.path().c_str(), folder.path("tree/kept").c_str()), 0);
        innermost.replace(0, deep.path().size() - folder.path().size(), "/tree/kept");
        before = test::openDescriptors();
    }
    ~DeepTree() override { EXPECT_EQ(test::openDescriptors(), before); }

    /// Whether the innermost file is there, below the folder `tree` in the place of "tree".
    bool isWhole(const std::string& tree) const {
        return static_cast<bool>(openPath(tree + innermost.substr(5) + "/file", O_RDONLY));
    }

    TemporaryFolder folder;
    std::string top;
    std::string innermost;
    std::size_t before = 0;
    FileOperations operations;
};

TEST_F(DeepTree, isCopiedAndMovedAndTrashed) {
    ASSERT_TRUE(isWhole(folder.path("tree")));
    ASSERT_EQ(operations.copyItem(folder.path("tree"), folder.path("copy")), std::error_code());
    EXPECT_TRUE(isWhole(folder.path("copy")));
    const auto across = test::failing("renameat2", EXDEV, 1);
    ASSERT_EQ(
        test::under(across, [&] { return operations.moveItem(folder.path("copy"), folder.path("moved")); }),
        std::error_code());
    EXPECT_TRUE(isWhole(folder.path("moved")));
    ASSERT_EQ(Trash({.dataHome = folder.path("data")}).put(folder.path("moved")), std::error_code());
    EXPECT_TRUE(isWhole(folder.path("data/Trash/files/moved")));
    ASSERT_EQ(Trash({.dataHome = folder.path("data")}).put(folder.path() + innermost), std::error_code());
    EXPECT_FALSE(isWhole(folder.path("tree")));
}

TEST_F(DeepTree, isRemoved) {
    const Result<FileDescriptor> place = openPath(folder.path(), O_PATH | O_DIRECTORY);
    ASSERT_TRUE(place);
    EXPECT_EQ(removeTree({place->number(), "tree"}), std::error_code());
    EXPECT_THAT(test::namesIn(folder.path()), testing::IsEmpty());
}

TEST_F(DeepTree, isShownAtItsEnd) {
    PosixFileManager files;
    test::FakeDesktop desktop;
    const auto panel = OvPanelView::make(desktop.portsWith(files), *desktop.engine);
    panel->setFrame({0, 0, 549, 648});
    panel->setCurrentPath(folder.path() + innermost);
    test::RecordingCanvas canvas;
    panel->drawTree(canvas);
    ASSERT_EQ(panel->items().size(), 2U);
    EXPECT_EQ(panel->items()[1]->name, "file");
    panel->navigateUp();
    EXPECT_EQ(panel->selectedItem()->name, "d");
}

class DeepTreeWalk : public test::EveryReader {};
VANTREL_FOR_EVERY_READER(DeepTreeWalk);

TEST_P(DeepTreeWalk, isCountedToItsEnd) {
    const TemporaryFolder deep(test::quickPlace());
    const std::string innermost = deep.makeDeepFolder(depth, "d");
    ASSERT_TRUE(openPath(innermost + "/file", O_WRONLY | O_CREAT));
    EXPECT_EQ(walk(deep.path()), test::finished(0, 1));
    auto scarce = options();
    scarce.descriptorBudget = 20;
    EXPECT_EQ(walk(deep.path(), scarce), test::finished(0, 1));
}

TEST(LargeFolder, isListedSortedDrawnAndCounted) {
    const int count = test::byPatience(20'000, 1'000'000);
    const TemporaryFolder place(test::quickPlace());
    for (int number = 0; number < count; ++number) place.makeFile("file " + std::to_string(number));
    PosixFileManager files;
    test::FakeDesktop desktop;
    const auto panel = OvPanelView::make(desktop.portsWith(files), *desktop.engine);
    panel->setFrame({0, 0, 549, 648});
    panel->setCurrentPath(place.path());
    const auto rows = static_cast<std::size_t>(count) + 1;
    ASSERT_EQ(panel->items().size(), rows);
    EXPECT_EQ(panel->items()[1]->name, "file 0");
    EXPECT_EQ(panel->items()[11]->name, "file 10") << "by value";
    EXPECT_EQ(panel->items().back()->name, "file " + std::to_string(count - 1));
    panel->setSortDirection(SortDirection::descending);
    EXPECT_EQ(panel->items()[1]->name, "file " + std::to_string(count - 1));
    panel->end();
    test::RecordingCanvas canvas;
    panel->drawTree(canvas);
    EXPECT_TRUE(canvas.hasText("  file 0"));

    const test::ManualClock clock;
    WalkPool pool(clock, test::nativeWalks());
    const auto end = test::submit(pool, place.path()).record->waitForEnd();
    EXPECT_EQ(end, test::finished(0, count));
    RecordProperty("cases", count);
}

}  // namespace
}  // namespace vantrel
