#include "posix/PosixProcessInfo.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <atomic>
#include <climits>
#include <filesystem>

#include "base/PathLocation.h"
#include "support/ProcessInfoContract.h"
#include "support/ScopedEnvironment.h"
#include "support/SystemCallFaults.h"
#include "support/TemporaryFolder.h"

namespace vantrel {

using test::ScopedEnvironment;
using test::TemporaryFolder;

namespace {

/// Makes a folder the current one until the end of the scope.
class ScopedCurrentFolder {
public:
    explicit ScopedCurrentFolder(const std::string& path)
        : before_(::open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        const Result<FileDescriptor> folder = openPath(path, O_RDONLY | O_DIRECTORY);
        EXPECT_TRUE(folder && ::fchdir(folder.value().number()) == 0) << path;
    }
    ScopedCurrentFolder(const ScopedCurrentFolder&) = delete;
    ScopedCurrentFolder& operator=(const ScopedCurrentFolder&) = delete;
    ~ScopedCurrentFolder() { EXPECT_EQ(::fchdir(before_.number()), 0); }

private:
    FileDescriptor before_;
};

/// The folder without links in its path, as the system names a current folder.
std::string realPath(const std::string& path) {
    return std::filesystem::canonical(path);
}

const PosixProcessInfo process;

/// What a newly started process would say.
std::string homeNow() {
    return PosixProcessInfo().homeDirectory();
}

}  // namespace

TEST(PosixProcessInfo, namesTheCurrentFolder) {
    const TemporaryFolder folder;
    const ScopedCurrentFolder scope(folder.path());
    EXPECT_EQ(process.currentDirectoryPath(), realPath(folder.path()));
}

TEST(PosixProcessInfo, namesTheRootWhenTheCurrentFolderIsGone) {
    const TemporaryFolder folder;
    const std::string gone = folder.makeFolder("gone");
    const ScopedCurrentFolder scope(gone);
    ASSERT_EQ(::rmdir(gone.c_str()), 0);
    EXPECT_EQ(process.currentDirectoryPath(), "/");
}

TEST(PosixProcessInfo, aRelativePathNamesNothingWhenTheCurrentFolderIsGone) {
    const TemporaryFolder folder;
    const std::string gone = folder.makeFolder("gone");
    const ScopedCurrentFolder scope(gone);
    ASSERT_EQ(::rmdir(gone.c_str()), 0);
    for (const char* const path : {"etc", ".", "..", "./etc", "../etc"})
        EXPECT_EQ(process.absolutePath(path), "") << path;
    EXPECT_EQ(process.absolutePath("/etc"), "/etc");
}

TEST(PosixProcessInfo, namesACurrentFolderThatIsDeeperThanPathMax) {
    const TemporaryFolder folder;
    const std::string deep = folder.makeDeepFolder(PATH_MAX / 100 + 1, std::string(100, 'd'));
    const ScopedCurrentFolder scope(deep);
    EXPECT_EQ(process.currentDirectoryPath(), realPath(folder.path()) + deep.substr(folder.path().size()));
}

TEST(PosixProcessInfo, takesTheHomeFolderFromTheEnvironmentWhereItIsAbsolute) {
    const ScopedEnvironment home("HOME", "/home/some one");
    EXPECT_EQ(homeNow(), "/home/some one");
}

TEST(PosixProcessInfo, spellsTheHomeFolderAsThePathsBelowItBegin) {
    for (const auto& [spelling, expected] :
         {std::pair{"/home/ann/", "/home/ann"}, {"//home//ann", "/home/ann"}, {"//", "/"}}) {
        const ScopedEnvironment home("HOME", spelling);
        EXPECT_EQ(homeNow(), expected);
    }
}

TEST(PosixProcessInfo, takesTheHomeFolderFromTheUserDatabaseOtherwise) {
    const passwd* const user = ::getpwuid(::geteuid());
    if (user == nullptr) GTEST_SKIP() << "this user is not in the database";
    const std::string expected = user->pw_dir;
    for (const std::optional<std::string>& value : {std::optional<std::string>(), {""}, {"relative"}}) {
        const ScopedEnvironment home("HOME", value);
        EXPECT_EQ(homeNow(), expected);
    }
}

TEST(PosixProcessInfo, knowsTheHomeFoldersOfOtherUsers) {
    EXPECT_EQ(process.homeDirectoryOf("root"), "/root");
    EXPECT_EQ(process.homeDirectoryOf("no such user"), std::nullopt);
    EXPECT_EQ(process.homeDirectoryOf(""), std::nullopt);
}

TEST(PosixProcessInfo, namesTheUserByTheDatabaseWhateverTheEnvironmentSays) {
    if (::geteuid() != 0) GTEST_SKIP() << "root's name is the only one that every system agrees on";
    const ScopedEnvironment user("USER", "somebody");
    EXPECT_EQ(PosixProcessInfo().userName(), "root");
}

TEST(PosixProcessInfo, asksTheUserDatabaseOnceHoweverOftenItIsAsked) {
    const ScopedEnvironment noHome("HOME", std::nullopt);
    std::atomic<int> questions{0};
    const test::SystemCallFaults counted([&](std::string_view call) {
        questions += call == "getpwuid_r" ? 1 : 0;
        return 0;
    });
    const PosixProcessInfo asked;
    for (int repaint = 0; repaint < 100; ++repaint) {
        EXPECT_EQ(asked.homeDirectory(), asked.homeDirectory());
        EXPECT_EQ(asked.userName(), asked.userName());
    }
    EXPECT_EQ(questions, 1);
}

TEST(PosixProcessInfo, keepsTheHomeFolderThatItBeganWith) {
    const ScopedEnvironment before("HOME", "/home/ann");
    const PosixProcessInfo asked;
    EXPECT_EQ(asked.homeDirectory(), "/home/ann");
    const ScopedEnvironment after("HOME", "/home/bob");
    EXPECT_EQ(asked.homeDirectory(), "/home/ann");
}

TEST(PosixProcessInfo, doesNotAskTheUserDatabaseForAHomeThatTheEnvironmentNames) {
    const ScopedEnvironment home("HOME", "/home/ann");
    std::atomic<int> questions{0};
    const test::SystemCallFaults counted([&](std::string_view call) {
        questions += call == "getpwuid_r" ? 1 : 0;
        return 0;
    });
    EXPECT_EQ(homeNow(), "/home/ann");
    EXPECT_EQ(questions, 0);
}

TEST(PosixProcessInfo, leavesACleanAbsolutePathAsItIs) {
    EXPECT_EQ(process.absolutePath("/"), "/");
    EXPECT_EQ(process.absolutePath("/no/such place/\xFF"), "/no/such place/\xFF");
    EXPECT_EQ(process.absolutePath("/..hidden/..."), "/..hidden/...");
    EXPECT_EQ(process.absolutePath(""), "");
}

TEST(PosixProcessInfo, putsARelativePathBelowTheCurrentFolder) {
    const TemporaryFolder folder;
    const ScopedCurrentFolder scope(folder.path());
    const std::string current = realPath(folder.path());
    EXPECT_EQ(process.absolutePath("a/b"), current + "/a/b");
    EXPECT_EQ(process.absolutePath("."), current);
    EXPECT_EQ(process.absolutePath("./a/./"), current + "/a");
    EXPECT_EQ(process.absolutePath("~"), current + "/~") << "tildes are somebody else's business";
}

TEST(PosixProcessInfo, removesEmptyComponentsAndDots) {
    EXPECT_EQ(process.absolutePath("//usr///lib/"), "/usr/lib");
    EXPECT_EQ(process.absolutePath("/./usr/./lib/."), "/usr/lib");
}

TEST(PosixProcessInfo, removesParentStepsThatNameTheSameFolder) {
    const TemporaryFolder folder;
    folder.makeFolder("a");
    folder.makeFolder("b");
    EXPECT_EQ(process.absolutePath(folder.path("a/../b")), folder.path("b"));
    EXPECT_EQ(process.absolutePath(folder.path("a/..")), folder.path());
    EXPECT_EQ(process.absolutePath("/.."), "/");
    EXPECT_EQ(process.absolutePath("/../../usr"), "/usr");
}

TEST(PosixProcessInfo, resolvesParentStepsBehindALinkAsTheSystemDoes) {
    const TemporaryFolder folder;
    const TemporaryFolder elsewhere;
    elsewhere.makeFolder("inner");
    elsewhere.makeFolder("b");
    folder.makeFolder("b");
    folder.makeLink("link", elsewhere.path("inner"));
    EXPECT_EQ(process.absolutePath(folder.path("link/../b")), realPath(elsewhere.path("b")));
}

TEST(PosixProcessInfo, keepsParentStepsWhereNothingExists) {
    const TemporaryFolder folder;
    EXPECT_EQ(process.absolutePath(folder.path("missing/../b")), folder.path("missing/../b"));
}

class PosixProcessInfoSubject {
public:
    const ProcessInfo& process() const { return process_; }
    std::string currentFolder() const { return realPath(folder_.path("current")); }
    void removeCurrentFolder() const { EXPECT_EQ(::rmdir(folder_.path("current").c_str()), 0); }
    static std::string knownUser() { return "root"; }

private:
    TemporaryFolder folder_;
    ScopedCurrentFolder scope_{folder_.makeFolder("current")};
    PosixProcessInfo process_;
};

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(Posix, ProcessInfoContract, PosixProcessInfoSubject);
}

}  // namespace vantrel
