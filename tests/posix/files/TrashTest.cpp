#include "posix/files/Trash.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <regex>

#include "base/PathLocation.h"
#include "posix/files/FileOperationsFixture.h"
#include "support/ScopedEnvironment.h"

namespace vantrel {
namespace {

using test::contentOf;
using test::namesIn;
using test::ScopedEnvironment;
using test::snapshotOf;
using test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;

/// A home and a volume, which the trash takes for two mounts.
class TrashTest : public testing::Test {
protected:
    Trash trash() const {
        return Trash({.dataHome = home.path("share"),
                      .findMount = [this](int, const std::string& path) { return mountOfPath(path); }});
    }

    Result<Mount> mountOfPath(const std::string& path) const {
        if (path.starts_with(volumePath)) return Mount{2, volumePath, volumeKeepsTrash};
        return Mount{1, "/", false};
    }

    std::error_code put(const std::string& path) { return trash().put(path); }

    std::string homeFiles(const std::string& name = "") const {
        return home.path("share/Trash/files/" + name);
    }
    std::string homeInfo(const std::string& name) const {
        return home.path("share/Trash/info/" + name + ".trashinfo");
    }
    std::string volumeCan(const std::string& name = "") const {
        return volume.path(".Trash-" + user + "/" + name);
    }

    /// The item's place according to the info file.
    static std::string recordedPath(const std::string& infoFile) {
        static const std::regex form(
            "\\[Trash Info\\]\nPath=(.*)\nDeletionDate=\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\n");
        std::smatch match;
        const std::string content = contentOf(infoFile);
        EXPECT_TRUE(std::regex_match(content, match, form)) << content;
        return match.empty() ? "" : match[1].str();
    }

    static std::size_t entriesOf(const std::string& path) {
        return std::filesystem::exists(path) ? namesIn(path).size() : 0;
    }

    static mode_t modeOf(const std::string& path) {
        struct stat status {};
        EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
        return status.st_mode & 07777u;
    }

