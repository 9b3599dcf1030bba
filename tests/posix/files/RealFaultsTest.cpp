#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>

#include "posix/files/FileOperations.h"
#include "posix/files/PosixFileManager.h"
#include "posix/files/Trash.h"
#include "support/OwnNamespaces.h"
#include "support/ScopedEnvironment.h"
#include "support/TreeSnapshot.h"

// Faults that the system makes itself, for an ordinary user: a full volume, one that cannot be written to, a
// folder without permission.

namespace vantrel {
namespace {

using test::contentOf;
using test::inOwnNamespaces;
using test::mountMemory;
using test::namesIn;
using test::Privileges;
using test::snapshotOf;
using testing::ElementsAre;
using testing::IsEmpty;

class RealFaults : public testing::Test {
protected:
    RealFaults() { folder.makeFolder("volume"); }

    /// A tree that is too large for the volume.
    void makeLargeTree() const {
        folder.makeFolder("tree");
        folder.makeFile("tree/first", std::string(100'000, 'a'));
        folder.makeFile("tree/second", std::string(300'000, 'b'));
        folder.makeFile("tree/third", std::string(100'000, 'c'));
    }

    FileOperations operations;
    test::TemporaryFolder folder;
    std::string volume = folder.path("volume");
};

TEST_F(RealFaults, aFullVolumeGetsNoPartOfACopy) {
    inOwnNamespaces(
        folder, Privileges::none, [this] { return mountMemory(volume, "size=256k"); },
        [this] {
            makeLargeTree();
            const auto before = snapshotOf(folder.path("tree"));
            for (const char* const name : {"tree", "tree/second"}) {
                EXPECT_EQ(operations.copyItem(folder.path(name), volume + "/copy"),
                          std::errc::no_space_on_device);
                EXPECT_EQ(operations.moveItem(folder.path(name), volume + "/copy"),
                          std::errc::no_space_on_device);
                EXPECT_THAT(namesIn(volume), IsEmpty());
            }
            EXPECT_EQ(snapshotOf(folder.path("tree")), before);
            EXPECT_EQ(operations.moveItem(folder.path("tree/first"), volume + "/first"), std::error_code())
                << "what there is room for arrives";
            EXPECT_EQ(contentOf(volume + "/first"), std::string(100'000, 'a'));
        });
}

TEST_F(RealFaults, aVolumeWithoutRoomForMoreEntriesGetsNoPartOfAChainOrACopy) {
    inOwnNamespaces(
        folder, Privileges::none, [this] { return mountMemory(volume, "size=1m,nr_inodes=4"); },
        [this] {
            makeLargeTree();
            EXPECT_EQ(operations.createDirectory(volume + "/a/b/c/d/e"), std::errc::no_space_on_device);
            EXPECT_EQ(operations.copyItem(folder.path("tree"), volume + "/tree"),
                      std::errc::no_space_on_device);
            EXPECT_THAT(namesIn(volume), IsEmpty());
        });
}

TEST_F(RealFaults, anItemStaysWhereItIsWhenTheTrashHasNoRoomForItsInfo) {
    inOwnNamespaces(
        folder, Privileges::none, [this] { return mountMemory(volume, "size=64k,nr_inodes=6"); },
        [this] {
            const Trash trash({.dataHome = volume});
            folder.makeFile("volume/a", "content");
            folder.makeFile("volume/b", "content");
            EXPECT_EQ(trash.put(volume + "/a"), std::errc::no_space_on_device);
            EXPECT_EQ(contentOf(volume + "/a"), "content");
            EXPECT_EQ(contentOf(volume + "/b"), "content");
        });
}

TEST_F(RealFaults, aVolumeThatCannotBeWrittenToIsReadAndNothingElse) {
    inOwnNamespaces(
        folder, Privileges::none,
        [this] {
            if (!mountMemory(volume, "size=1m")) return false;
            folder.makeFolder("volume/tree");
            folder.makeFile("volume/tree/file", "content");
            // A tree that root makes is root's, but nothing except the volume may keep it from being moved.
            std::filesystem::permissions(volume + "/tree", std::filesystem::perms::all);
            return ::mount(nullptr, volume.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) == 0;
        },
        [this] {
            const std::string file = folder.makeFile("file", "mine");
            const auto before = snapshotOf(folder.path());
            EXPECT_EQ(operations.copyItem(file, volume + "/file"), std::errc::read_only_file_system);
            EXPECT_EQ(operations.moveItem(file, volume + "/file"), std::errc::read_only_file_system);
            EXPECT_EQ(operations.moveItem(volume + "/tree", volume + "/renamed"),
                      std::errc::read_only_file_system);
            EXPECT_EQ(operations.createDirectory(volume + "/a/b"), std::errc::read_only_file_system);
            EXPECT_TRUE(Trash({.dataHome = folder.path("data")}).put(volume + "/tree"));
            // By the time the original turns out not to be removable, the copy is complete.
            EXPECT_EQ(operations.moveItem(volume + "/tree", folder.path("moved")),
                      std::errc::read_only_file_system);
            auto after = snapshotOf(folder.path());
            after[""] = before.at("");
            EXPECT_EQ(after, before);
            EXPECT_EQ(operations.copyItem(volume + "/tree", folder.path("copy")), std::error_code());
            EXPECT_EQ(contentOf(folder.path("copy/file")), "content");
        });
}

TEST_F(RealFaults, aFolderWithoutPermissionKeepsWhatItHolds) {
    inOwnNamespaces(
        folder, Privileges::none, [] { return true; },
        [this] {
            PosixFileManager files;
            folder.makeFolder("locked");
            const std::string file = folder.makeFile("locked/file", "content");
            for (const mode_t mode : {mode_t{0500}, mode_t{0}}) {
                ::chmod(folder.path("locked").c_str(), mode);
                EXPECT_EQ(operations.moveItem(file, folder.path("moved")), std::errc::permission_denied);
                EXPECT_EQ(operations.copyItem(folder.path("volume"), folder.path("locked/copy")),
                          std::errc::permission_denied);
                EXPECT_EQ(operations.createDirectory(folder.path("locked/a/b")),
                          std::errc::permission_denied);
                EXPECT_EQ(Trash({.dataHome = folder.path("data")}).put(file), std::errc::permission_denied);
            }
            EXPECT_EQ(operations.copyItem(folder.path("locked"), folder.path("copy")),
                      std::errc::permission_denied);
            EXPECT_EQ(files.contentsOfDirectory(folder.path("locked"), [](std::string_view) { return true; })
                          .error(),
                      std::errc::permission_denied);
            EXPECT_EQ(files.readPrefix(file, 10).error(), std::errc::permission_denied);
            ::chmod(folder.path("locked").c_str(), 0700);
            EXPECT_THAT(namesIn(folder.path("locked")), ElementsAre("file"));
            EXPECT_EQ(contentOf(file), "content");
            EXPECT_EQ(test::snapshotOf(folder.path("copy")), test::TreeSnapshot());
            EXPECT_EQ(test::snapshotOf(folder.path("moved")), test::TreeSnapshot());
        });
}

/// Runs this program once more, as an ordinary user, with the tests that the filter names.
std::pair<int, std::string> runAsOrdinaryUser(const std::string& filter) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {-1, "no pipe"};
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(ends[1], 1);
        ::dup2(ends[1], 2);
        const std::string argument = "--gtest_filter=" + filter;
        if (test::becomeOrdinaryUser() && ::chdir("/") == 0)
            ::execl("/proc/self/exe", "system-tests", argument.c_str(), static_cast<char*>(nullptr));
        ::_exit(126);
    }
    ::close(ends[1]);
    std::string output;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = ::read(ends[0], buffer.data(), buffer.size())) > 0;)
        output.append(buffer.data(), static_cast<std::size_t>(count));
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}

TEST(AsOrdinaryUser, theTestsThatRootSkipsPassToo) {
    if (::geteuid() != 0) GTEST_SKIP() << "they ran already";
    // All of them, even where this program runs only its share of the tests.
    const test::ScopedEnvironment shares("GTEST_TOTAL_SHARDS", std::nullopt);
    const test::ScopedEnvironment share("GTEST_SHARD_INDEX", std::nullopt);
    const auto [status, output] = runAsOrdinaryUser(
        "CopyItem.leavesNothingWhenAFileCannotBeRead:FileReading.obeysPermissions:"
        "MoveItem.acrossFileSystemsRefusesFoldersThatItCouldNotEmpty:PosixFileManagerTest.obeysPermissions:"
        "TrashTest.leavesTheItemWhichCannotBeMovedAndNoInfoOfIt:Readers/WalkCounting.skipsUnreadableFolders/"
        "*");
    if (status == 126) GTEST_SKIP() << "an ordinary user may not run this program here";
    EXPECT_EQ(status, 0) << output;
    EXPECT_THAT(output, testing::HasSubstr("7 tests from 6 test suites ran"));
    EXPECT_THAT(output, testing::Not(testing::HasSubstr("SKIPPED")));
}

}  // namespace
}  // namespace vantrel
