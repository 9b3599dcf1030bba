#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <filesystem>

#include "base/PathLocation.h"
#include "posix/files/FileOperationsFixture.h"

namespace vantrel::test {
namespace {

using testing::ElementsAre;

class MoveItem : public FileOperationsFixture {
protected:
    std::error_code move(const std::string& from, const std::string& to) {
        return operations.moveItem(folder.path(from), folder.path(to));
    }

    /// A move between places that seem to lie on different file systems.
    std::error_code moveAcross(const std::string& from, const std::string& to) {
        return moveUnder(failing("renameat2", EXDEV, 1), from, to);
    }
};

TEST_F(MoveItem, renamesEveryKindOfItem) {
    const std::string tree = makeTree();
    const auto before = snapshotOf(tree);
    EXPECT_EQ(move("tree", "other"), std::error_code());
    EXPECT_EQ(snapshotOf(folder.path("other")), before);
    for (const char* const name : {"file", "link", "dangling", "loop", "fifo", "new\nline\xFF"}) {
        EXPECT_EQ(move(std::string("other/") + name, std::string("moved ") + name), std::error_code())
            << name;
    }
    EXPECT_THAT(names(), ElementsAre("moved dangling", "moved fifo", "moved file", "moved link", "moved loop",
                                     "moved new\nline\xFF", "other"));
}

TEST_F(MoveItem, neverReplacesAnything) {
    makeTree();
    folder.makeFile("taken", "old");
    folder.makeFolder("takenFolder");
    folder.makeLink("takenLink", "nowhere");
    const auto before = snapshotOf(folder.path());
    for (const char* const source : {"tree", "tree/file", "tree/link"}) {
        for (const char* const target : {"taken", "takenLink", "takenFolder", "takenFolder/"}) {
            EXPECT_EQ(move(source, target), std::errc::file_exists) << source << " " << target;
            EXPECT_EQ(moveAcross(folder.path(source), folder.path(target)), std::errc::file_exists);
        }
    }
    EXPECT_EQ(snapshotOf(folder.path()), before);
}

TEST_F(MoveItem, neverReplacesAnythingWhereRenamingWithoutReplacingIsUnknown) {
    makeTree();
    folder.makeFile("taken", "old");
    folder.makeFolder("takenFolder");
    const auto before = snapshotOf(folder.path());
    const auto old = failing("renameat2", EINVAL);
    for (const char* const source : {"tree", "tree/nothing", "tree/file"}) {
        for (const char* const target : {"taken", "takenFolder"}) {
            EXPECT_EQ(moveUnder(old, folder.path(source), folder.path(target)), std::errc::file_exists);
        }
    }
    EXPECT_EQ(snapshotOf(folder.path()), before);
    EXPECT_EQ(moveUnder(old, folder.path("tree/file"), folder.path("file")), std::error_code());
    EXPECT_EQ(moveUnder(old, folder.path("tree"), folder.path("tree2")), std::error_code());
    EXPECT_THAT(names(), ElementsAre("file", "taken", "takenFolder", "tree2"));
}

TEST_F(MoveItem, toItsOwnNameChangesNothing) {
    folder.makeFile("file", "x");
    const auto before = snapshotOf(folder.path());
    EXPECT_EQ(move("file", "file"), std::errc::file_exists);
    EXPECT_EQ(move("file", "./file"), std::errc::file_exists);
    EXPECT_EQ(snapshotOf(folder.path()), before);
}

TEST_F(MoveItem, toAnotherNameOfTheSameFileKeepsBothNames) {
    const std::string file = folder.makeFile("file", "x");
    ASSERT_EQ(::link(file.c_str(), folder.path("second").c_str()), 0);
    EXPECT_EQ(move("file", "second"), std::errc::file_exists);
    EXPECT_THAT(names(), ElementsAre("file", "second"));
}

TEST_F(MoveItem, changesTheSpellingOfAName) {
    folder.makeFile("file", "x");
    EXPECT_EQ(move("file", "File"), std::error_code());
    EXPECT_EQ(move("File", "FILE"), std::error_code());
    EXPECT_THAT(names(), ElementsAre("FILE"));
}

TEST_F(MoveItem, refusesToMoveAFolderIntoItself) {
    makeTree();
    folder.makeLink("way", "tree/inner");
    const auto before = snapshotOf(folder.path());
    for (const char* const target : {"tree/moved", "tree/inner/moved", "way/moved"}) {
        EXPECT_EQ(move("tree", target), std::errc::invalid_argument) << target;
    }
    EXPECT_EQ(snapshotOf(folder.path()), before);
}

TEST_F(MoveItem, saysWhatIsMissing) {
    folder.makeFile("file");
    EXPECT_EQ(move("missing", "new"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(move("file", "/tmp-is-appended/new"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(move("file", "file/new"), std::errc::not_a_directory);
    EXPECT_EQ(move("file", std::string(256, 'n')), std::errc::filename_too_long);
    EXPECT_THAT(names(), ElementsAre("file"));
}

TEST_F(MoveItem, movesBelowPathsLongerThanPathMax) {
    const std::string deep = folder.makeDeepFolder(PATH_MAX / 100 + 1, std::string(100, 'd'));
    ASSERT_TRUE(openPath(deep + "/file", O_WRONLY | O_CREAT));
    EXPECT_EQ(operations.moveItem(deep + "/file", deep + "/" + std::string(255, 'n')), std::error_code());
    EXPECT_EQ(operations.moveItem(deep + "/" + std::string(255, 'n'), folder.path("up")), std::error_code());
    EXPECT_TRUE(snapshotOf(folder.path("up")).contains(""));
}

TEST_F(MoveItem, acrossFileSystemsCopiesAndRemoves) {
    const std::string tree = makeTree();
    ::chmod(folder.path("tree/inner").c_str(), 0500);
    const auto before = snapshotOf(tree);
    ASSERT_EQ(moveAcross(tree, folder.path("moved")), std::error_code());
    EXPECT_EQ(snapshotOf(folder.path("moved")), before);
    EXPECT_THAT(names(), ElementsAre("moved"));
    for (const char* const name : {"file", "link", "dangling", "fifo"}) {
        ASSERT_EQ(moveAcross(folder.path(std::string("moved/") + name), folder.path(name)),
                  std::error_code());
    }
    EXPECT_THAT(names(), ElementsAre("dangling", "fifo", "file", "link", "moved"));
}

TEST_F(MoveItem, acrossFileSystemsForReal) {
    struct stat here {
    }, there{};
    if (::access("/dev/shm", W_OK) != 0 || ::stat("/dev/shm", &there) != 0 ||
        ::stat(folder.path().c_str(), &here) != 0 || here.st_dev == there.st_dev) {
        GTEST_SKIP() << "there is only one file system to write to";
    }
    const TemporaryFolder elsewhere("/dev/shm");
    const std::string tree = makeTree();
    const auto before = snapshotOf(tree);
    ASSERT_EQ(operations.moveItem(tree, elsewhere.path("moved")), std::error_code());
    EXPECT_EQ(snapshotOf(elsewhere.path("moved")), before);
    EXPECT_TRUE(names().empty());
    ASSERT_EQ(operations.moveItem(elsewhere.path("moved"), folder.path("back")), std::error_code());
    EXPECT_EQ(snapshotOf(folder.path("back")), before);
    EXPECT_TRUE(namesIn(elsewhere.path()).empty());
}

TEST_F(MoveItem, acrossFileSystemsKeepsAnOriginalThatChangesMeanwhile) {
    const std::string tree = makeTree();
    const std::vector<std::function<void()>> changes = {
        [&] { folder.makeFile("tree/inner/new", "arrived late"); },
        [&] { ::truncate(folder.path("tree/file").c_str(), 3); },
        [&] { ::unlink(folder.path("tree/empty").c_str()); },
    };
    for (const auto& change : changes) {
        // The copy is complete when everything is flushed.
        const auto racing = [&, changed = false](std::string_view call) mutable {
            if (call == "renameat2" && !changed) return EXDEV;
            if (call == "syncfs" && !std::exchange(changed, true)) change();
            return 0;
        };
        EXPECT_EQ(moveUnder(racing, tree, folder.path("moved")), std::errc::device_or_resource_busy);
        EXPECT_THAT(names(), ElementsAre("tree"));
    }
    EXPECT_EQ(contentOf(folder.path("tree/inner/new")), "arrived late");
}

TEST_F(MoveItem, acrossFileSystemsTakesTheCopyBackWhenTheOriginalCannotBeRemoved) {
    const std::string tree = makeTree();
    const auto before = snapshotOf(tree);
    const auto locked = [renames = 0](std::string_view call) mutable {
        if (call != "renameat2") return 0;
        ++renames;
        return renames == 1 ? EXDEV : renames == 3 ? EACCES : 0;  // the second one puts the copy in place
    };
    EXPECT_EQ(moveUnder(locked, tree, folder.path("moved")), std::errc::permission_denied);
    EXPECT_EQ(snapshotOf(tree), before);
    EXPECT_THAT(names(), ElementsAre("tree"));
}

TEST_F(MoveItem, acrossFileSystemsRefusesFoldersThatItCouldNotEmpty) {
    if (::geteuid() == 0) GTEST_SKIP() << "root may empty everything";
    const std::string rootsFolder = "/usr/share/doc/libc6";
    EXPECT_EQ(moveAcross(rootsFolder, folder.path("moved")), std::errc::permission_denied);
    EXPECT_TRUE(names().empty());
}

class MoveItemOften : public FileOperationsFixture {
protected:
    MoveItemOften() : FileOperationsFixture(quickPlace()) {}
};

TEST_F(MoveItemOften, losesNothingWhicheverSystemCallFails) {
    int cases = 0;
    for (const bool isAcross : {false, true}) {
        for (const bool andAllThatFollow : {false, true}) {
            for (int number = 0;; ++number) {
                ASSERT_LT(number, 10'000);
                const TemporaryFolder work(folder.path());
                ASSERT_EQ(::rename(makeTree().c_str(), work.path("tree").c_str()), 0);
                const auto before = snapshotOf(work.path("tree"));
                int made = 0, renames = 0;
                const auto failing = [&](std::string_view call) {
                    if (isAcross && call == "renameat2" && ++renames == 1) return EXDEV;
                    const int current = made++;
                    return current == number || (andAllThatFollow && current > number) ? EIO : 0;
                };
                const auto error = moveUnder(failing, work.path("tree"), work.path("moved"));
                const bool isMoved = snapshotOf(work.path("moved")) == before;
                // Where one call fails, taking back works; where all that follow fail too, something is left
                // over somewhere, but one of the two is always whole and in its place.
                const bool isKept = snapshotOf(work.path("tree")) == before;
                if (!error) {
                    EXPECT_TRUE(snapshotOf(work.path("tree")).empty()) << number;
                    EXPECT_EQ(snapshotOf(work.path("moved")).size(), before.size()) << number;
                } else if (andAllThatFollow) {
                    EXPECT_TRUE(isKept || isMoved) << number;
                } else {
                    EXPECT_TRUE(isKept ? snapshotOf(work.path("moved")).empty() : isMoved) << number;
                    EXPECT_THAT(namesIn(work.path()), testing::IsSubsetOf({"moved", "tree"})) << number;
                }
                if (made <= number) break;
                ++cases;
            }
        }
    }
    RecordProperty("cases", cases);
}

}  // namespace
}  // namespace vantrel::test
