#include "posix/files/Leftovers.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <optional>

#include "posix/ProcessMark.h"
#include "posix/files/FileOperationsFixture.h"
#include "posix/files/PosixFileManager.h"
#include "posix/files/Trash.h"
#include "support/ChildProcess.h"
#include "support/SystemCallFaults.h"

// What interrupted operations leave behind, and what becomes of it.

namespace vantrel::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

std::vector<std::string> hiddenNamesIn(const std::string& path) {
    std::vector<std::string> names = namesIn(path);
    std::erase_if(names, [](const std::string& name) { return !name.starts_with(".vantrel-"); });
    return names;
}

class Leftovers : public FileOperationsFixture {
protected:
    Leftovers() : FileOperationsFixture(quickPlace()) {}
    ~Leftovers() override { RecordProperty("cases", cases); }

    void begin() {
        work.emplace(folder.path());
        work->makeFolder("tree");
        work->makeFile("tree/file", std::string(5000, 'f'));
        work->makeFolder("tree/inner");
        work->makeFile("tree/inner/deep", "d");
        work->makeLink("tree/link", "inner/deep");
        before = snapshotOf(work->path("tree"));
    }

    std::string path(const std::string& name) const { return work->path(name); }

    /// Runs the operation in a child that gets `signal` before its n-th call, for every n until it completes.
    /// `isAcross`: the first rename fails as if it led to another file system.
    void interruptEverywhere(int signal, bool isAcross, const std::function<std::error_code()>& operate,
                             const std::function<void()>& check) {
        for (int number = 0;; ++number, ++cases) {
            SCOPED_TRACE("before call " + std::to_string(number));
            begin();
            const int status = inChild([&] {
                int made = 0, renames = 0;
                const SystemCallFaults plan([&](std::string_view call) {
                    if (made++ == number) ::raise(signal);
                    return isAcross && call == "renameat2" && renames++ == 0 ? EXDEV : 0;
                });
                (void)operate();
            });
            if (hasSucceeded(status)) break;
            ASSERT_EQ(signalOf(status), signal);
            check();
            if (HasFailure()) break;
        }
        EXPECT_GT(cases, 20);
    }

    /// At least one of the two places has all of it, in sight.
    void expectWholeSomewhere(const std::string& target) const {
        const std::size_t there = snapshotOf(path(target)).size();
        EXPECT_TRUE(snapshotOf(path("tree")) == before || there == before.size());
    }

    /// The next operation in the same folder, whatever it is.
    void workAgain() const {
        work->makeFile("another");
        EXPECT_EQ(operations.copyItem(path("another"), path("another copy")), std::error_code());
        EXPECT_THAT(hiddenNamesIn(work->path()), IsEmpty());
    }