    TemporaryFolder home;
    TemporaryFolder volume;
    std::string volumePath = std::filesystem::canonical(volume.path());
    std::string homePath = std::filesystem::canonical(home.path());
    std::string user = std::to_string(::geteuid());
    bool volumeKeepsTrash = true;
};

TEST_F(TrashTest, putsAnItemOfTheHomesFileSystemIntoTheHomeTrash) {
    const std::string file = home.makeFile("file", "content");
    EXPECT_EQ(put(file), std::error_code());
    EXPECT_THAT(namesIn(home.path()), ElementsAre("share"));
    EXPECT_EQ(contentOf(homeFiles("file")), "content");
    EXPECT_EQ(recordedPath(homeInfo("file")), homePath + "/file");
}

TEST_F(TrashTest, makesTheHomeTrashForTheUserAlone) {
    const mode_t before = ::umask(0);
    EXPECT_EQ(put(home.makeFile("file")), std::error_code());
    ::umask(before);
    for (const char* const name : {"share", "share/Trash", "share/Trash/files", "share/Trash/info"}) {
        EXPECT_EQ(modeOf(home.path(name)), 0700u) << name;
    }
    EXPECT_EQ(modeOf(homeInfo("file")), 0600u);
}

TEST_F(TrashTest, takesItemsOfEveryKind) {
    const std::string tree = home.makeFolder("tree");
    home.makeFile("tree/inner", "x");
    EXPECT_EQ(put(tree + "/"), std::error_code());
    EXPECT_EQ(contentOf(homeFiles("tree/inner")), "x");
    EXPECT_EQ(put(home.makeFifo("fifo")), std::error_code());
    EXPECT_EQ(put(home.makeLink("dangling", "nowhere")), std::error_code());
    EXPECT_EQ(put(home.makeLink("toFolder", "share")), std::error_code());
    const std::string unreadable = home.makeFile("unreadable");
    ::chmod(unreadable.c_str(), 0);
    EXPECT_EQ(put(unreadable), std::error_code());
    EXPECT_THAT(namesIn(homeFiles()), ElementsAre("dangling", "fifo", "toFolder", "tree", "unreadable"));
    EXPECT_THAT(namesIn(home.path()), ElementsAre("share"));
}

TEST_F(TrashTest, recordsThePathPercentEncoded) {
    EXPECT_EQ(put(home.makeFile("p%20c \u00E9\n#\xFF.txt")), std::error_code());
    EXPECT_EQ(recordedPath(homeInfo("p%20c \u00E9\n#\xFF.txt")), homePath + "/p%2520c%20%C3%A9%0A%23%FF.txt");
}

TEST_F(TrashTest, recordsThePathWithoutTheLinksOnTheWay) {
    home.makeFolder("real");
    home.makeFile("real/file");
    home.makeLink("way", "real");
    EXPECT_EQ(put(home.path("way/file")), std::error_code());
    EXPECT_EQ(recordedPath(homeInfo("file")), homePath + "/real/file");
}

TEST_F(TrashTest, numbersItemsOfTheSameNameBeforeTheirExtension) {
    for (int count = 0; count < 3; ++count) {
        EXPECT_EQ(put(home.makeFile("a.txt", std::to_string(count))), std::error_code());
        EXPECT_EQ(put(home.makeFile("plain")), std::error_code());
    }
    EXPECT_EQ(contentOf(homeFiles("a.txt")), "0");
    EXPECT_EQ(contentOf(homeFiles("a.2.txt")), "1");
    EXPECT_EQ(contentOf(homeFiles("a.3.txt")), "2");
    EXPECT_THAT(namesIn(homeFiles()),
                ElementsAre("a.2.txt", "a.3.txt", "a.txt", "plain", "plain.2", "plain.3"));
    EXPECT_EQ(recordedPath(homeInfo("a.3.txt")), homePath + "/a.txt");
}

TEST_F(TrashTest, leavesAFileWithoutItsInfoAndAnInfoWithoutItsFileAlone) {
    EXPECT_EQ(put(home.makeFile("first")), std::error_code());
    ASSERT_EQ(::rename(homeFiles("first").c_str(), homeFiles("orphan").c_str()), 0);
    home.makeFolder("share/Trash/files/emptyOrphan");
    EXPECT_EQ(put(home.makeFile("orphan", "new")), std::error_code());
    EXPECT_EQ(put(home.makeFolder("emptyOrphan")), std::error_code());
    EXPECT_EQ(put(home.makeFile("first", "again")), std::error_code());
    EXPECT_THAT(namesIn(homeFiles()),
                ElementsAre("emptyOrphan", "emptyOrphan.2", "first.2", "orphan", "orphan.2"));
    EXPECT_EQ(contentOf(homeFiles("orphan")), "");
    EXPECT_EQ(contentOf(homeFiles("orphan.2")), "new");
    EXPECT_THAT(
        namesIn(home.path("share/Trash/info")),
        ElementsAre("emptyOrphan.2.trashinfo", "first.2.trashinfo", "first.trashinfo", "orphan.2.trashinfo"));
}

TEST_F(TrashTest, shortensNamesThatTheInfoFilesSuffixWouldMakeTooLong) {
    for (const std::size_t length : {245U, 246U, 255U}) {
        const std::string name = std::string(length - 4, 'n') + ".txt";
        EXPECT_EQ(put(home.makeFile(name)), std::error_code());
        EXPECT_EQ(put(home.makeFile(name)), std::error_code());
    }
    const std::vector<std::string> names = namesIn(homeFiles());
    EXPECT_EQ(names.size(), 6U);
    for (const std::string& name : names) {
        EXPECT_LE(name.size(), 245U);
        EXPECT_TRUE(name.ends_with(".txt"));
    }
}

TEST(TrashName, isShortenedBetweenCharactersBeforeItsExtension) {
    EXPECT_EQ(trashName("name.txt", 1, 20), "name.txt");
    EXPECT_EQ(trashName("name.txt", 2, 20), "name.2.txt");
    EXPECT_EQ(trashName("name", 10, 20), "name.10");
    EXPECT_EQ(trashName(".profile", 2, 20), ".profile.2");
    EXPECT_EQ(trashName("longname.txt", 1, 10), "longna.txt");
    EXPECT_EQ(trashName("longname.txt", 2, 10), "long.2.txt");
    EXPECT_EQ(trashName("\u00E9\u00E9\u00E9\u00E9.txt", 1, 9), "\u00E9\u00E9.txt")
        << "8 bytes, since 9 would cut one in two";
    EXPECT_EQ(trashName("a.extensionwithoutend", 2, 10), "a.extens.2");
    EXPECT_EQ(trashName("\x80\x80\x80\x80\x80\x80\x80\x80\x80\x80", 1, 8), "\x80\x80\x80\x80\x80")
        << "no UTF-8";
}

TEST_F(TrashTest, putsAnItemOfAnotherFileSystemIntoATrashAtItsTop) {
    volume.makeFolder("folder");
    const std::string file = volume.makeFile("folder/a file", "x");
    EXPECT_EQ(put(file), std::error_code());
    EXPECT_EQ(put(volume.makeFile("top")), std::error_code());
    EXPECT_EQ(contentOf(volumeCan("files/a file")), "x");
    EXPECT_EQ(recordedPath(volumeCan("info/a file.trashinfo")), "folder/a%20file") << "relative to the top";
    EXPECT_EQ(recordedPath(volumeCan("info/top.trashinfo")), "top");
    EXPECT_EQ(modeOf(volumeCan()), 0700u);
    EXPECT_EQ(modeOf(volumeCan("files")), 0700u);
    EXPECT_THAT(namesIn(home.path()), IsEmpty());
}

TEST_F(TrashTest, putsALinkWhereTheLinkLiesAndNotWhereItPoints) {
    EXPECT_EQ(put(home.makeLink("link", volume.makeFile("file"))), std::error_code());
    EXPECT_THAT(namesIn(homeFiles()), ElementsAre("link"));
    EXPECT_THAT(namesIn(volume.path()), ElementsAre("file"));
}

TEST_F(TrashTest, usesTheCommonTrashOfAVolumeWhenItIsSticky) {
    const std::string common = volume.makeFolder(".Trash");
    ASSERT_EQ(::chmod(common.c_str(), 01777), 0);
    EXPECT_EQ(put(volume.makeFile("file")), std::error_code());
    EXPECT_THAT(namesIn(common), ElementsAre(user));
    EXPECT_EQ(recordedPath(common + "/" + user + "/info/file.trashinfo"), "file");
    EXPECT_EQ(modeOf(common + "/" + user), 0700u);
    EXPECT_THAT(namesIn(volume.path()), ElementsAre(".Trash"));
}

TEST_F(TrashTest, passesOverACommonTrashThatIsNotToBeTrusted) {
    const std::string common = volume.makeFolder(".Trash");
    ASSERT_EQ(::chmod(common.c_str(), 0777), 0);
    EXPECT_EQ(put(volume.makeFile("notSticky")), std::error_code());
    ASSERT_EQ(::rmdir(common.c_str()), 0);

    const TemporaryFolder elsewhere;
    ASSERT_EQ(::chmod(elsewhere.path().c_str(), 01777), 0);
    volume.makeLink(".Trash", elsewhere.path());
    EXPECT_EQ(put(volume.makeFile("link")), std::error_code());
    ASSERT_EQ(::unlink(common.c_str()), 0);

    volume.makeFolder(".Trash");
    ASSERT_EQ(::chmod(common.c_str(), 01777), 0);
    volume.makeFile(".Trash/" + user);
    EXPECT_EQ(put(volume.makeFile("fileInItsPlace")), std::error_code());

    EXPECT_THAT(namesIn(volumeCan("files")), ElementsAre("fileInItsPlace", "link", "notSticky"));
    EXPECT_THAT(namesIn(elsewhere.path()), IsEmpty());
}

TEST_F(TrashTest, refusesAVolumesTrashThatIsALinkOrSomebodyElses) {
    const TemporaryFolder elsewhere;
    const std::string file = volume.makeFile("file", "x");
    const std::string can = volume.makeLink(".Trash-" + user, elsewhere.path());
    EXPECT_TRUE(put(file));
    ASSERT_EQ(::unlink(can.c_str()), 0);
    volume.makeFolder(".Trash-" + user);
    volume.makeLink(".Trash-" + user + "/files", elsewhere.path());
    EXPECT_TRUE(put(file));
    EXPECT_EQ(contentOf(file), "x");
    EXPECT_THAT(namesIn(elsewhere.path()), IsEmpty());
}

TEST_F(TrashTest, refusesAVolumesTrashOfAnotherUser) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can make folders of other users";
    const std::string file = volume.makeFile("file", "x");
    ASSERT_EQ(::chown(volume.makeFolder(".Trash-0").c_str(), 12345, 12345), 0);
    EXPECT_EQ(put(file), std::errc::permission_denied);
    EXPECT_EQ(contentOf(file), "x");
}

TEST_F(TrashTest, refusesWhereNoTrashIsKept) {
    volumeKeepsTrash = false;
    const std::string file = volume.makeFile("file", "x");
    EXPECT_EQ(put(file), std::errc::operation_not_supported);
    EXPECT_EQ(contentOf(file), "x");
    EXPECT_THAT(namesIn(volume.path()), ElementsAre("file"));
}

TEST_F(TrashTest, refusesWhenTheHomeTrashCannotBeMade) {
    const std::string file = home.makeFile("file", "x");
    home.makeFolder("share");
    home.makeFile("share/Trash");
    EXPECT_EQ(put(file), std::errc::not_a_directory);
    EXPECT_EQ(contentOf(file), "x");
    EXPECT_THAT(namesIn(home.path()), ElementsAre("file", "share"));
}

TEST_F(TrashTest, refusesTheTrashItselfAndWhatLiesInIt) {
    EXPECT_EQ(put(home.makeFile("file")), std::error_code());
    const auto before = snapshotOf(home.path());
    for (const char* const name : {"share/Trash/files/file", "share/Trash/info/file.trashinfo",
                                   "share/Trash/files", "share/Trash/info", "share/Trash", "share"}) {
        EXPECT_EQ(put(home.path(name)), std::errc::invalid_argument) << name;
    }
    const auto after = snapshotOf(home.path());
    EXPECT_EQ(after.size(), before.size());
    EXPECT_TRUE(after.contains("/share/Trash/files/file"));
}

TEST_F(TrashTest, refusesPathsThatAreNotPlain) {
    home.makeFolder("folder");
    EXPECT_EQ(put("relative"), std::errc::invalid_argument);
    EXPECT_EQ(put(""), std::errc::invalid_argument);
    EXPECT_EQ(put("/"), std::errc::invalid_argument);
    EXPECT_EQ(put(home.path("folder/..")), std::errc::invalid_argument);
    EXPECT_EQ(put(home.path("folder/../folder")), std::errc::invalid_argument);
    EXPECT_EQ(put(home.path("./folder")), std::errc::invalid_argument);
    EXPECT_EQ(put(home.path("missing")), std::errc::no_such_file_or_directory);
    EXPECT_THAT(namesIn(home.path()), ElementsAre("folder"));
}

TEST_F(TrashTest, leavesTheItemWhichCannotBeMovedAndNoInfoOfIt) {
    if (::geteuid() == 0) GTEST_SKIP() << "root may move everything";
    const std::string locked = home.makeFolder("locked");
    const std::string file = home.makeFile("locked/file", "x");
    ::chmod(locked.c_str(), 0500);
    EXPECT_EQ(put(file), std::errc::permission_denied);
    EXPECT_EQ(contentOf(file), "x");
    EXPECT_THAT(namesIn(home.path("share/Trash/info")), IsEmpty());
}

TEST_F(TrashTest, trashesItemsBelowPathsLongerThanPathMax) {
    const std::string deep = home.makeDeepFolder(45, std::string(100, 'd'));
    ASSERT_TRUE(openPath(deep + "/file", O_WRONLY | O_CREAT));
    EXPECT_EQ(put(deep + "/file"), std::error_code());
    EXPECT_EQ(recordedPath(homeInfo("file")), deep + "/file");
}

TEST_F(TrashTest, losesNothingWhicheverSystemCallFails) {
    for (test::FailingCall failing{.number = 0};; ++failing.number) {
        std::filesystem::remove_all(home.path("share"));
        const std::string file = home.makeFile("file", "x");
        failing.made = 0;
        const std::error_code error = test::under(failing.plan(), [&] { return put(file); });
        EXPECT_EQ(entriesOf(home.path("share/Trash/files")), entriesOf(home.path("share/Trash/info")))
            << failing.number;
        if (error) {
            EXPECT_EQ(contentOf(file), "x") << failing.number;
            ::unlink(file.c_str());
        } else {
            EXPECT_TRUE(snapshotOf(file).empty());
        }
        RecordProperty("cases", failing.number);
        if (!failing.wasReached()) break;
    }
}

TEST(TrashSettings, followTheEnvironmentWhereItIsAbsolute) {
    const ScopedEnvironment home("HOME", "/home/ann");
    {
        const ScopedEnvironment data("XDG_DATA_HOME", "/data");
        EXPECT_EQ(Trash::userSettings().dataHome, "/data");
    }
    for (const std::optional<std::string>& value : {std::optional<std::string>(), {""}, {"relative"}}) {
        const ScopedEnvironment data("XDG_DATA_HOME", value);
        EXPECT_EQ(Trash::userSettings().dataHome, "/home/ann/.local/share");
    }
}

TEST(FindMount, tellsFileSystemsApart) {
    const auto mountAt = [](const std::string& path) {
        const Result<FileDescriptor> folder = openPath(path, O_PATH | O_DIRECTORY);
        EXPECT_TRUE(folder) << path;
        const Result<Mount> mount = findMount(folder.value().number(), path);
        EXPECT_TRUE(mount) << path;
        return mount.value();
    };
    const Mount root = mountAt("/");
    EXPECT_EQ(root.topFolder, "/");
    EXPECT_FALSE(root.keepsTrash);
    const Mount processes = mountAt("/proc/self");
    EXPECT_EQ(mountAt("/proc").topFolder, "/proc");
    EXPECT_NE(processes.number, root.number);
    EXPECT_FALSE(processes.keepsTrash);
}

/// Debian's trash-cli, another program that reads such trashes.
TEST(TrashReader, listsWhatWasPutIntoTheTrash) {
    if (std::system("command -v trash-list >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "trash-cli is not installed";
    const TemporaryFolder home;
    const ScopedEnvironment data("XDG_DATA_HOME", home.path("data"));
    const std::string path = std::filesystem::canonical(home.path()).string() + "/a % name \u00E9";
    home.makeFile("a % name \u00E9");
    ASSERT_EQ(Trash(Trash::userSettings()).put(path), std::error_code());
    FILE* const listing = ::popen("trash-list", "r");
    ASSERT_NE(listing, nullptr);
    std::string lines;
    for (int character = 0; (character = std::fgetc(listing)) != EOF;) lines += static_cast<char>(character);
    ::pclose(listing);
    EXPECT_THAT(lines, testing::HasSubstr(" " + path + "\n"));
}

TEST_F(TrashTest, theFoldersThatAnItemsTrashChangesAreToldBefore) {
    const std::string file = home.makeFile("file");
    EXPECT_THAT(trash().foldersFor(file),
                ElementsAre(home.path("share/Trash/files"), home.path("share/Trash/info")));
    const std::string far = volume.makeFile("far");
    const std::vector<std::string> folders = trash().foldersFor(far);
    ASSERT_EQ(put(far), std::error_code());
    EXPECT_THAT(folders, testing::Contains(volumePath + "/.Trash-" + user + "/files"));
    EXPECT_TRUE(std::filesystem::exists(volumeCan("files/far")));
    EXPECT_THAT(folders, testing::Not(testing::Contains(home.path("share/Trash/files"))));
    EXPECT_THAT(trash().foldersFor(home.path("missing/x")), testing::IsEmpty());
}

}  // namespace
}  // namespace vantrel
