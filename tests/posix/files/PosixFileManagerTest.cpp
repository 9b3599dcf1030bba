#include "posix/files/PosixFileManager.h"

#include <dirent.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <map>

#include "base/PathLocation.h"
#include "support/ScopedEnvironment.h"
#include "support/TemporaryFolder.h"
#include "text/Text.h"

namespace vantrel {

using test::openDescriptors;
using test::TemporaryFolder;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace {

bool everything(std::string_view) {
    return true;
}

class PosixFileManagerTest : public testing::Test {
protected:
    std::vector<DirectoryEntry> list(const std::string& path) {
        Result<std::vector<DirectoryEntry>> entries = files.contentsOfDirectory(path, everything);
        EXPECT_TRUE(entries) << entries.error().message();
        return entries ? *entries : std::vector<DirectoryEntry>();
    }

    std::vector<std::string> names(const std::string& path) {
        std::vector<std::string> found;
        for (const DirectoryEntry& entry : list(path)) found.push_back(entry.name);
        return found;
    }

    DirectoryEntry only(const std::string& path) {
        std::vector<DirectoryEntry> entries = list(path);
        EXPECT_EQ(entries.size(), 1u);
        return entries.empty() ? DirectoryEntry() : entries.front();
    }

    std::error_code listingFails(const std::string& path) {
        return files.contentsOfDirectory(path, everything).error();
    }

    PosixFileManager files;
    TemporaryFolder folder;
};

}  // namespace

TEST_F(PosixFileManagerTest, listsEverythingButTheFolderItselfAndItsParent) {
    EXPECT_TRUE(list(folder.path()).empty());
    folder.makeFile("file");
    folder.makeFolder("folder");
    folder.makeFile(".hidden");
    folder.makeFile("...");
    EXPECT_THAT(names(folder.path()), UnorderedElementsAre("file", "folder", ".hidden", "..."));
}

TEST_F(PosixFileManagerTest, keepsEveryByteOfAName) {
    std::vector<std::string> made = {std::string(255, 'x'),
                                     "new\nline",
                                     "caf\xE9",
                                     "\xED\xA0\x80",
                                     "\x01\x1B[2J",
                                     "e\u0301",
                                     "\u00E9",
                                     " ",
                                     "-rf",
                                     "*",
                                     "\\"};
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '/') made.push_back("b" + std::string(1, static_cast<char>(byte)));
    }
    for (const std::string& name : made) folder.makeFile(name);
    EXPECT_THAT(names(folder.path()), testing::UnorderedElementsAreArray(made));
}