    /// A workplace with a file in it, as a process that has ended would have left it.
    std::string makeDead(const std::string& prefix) const {
        std::string mark;
        EXPECT_TRUE(hasSucceeded(inChild([&] {
            const FileDescriptor file(::open(path("mark").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
            const std::string text = processMark();
            EXPECT_EQ(::write(file.number(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
        })));
        mark = contentOf(path("mark"));
        ::unlink(path("mark").c_str());
        makeWorkplace(prefix + mark);
        return prefix + mark;
    }

    void makeWorkplace(const std::string& name) const {
        work->makeFolder(name);
        ASSERT_EQ(::chmod(path(name).c_str(), 0700), 0);
        work->makeFile(name + "/document", "precious");
    }

    int cases = 0;
    std::optional<TemporaryFolder> work;
    TreeSnapshot before;
};

TEST_F(Leftovers, ofACopyThatWasKilledAreRemovedByTheNextOneInThatFolder) {
    interruptEverywhere(
        SIGKILL, false, [&] { return operations.copyItem(path("tree"), path("copy")); },
        [&] {
            EXPECT_EQ(snapshotOf(path("tree")), before);
            workAgain();
            const std::size_t copied = snapshotOf(path("copy")).size();
            EXPECT_TRUE(copied == 0 || copied == before.size());
        });
}

TEST_F(Leftovers, ofAMoveThatWasKilledAreRemovedAndTheOriginalIsInSightAgain) {
    interruptEverywhere(
        SIGKILL, true, [&] { return operations.moveItem(path("tree"), path("moved")); },
        [&] {
            workAgain();
            expectWholeSomewhere("moved");
        });
}

TEST_F(Leftovers, ofAMovedFileAreRemovedTheSameWay) {
    interruptEverywhere(
        SIGKILL, true, [&] { return operations.moveItem(path("tree/file"), path("moved")); },
        [&] {
            workAgain();
            EXPECT_EQ(::mkdir(path("tree/made").c_str(), 0700), 0);
            EXPECT_EQ(operations.moveItem(path("tree/made"), path("tree/used")), std::error_code());
            EXPECT_THAT(hiddenNamesIn(path("tree")), IsEmpty());
            const std::string whole(5000, 'f');
            EXPECT_TRUE((::access(path("moved").c_str(), F_OK) == 0 && contentOf(path("moved")) == whole) ||
                        contentOf(path("tree/file")) == whole);
        });
}

TEST_F(Leftovers, areNotMadeByASignalThatEndsTheProgram) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        interruptEverywhere(
            signal, false, [&] { return PosixFileManager().copyItem(path("tree"), path("copy")); },
            [&] {
                EXPECT_EQ(snapshotOf(path("tree")), before);
                EXPECT_THAT(hiddenNamesIn(work->path()), IsEmpty());
                const std::size_t copied = snapshotOf(path("copy")).size();
                EXPECT_TRUE(copied == 0 || copied == before.size());
            });
    }
    interruptEverywhere(
        SIGTERM, true, [&] { return PosixFileManager().moveItem(path("tree"), path("moved")); },
        [&] {
            EXPECT_THAT(hiddenNamesIn(work->path()), IsEmpty());
            const bool isMoved = snapshotOf(path("tree")).empty();
            EXPECT_EQ(snapshotOf(path("moved")).size(), isMoved ? before.size() : 0);
            EXPECT_EQ(snapshotOf(path("tree")) == before, !isMoved);
        });
}

TEST_F(Leftovers, areNotMadeWhereDescriptorsAreShort) {
    for (rlim_t left = 1; left < 20; ++left) {
        begin();
        const int status = inChild([&] {
            // Descriptors inherited from whoever started the tests would give the limit a different meaning
            // each time.
            ::close_range(STDERR_FILENO + 1, ~0U, 0);
            const rlim_t most = STDERR_FILENO + 1 + left;
            const rlimit limit{.rlim_cur = most, .rlim_max = most};
            ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
            const std::error_code error = operations.copyItem(path("tree"), path("copy"));
            // With this many there is no reason to fail.
            EXPECT_TRUE(!error || left < 10) << left;
            ::_exit(testing::Test::HasFailure() ? 1 : error ? 2 : 0);
        });
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) != 1) << left;
        EXPECT_EQ(namesIn(work->path()).size(), WEXITSTATUS(status) == 0 ? 2U : 1U) << left;
    }
}

TEST_F(Leftovers, areNotMadeByFoldersThatCannotBeReadAnyMore) {
    begin();
    int reads = 0;
    const SystemCallFaults plan(
        [&](std::string_view call) { return call == "readdir" && ++reads == 9 ? EIO : 0; });
    EXPECT_EQ(operations.copyItem(path("tree"), path("copy")), std::errc::io_error);
    EXPECT_THAT(namesIn(work->path()), ElementsAre("tree"));
}

TEST_F(Leftovers, ofAProcessThatIsNoMoreAreRemovedOrGetTheirNamesBack) {
    begin();
    makeDead(".vantrel-copy-");
    const std::string aside = makeDead(".vantrel-original-");
    work->makeFile(aside + "/tree", "of the same name as something else");
    workAgain();
    EXPECT_THAT(namesIn(work->path()), ElementsAre("another", "another copy", "document", "tree", "tree.2"));
    EXPECT_EQ(contentOf(path("document")), "precious");
    EXPECT_EQ(snapshotOf(path("tree")), before);
}

TEST_F(Leftovers, inUseStay) {
    begin();
    const std::string dead = makeDead(".vantrel-copy-");
    const FileDescriptor user(::open(path(dead).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    ASSERT_EQ(::flock(user.number(), LOCK_EX), 0);
    EXPECT_EQ(operations.createDirectory(path("new")), std::error_code());
    EXPECT_EQ(contentOf(path(dead + "/document")), "precious");
}

TEST_F(Leftovers, areNeverKnownByTheirNameAlone) {
    begin();
    const std::string alive = ".vantrel-copy-" + processMark();
    makeWorkplace(alive);
    makeWorkplace(".vantrel-copy-mine");
    makeWorkplace(".vantrel-backup");
    const std::string open = makeDead(".vantrel-copy-");
    ASSERT_EQ(::chmod(path(open).c_str(), 0755), 0);
    work->makeLink(makeDead(".vantrel-copy-") + "0", path("tree"));
    EXPECT_EQ(operations.createDirectory(path("new")), std::error_code());
    for (const std::string& name :
         {alive, std::string(".vantrel-copy-mine"), std::string(".vantrel-backup"), open})
        EXPECT_EQ(contentOf(path(name + "/document")), "precious") << name;
    EXPECT_EQ(snapshotOf(path("tree")), before);
}

TEST_F(Leftovers, ofOtherUsersStay) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can make folders of other users";
    begin();
    const std::string dead = makeDead(".vantrel-copy-");
    ASSERT_EQ(::chown(path(dead).c_str(), 12345, 12345), 0);
    EXPECT_EQ(operations.createDirectory(path("new")), std::error_code());
    EXPECT_EQ(contentOf(path(dead + "/document")), "precious");
}

TEST(ProcessMarks, tellThisProcessFromOthersAndThoseFromTheDead) {
    const std::string own = processMark();
    EXPECT_NE(own, processMark()) << "no two are alike";
    EXPECT_EQ(processOf(own), MarkedProcess::thisOne);
    EXPECT_TRUE(hasSucceeded(inChild([&] { EXPECT_EQ(processOf(own), MarkedProcess::running); })));
    // Another boot, another container, a process number that somebody else has by now.
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin <= own.size(); begin = own.find('.', begin) + 1) {
        parts.push_back(own.substr(begin, own.find('.', begin) - begin));
        if (own.find('.', begin) == std::string::npos) break;
    }
    ASSERT_EQ(parts.size(), 5U);
    const auto with = [&](std::size_t index, const std::string& text) {
        auto changed = parts;
        changed[index] = text;
        return changed[0] + "." + changed[1] + "." + changed[2] + "." + changed[3] + "." + changed[4];
    };
    EXPECT_EQ(processOf(with(0, "0123456789abcdef")), MarkedProcess::ended);
    EXPECT_EQ(processOf(with(1, "1")), MarkedProcess::unknown);
    EXPECT_EQ(processOf(with(2, "999999999")), MarkedProcess::ended);
    EXPECT_EQ(processOf(with(3, "1")), MarkedProcess::ended);
    for (const char* const text : {"", "mine", "a.b.c.d.e", "..."})
        EXPECT_EQ(processOf(text), MarkedProcess::unknown) << text;
}

}  // namespace
}  // namespace vantrel::test
