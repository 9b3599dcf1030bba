#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <random>
#include <thread>

#include "panel/OvPanelView.h"
#include "posix/files/FileOperations.h"
#include "posix/files/PosixFileManager.h"
#include "support/FakeDesktop.h"
#include "support/LongTests.h"
#include "support/RecordingCanvas.h"
#include "support/TreeSnapshot.h"
#include "walk/WalkFixture.h"

// A tree that somebody else changes all the time: entries vanish, appear and become something else between
// any two system calls.

namespace vantrel {
namespace {

namespace fs = std::filesystem;
using test::TemporaryFolder;

constexpr int nameCount = 6;

/// Changes entries of a folder at random until it is destroyed. Files appear under their names complete and
/// are never written to again.
class Vandal {
public:
    explicit Vandal(const TemporaryFolder& folder)
        : folder_(folder), thread_([this](const std::stop_token& stop) {
              while (!stop.stop_requested()) change();
          }) {}

private:
    void change() {
        const std::string path = folder_.path("tree/" + std::to_string(random_() % nameCount));
        const std::string made = folder_.path("made");
        std::error_code ignored;
        switch (random_() % 7) {
            case 0:
                fs::remove_all(path, ignored);
                break;
            case 1:
                fs::rename(path, folder_.path("tree/" + std::to_string(random_() % nameCount)), ignored);
                break;
            case 2:
                ::mkfifo(made.c_str(), 0600);
                break;
            case 3:
                ::symlink("/dev/zero", made.c_str());
                break;
            case 4:
                ::symlink("..", made.c_str());
                break;
            case 5:
                folder_.makeFolder("made");
                folder_.makeFile("made/inner", content);
                break;
            default:
                folder_.makeFile("made", content);
        }
        fs::rename(made, path, ignored);
        fs::remove_all(made, ignored);
    }

public:
    const std::string content = std::string(20'000, 'v');

private:
    const TemporaryFolder& folder_;
    std::minstd_rand random_{20261121};
    std::jthread thread_;
};

class ChangingTree : public testing::Test {
protected:
    ChangingTree() : folder(test::quickPlace()) { folder.makeFolder("tree"); }

    std::string tree() const { return folder.path("tree"); }

    /// Every file in a copy is one that stood there, from its first byte to its last.
    static void expectWholeFiles(const std::string& copy, const std::string& content) {
        for (const auto& entry : fs::recursive_directory_iterator(copy)) {
            if (entry.symlink_status().type() != fs::file_type::regular) continue;
            EXPECT_EQ(test::contentOf(entry.path()), content);
        }
    }

    const int rounds = test::byPatience(150, 20'000);
    TemporaryFolder folder;
};

TEST_F(ChangingTree, isListedAndDrawn) {
    PosixFileManager files;
    test::FakeDesktop desktop;
    const auto panel = OvPanelView::make(desktop.portsWith(files), *desktop.engine);
    panel->setFrame({0, 0, 549, 648});
    panel->setCurrentPath(tree());
    const std::size_t before = test::openDescriptors();
    {
        const Vandal vandal(folder);
        for (int round = 0; round < rounds; ++round) {
            panel->loadDirectory();
            EXPECT_TRUE(panel->items().front()->isParentDir);
            test::RecordingCanvas canvas;
            panel->drawTree(canvas);
        }
    }
    EXPECT_EQ(test::openDescriptors(), before);
    EXPECT_THAT(desktop.output.lines, testing::IsEmpty()) << "the folder itself was always there";
}

TEST_F(ChangingTree, isCopiedWholeOrNotAtAll) {
    const FileOperations operations;
    const TemporaryFolder target(test::quickPlace());
    const std::size_t before = test::openDescriptors();
    int copied = 0;
    {
        const Vandal vandal(folder);
        for (int round = 0; round < rounds; ++round) {
            if (operations.copyItem(tree(), target.path("copy"))) {
                EXPECT_THAT(test::namesIn(target.path()), testing::IsEmpty());
            } else {
                ++copied;
                EXPECT_THAT(test::namesIn(target.path()), testing::ElementsAre("copy"));
                expectWholeFiles(target.path("copy"), vandal.content);
                fs::remove_all(target.path("copy"));
            }
        }
    }
    EXPECT_EQ(test::openDescriptors(), before);
    EXPECT_EQ(operations.copyItem(tree(), target.path("copy")), std::error_code()) << "now that it is quiet";
    RecordProperty("cases", rounds);
    RecordProperty("copied", copied);
}

// A change that comes while originals are being removed, by a call that had found its way there before, ends
// the move as well: the copy then stays, since it alone holds what is gone from the original.
TEST_F(ChangingTree, isMovedToAnotherFileSystemWholeOrNotAtAll) {
    struct stat here {
    }, there{};
    const TemporaryFolder target(fs::temp_directory_path().string());
    if (::stat(tree().c_str(), &here) != 0 || ::stat(target.path().c_str(), &there) != 0 ||
        here.st_dev == there.st_dev) {
        GTEST_SKIP() << "there is only one file system to write to";
    }
    const FileOperations operations;
    int moved = 0, inBoth = 0;
    const Vandal vandal(folder);
    for (int round = 0; round < rounds / 10; ++round) {
        const std::error_code error = operations.moveItem(tree(), target.path("moved"));
        const std::vector<std::string> names = test::namesIn(target.path());
        if (error && names.empty()) continue;
        EXPECT_THAT(names, testing::ElementsAre("moved"));
        ++(error ? inBoth : moved);
        EXPECT_EQ(fs::exists(tree()), static_cast<bool>(error));
        expectWholeFiles(target.path("moved"), vandal.content);
        fs::remove_all(target.path("moved"));
        if (!error) folder.makeFolder("tree");
    }
    EXPECT_LE(inBoth, 1 + moved / 10);
    RecordProperty("cases", rounds / 10);
    RecordProperty("moved", moved);
    RecordProperty("inBoth", inBoth);
}

class ChangingTreeWalk : public test::EveryReader {};
VANTREL_FOR_EVERY_READER(ChangingTreeWalk);

TEST_P(ChangingTreeWalk, alwaysEnds) {
    const TemporaryFolder changing(test::quickPlace());
    changing.makeFolder("tree");
    const std::size_t before = test::openDescriptors();
    const int rounds = test::byPatience(150, 20'000);
    {
        const Vandal vandal(changing);
        WalkPool pool(clock, options());
        for (int round = 0; round < rounds; ++round) {
            const auto walk = test::submit(pool, changing.path("tree"));
            const auto end = walk.record->waitForEnd();
            ASSERT_TRUE(end);
            EXPECT_EQ(end->outcome, WalkOutcome::finished);
        }
    }
    EXPECT_EQ(test::openDescriptors(), before);
    RecordProperty("cases", rounds);
}

}  // namespace
}  // namespace vantrel