TEST_F(PosixFileManagerTest, tellsSizeDatePermissionsAndKindOfAFile) {
    const std::string path = folder.makeFile("file", "12345");
    ASSERT_EQ(::chmod(path.c_str(), 04751), 0);
    const timespec times[2] = {{1, 0}, {1'700'000'000, 123'456'789}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);

    const DirectoryEntry entry = only(folder.path());
    EXPECT_EQ(entry.target, PathTarget::file);
    ASSERT_TRUE(entry.attributes);
    EXPECT_EQ(entry.attributes->size, 5);
    EXPECT_EQ(entry.attributes->modificationDate.time_since_epoch().count(), 1'700'000'000'123'456'789);
    EXPECT_EQ(entry.attributes->link, LinkKind::notALink);
    EXPECT_EQ(entry.attributes->posixPermissions, 04751u);
}

TEST_F(PosixFileManagerTest, tellsDatesBefore1970) {
    const std::string path = folder.makeFile("file");
    const timespec times[2] = {{-5, 0}, {-5, 250'000'000}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    EXPECT_EQ(only(folder.path()).attributes->modificationDate.time_since_epoch().count(), -4'750'000'000);
}

TEST_F(PosixFileManagerTest, tellsDatesAsFarAwayAsAFileSystemKeepsThem) {
    const test::ScopedEnvironment zone("TZ", "UTC");
    const TemporaryFolder memory(
        test::quickPlace());  // file systems on disks end at earlier dates of their own
    const std::string path = memory.makeFile("file");
    for (const auto& [second, expected] : {std::pair{10'413'792'000, "2300-01-01 00:00:00"},
                                           {13'569'465'600, "2400-01-01 00:00:00"},
                                           {253'402'300'799, "9999-12-31 23:59:59"},
                                           {-30'610'224'000, "1000-01-01 00:00:00"},
                                           {-62'135'596'800, "0001-01-01 00:00:00"}}) {
        const timespec times[2] = {{0, 0}, {second, 123'456'789}};
        ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
        struct stat status {};
        ASSERT_EQ(::lstat(path.c_str(), &status), 0);
        if (status.st_mtim.tv_sec != second) GTEST_SKIP() << "no file system here keeps such dates";
        const FileTime date = only(memory.path()).attributes->modificationDate;
        EXPECT_EQ(text::formattedDate(date, "yyyy-MM-dd HH:mm:ss"), expected);
        const auto fraction = date - std::chrono::floor<std::chrono::seconds>(date);
        EXPECT_EQ(static_cast<int>(fraction.count()), 123'456'789);
    }
}

TEST_F(PosixFileManagerTest, followsALinkForItsTargetOnly) {
    const TemporaryFolder elsewhere;
    elsewhere.makeFile("file", std::string(1000, 'x'));
    const auto entryOfLinkTo = [&](const std::string& target) {
        const std::string link = folder.makeLink("link", target);
        const DirectoryEntry entry = only(folder.path());
        ::unlink(link.c_str());
        EXPECT_TRUE(entry.attributes && entry.attributes->link == LinkKind::symbolicLink) << target;
        EXPECT_EQ(entry.attributes->size, static_cast<std::int64_t>(target.size())) << "the link's own size";
        return entry.target;
    };
    EXPECT_EQ(entryOfLinkTo(elsewhere.path()), PathTarget::directory);
    EXPECT_EQ(entryOfLinkTo(elsewhere.path("file")), PathTarget::file);
    EXPECT_EQ(entryOfLinkTo("."), PathTarget::directory) << "relative to the folder that holds it";
    EXPECT_EQ(entryOfLinkTo("missing"), PathTarget::missing);
    EXPECT_EQ(entryOfLinkTo("link"), PathTarget::missing) << "a loop";
}

TEST_F(PosixFileManagerTest, listsSpecialFilesWithoutOpeningThem) {
    folder.makeFifo("fifo");
    folder.makeSocket("socket");
    std::map<std::string, PathTarget> targets;
    for (const DirectoryEntry& entry : list(folder.path())) targets[entry.name] = entry.target;
    EXPECT_EQ(targets["fifo"], PathTarget::file);
    EXPECT_EQ(targets["socket"], PathTarget::file);
    EXPECT_EQ(files.targetOf("/dev/null"), PathTarget::file);
}

TEST_F(PosixFileManagerTest, asksTheFilterOnceForEachNameAndLooksAtWantedEntriesOnly) {
    folder.makeFile("wanted");
    folder.makeFile(".unwanted");
    std::vector<std::string> asked;
    const auto entries = files.contentsOfDirectory(folder.path(), [&](std::string_view name) {
        asked.emplace_back(name);
        // It is gone from now on, so its status could not be asked for.
        if (name == ".unwanted") ::unlink(folder.path(name).c_str());
        return !name.starts_with('.');
    });
    ASSERT_TRUE(entries);
    EXPECT_THAT(asked, UnorderedElementsAre("wanted", ".unwanted"));
    ASSERT_EQ(entries.value().size(), 1u);
    EXPECT_EQ(entries.value().front().name, "wanted");
}

TEST_F(PosixFileManagerTest, listsAnEntryThatVanishesMeanwhileAsMissing) {
    folder.makeFile("vanishing");
    const auto entries = files.contentsOfDirectory(folder.path(), [&](std::string_view name) {
        ::unlink(folder.path(name).c_str());
        return true;
    });
    ASSERT_TRUE(entries);
    ASSERT_EQ(entries.value().size(), 1u);
    EXPECT_EQ(entries.value().front().target, PathTarget::missing);
    EXPECT_FALSE(entries.value().front().attributes);
}

TEST_F(PosixFileManagerTest, keepsTheOrderOfTheFileSystem) {
    for (int number = 0; number < 300; ++number) folder.makeFile("file" + std::to_string(number));
    std::vector<std::string> expected;
    DIR* const stream = ::opendir(folder.path().c_str());
    while (const dirent* const entry = ::readdir(stream)) {
        if (entry->d_name[0] != '.') expected.emplace_back(entry->d_name);
    }
    ::closedir(stream);
    EXPECT_EQ(expected.size(), 300u);
    EXPECT_EQ(names(folder.path()), expected);
}

TEST_F(PosixFileManagerTest, saysWhyAFolderCannotBeListed) {
    EXPECT_EQ(listingFails(folder.path("missing")), std::errc::no_such_file_or_directory);
    EXPECT_EQ(listingFails(folder.makeFile("file")), std::errc::not_a_directory);
    EXPECT_EQ(listingFails(folder.makeFifo("fifo")), std::errc::not_a_directory)
        << "at once, without a writer";
    EXPECT_EQ(listingFails(folder.makeLink("loop", "loop")), std::errc::too_many_symbolic_link_levels);
}

TEST_F(PosixFileManagerTest, listsAFolderThroughALink) {
    const TemporaryFolder elsewhere;
    elsewhere.makeFile("inner");
    EXPECT_THAT(names(folder.makeLink("link", elsewhere.path())), ElementsAre("inner"));
}

TEST_F(PosixFileManagerTest, obeysPermissions) {
    if (::geteuid() == 0) GTEST_SKIP() << "root may read everything";
    const std::string locked = folder.makeFolder("locked");
    const std::string file = folder.makeFile("file");
    ::chmod(file.c_str(), 0200);
    EXPECT_FALSE(files.isReadable(file));
    ::close(::open((locked + "/inner").c_str(), O_WRONLY | O_CREAT, 0600));
    ::chmod(locked.c_str(), 0);
    EXPECT_EQ(listingFails(locked), std::errc::permission_denied);
    EXPECT_FALSE(files.isReadable(locked));

    ::chmod(locked.c_str(), 0400);  // names can be read, entries cannot be looked at
    const DirectoryEntry entry = only(locked);
    EXPECT_EQ(entry.name, "inner");
    EXPECT_EQ(entry.target, PathTarget::missing);
    EXPECT_FALSE(entry.attributes);
}

TEST_F(PosixFileManagerTest, worksBelowPathsLongerThanPathMax) {
    const std::string deep = folder.makeDeepFolder(PATH_MAX / 100 + 1, std::string(100, 'd'));
    ASSERT_GT(deep.size(), std::size_t{PATH_MAX});
    ASSERT_TRUE(openPath(deep + "/file", O_WRONLY | O_CREAT));
    EXPECT_THAT(names(deep), ElementsAre("file"));
    EXPECT_EQ(files.targetOf(deep), PathTarget::directory);
    EXPECT_EQ(files.targetOf(deep + "/file"), PathTarget::file);
    EXPECT_EQ(files.targetOf(deep + "/missing"), PathTarget::missing);
    EXPECT_TRUE(files.isReadable(deep));
    EXPECT_TRUE(files.volumeCapacity(deep));
}

TEST_F(PosixFileManagerTest, followsLinksToTellWhatStandsAtAPath) {
    folder.makeFile("file");
    EXPECT_EQ(files.targetOf(folder.path()), PathTarget::directory);
    EXPECT_EQ(files.targetOf(folder.path("file")), PathTarget::file);
    EXPECT_EQ(files.targetOf(folder.path("missing")), PathTarget::missing);
    EXPECT_EQ(files.targetOf(folder.makeLink("toFolder", folder.path())), PathTarget::directory);
    EXPECT_EQ(files.targetOf(folder.makeLink("dangling", "missing")), PathTarget::missing);
    EXPECT_EQ(files.targetOf(""), PathTarget::missing);
}

TEST_F(PosixFileManagerTest, saysWhatIsReadable) {
    EXPECT_TRUE(files.isReadable(folder.path()));
    EXPECT_TRUE(files.isReadable(folder.makeFile("file")));
    EXPECT_FALSE(files.isReadable(folder.path("missing")));
}

TEST_F(PosixFileManagerTest, tellsWhatAnOrdinaryUserMayStillFillAndTheWholeVolume) {
    struct statvfs volume {};
    ASSERT_EQ(::statvfs("/proc", &volume), 0);
    EXPECT_EQ(files.volumeCapacity("/proc"), (VolumeCapacity{.freeBytes = 0, .totalBytes = 0}));

    ASSERT_EQ(::statvfs(folder.path().c_str(), &volume), 0);
    const auto capacity = files.volumeCapacity(folder.path());
    ASSERT_TRUE(capacity);
    EXPECT_EQ(capacity->totalBytes, static_cast<std::int64_t>(volume.f_blocks * volume.f_frsize));
    EXPECT_GE(capacity->totalBytes, capacity->freeBytes);
    EXPECT_FALSE(files.volumeCapacity(folder.path("missing")));
}

TEST_F(PosixFileManagerTest, leavesNoDescriptorBehind) {
    folder.makeFile("file");
    const std::size_t before = openDescriptors();
    for (int round = 0; round < 5; ++round) {
        (void)list(folder.path());
        (void)listingFails(folder.path("file"));
        (void)listingFails(folder.path("missing"));
        (void)files.targetOf(folder.path("file"));
        (void)files.isReadable(folder.path("file"));
        (void)files.volumeCapacity(folder.path("file"));
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(PosixFileManagerTest, anEntryHasTheIdentityOfItsFolderAlsoThroughALink) {
    folder.makeFolder("shown");
    const std::string target = folder.makeFolder("target");
    folder.makeLink("shown/link", target);
    const DirectoryEntry entry = only(folder.path("shown"));
    ASSERT_TRUE(entry.identity);
    EXPECT_EQ(entry.identity, files.identityOf(target));
    EXPECT_NE(entry.identity, files.identityOf(folder.path("shown/link")));
}

TEST_F(PosixFileManagerTest, anIdentityStaysWithAnItemThatIsRenamed) {
    const std::string file = folder.makeFile("a");
    const auto before = files.identityOf(file);
    ASSERT_TRUE(before);
    ASSERT_EQ(files.moveItem(file, folder.path("b")), std::error_code());
    EXPECT_EQ(files.identityOf(folder.path("b")), before);
    EXPECT_EQ(files.identityOf(file), std::nullopt);
}

TEST_F(PosixFileManagerTest, anAncestryIsOfTheFoldersThatHoldAFolderNotOfTheLinksOnTheWay) {
    folder.makeFolder("x");
    const std::string inner = folder.makeFolder("x/inner");
    folder.makeFolder("y");
    const std::string link = folder.makeLink("y/link", inner);
    const std::vector<FileIdentity> ancestry = files.ancestryOf(inner);
    ASSERT_GE(ancestry.size(), 3U);
    EXPECT_EQ(ancestry[0], files.identityOf(inner));
    EXPECT_EQ(ancestry[1], files.identityOf(folder.path("x")));
    EXPECT_EQ(ancestry[2], files.identityOf(folder.path()));
    EXPECT_EQ(ancestry.back(), files.identityOf("/"));
    EXPECT_EQ(files.ancestryOf(link), ancestry);
    EXPECT_EQ(files.ancestryOf(folder.path("y/../x/./inner")), ancestry);
    EXPECT_EQ(files.ancestryOf("/").size(), 1U);
}

TEST_F(PosixFileManagerTest, anAncestryReachesUpFromAnyDepthAndLeavesNothingOpen) {
    const std::string innermost = folder.makeDeepFolder(3'000, "deeper");
    const std::size_t open = openDescriptors();
    EXPECT_EQ(files.ancestryOf(innermost).size(), files.ancestryOf(folder.path()).size() + 3'000);
    EXPECT_EQ(openDescriptors(), open);
}

TEST_F(PosixFileManagerTest, whatIsNoFolderOrIsNotThereHasNoAncestry) {
    EXPECT_THAT(files.ancestryOf(folder.makeFile("file")), testing::IsEmpty());
    EXPECT_THAT(files.ancestryOf(folder.makeFifo("fifo")), testing::IsEmpty());
    EXPECT_THAT(files.ancestryOf(folder.path("missing")), testing::IsEmpty());
}

}  // namespace vantrel
