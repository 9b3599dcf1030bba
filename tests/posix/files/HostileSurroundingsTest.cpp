#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <optional>

#include "posix/files/FileOperationsFixture.h"
#include "posix/files/Trash.h"
#include "support/ChildProcess.h"
#include "support/SystemCallFaults.h"

// Folders that others may write to, limits, items that cannot be removed.

namespace vantrel::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr uid_t stranger = 12345;

class HostileSurroundings : public FileOperationsFixture {
protected:
    HostileSurroundings() : FileOperationsFixture(quickPlace()) {}

    /// Makes the two places of an operation seem to lie on different file systems.
    static SystemCallFaults::Plan across(std::function<int(std::string_view)> otherwise = {}) {
        return [otherwise = std::move(otherwise), renames = 0](std::string_view call) mutable {
            if (call == "renameat2" && renames++ == 0) return EXDEV;
            return otherwise ? otherwise(call) : 0;
        };
    }
};

/// Puts an open folder of somebody else's in the place of whatever is hidden there.
class Exchange {
public:
    explicit Exchange(const std::string& place) : place_(place) {}

    bool happen() {
        for (const std::string& name : namesIn(place_)) {
            if (!name.starts_with(".vantrel-")) continue;
            const std::string path = place_ + "/" + name;
            if (::rename(path.c_str(), (place_ + "/taken").c_str()) != 0) return false;
            ::mkdir(path.c_str(), 0777);
            ::chmod(path.c_str(), 0777);
            opened_ = FileDescriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
            return ::chown(path.c_str(), stranger, stranger) == 0;
        }
        return false;
    }

    /// What has ended up in the stranger's folder.
    std::vector<std::string> loot() const {
        return opened_ ? namesIn("/proc/self/fd/" + std::to_string(opened_.number()))
                       : std::vector<std::string>();
    }

private:
    std::string place_;
    FileDescriptor opened_;
};

TEST_F(HostileSurroundings, giveNothingToWhoExchangesTheHiddenFolder) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can make folders of other users";
    int exchanged = 0, refused = 0;
    for (int number = 0;; ++number) {
        const TemporaryFolder work(folder.path());
        work.makeFolder("open");
        work.makeFolder("tree");
        work.makeFile("tree/secret", "secret");
        ASSERT_EQ(::chmod(work.path("open").c_str(), 0777), 0);
        Exchange exchange(work.path("open"));
        int made = 0;
        bool happened = false;
        std::error_code error;
        {
            const SystemCallFaults plan([&](std::string_view) {
                if (made++ == number) happened = exchange.happen();
                return 0;
            });
            error = operations.copyItem(work.path("tree"), work.path("open/copy"));
        }
        if (made <= number) break;
        EXPECT_THAT(exchange.loot(), IsEmpty()) << number;
        if (happened) ++exchanged;
        if (error) {
            ++refused;
            EXPECT_EQ(error, std::errc::permission_denied);
            EXPECT_EQ(snapshotOf(work.path("open/copy")).size(), 0U) << number;
        } else {
            EXPECT_EQ(contentOf(work.path("open/copy/secret")), "secret") << number;
        }
    }
    EXPECT_GT(exchanged, 20);
    EXPECT_GE(refused, 1) << "when it comes between the making and the opening";
}

/// The binary form of an access list: the owner may do everything, `reader` and the group may read, others
/// nothing.
std::string accessListFor(std::uint32_t reader) {
    const std::array<std::array<std::uint32_t, 2>, 5> entries{{{0x01 | 7 << 16, 0xFFFFFFFF},
                                                               {0x02 | 4 << 16, reader},
                                                               {0x04 | 4 << 16, 0xFFFFFFFF},
                                                               {0x10 | 4 << 16, 0xFFFFFFFF},
                                                               {0x20 | 0 << 16, 0xFFFFFFFF}}};
    std::string list(4, '\0');
    list[0] = 2;
    list.append(reinterpret_cast<const char*>(entries.data()), sizeof entries);
    return list;
}

TEST_F(HostileSurroundings, handDownNoAccessToACopy) {
    const std::string file = folder.makeFile("file", "secret");
    folder.makeFolder("open");
    const std::string list = accessListFor(stranger);
    if (::setxattr(folder.path("open").c_str(), "system.posix_acl_default", list.data(), list.size(), 0) != 0)
        GTEST_SKIP() << "no access lists here: " << std::strerror(errno);
    ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
    ASSERT_EQ(operations.copyItem(file, folder.path("open/copy")), std::error_code());
    EXPECT_LT(::getxattr(folder.path("open/copy").c_str(), "system.posix_acl_access", nullptr, 0), 0)
        << "whom the folder lets read may not read what its owner has closed to them";
}

TEST_F(HostileSurroundings, keepAnAccessListOfTheOriginal) {
    const std::string file = folder.makeFile("file", "secret");
    const std::string list = accessListFor(stranger);
    if (::setxattr(file.c_str(), "system.posix_acl_access", list.data(), list.size(), 0) != 0)
        GTEST_SKIP() << "no access lists here: " << std::strerror(errno);
    ASSERT_EQ(operations.copyItem(file, folder.path("copy")), std::error_code());
    std::array<char, 200> copied{};
    const ssize_t size =
        ::getxattr(folder.path("copy").c_str(), "system.posix_acl_access", copied.data(), copied.size());
    ASSERT_EQ(size, static_cast<ssize_t>(list.size()));
    EXPECT_EQ(std::string(copied.data(), list.size()), list);
}

TEST_F(HostileSurroundings, aLimitForTheSizeOfFilesEndsTheCopyAndNotTheProgram) {
    const std::string large = folder.makeFile("large", std::string(200'000, 'x'));
    folder.makeFolder("tree");
    folder.makeFile("tree/large", std::string(200'000, 'x'));
    EXPECT_TRUE(hasSucceeded(inChild([&] {
        const rlimit limit{.rlim_cur = 100'000, .rlim_max = 100'000};
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
        EXPECT_EQ(operations.copyItem(large, folder.path("copy")), std::errc::file_too_large);
        EXPECT_EQ(operations.copyItem(folder.path("tree"), folder.path("copy")), std::errc::file_too_large);
        const SystemCallFaults plan(across());
        EXPECT_EQ(operations.moveItem(large, folder.path("moved")), std::errc::file_too_large);
    })));
    EXPECT_TRUE(hasSucceeded(inChild([&] {
        const rlimit limit{.rlim_cur = 10, .rlim_max = 10};
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
        EXPECT_EQ(Trash({.dataHome = folder.path("data")}).put(large), std::errc::file_too_large);
    })));
    EXPECT_THAT(names(), ElementsAre("data", "large", "tree"));
    EXPECT_THAT(namesIn(folder.path("data/Trash/info")), IsEmpty());
}

TEST_F(HostileSurroundings, anOriginalThatCannotBeRemovedStaysInSightAndTheMoveHasFailed) {
    makeTree();
    for (const char* const name : {"tree/inner/deep", "tree/inner", "tree"}) {
        const FileDescriptor fixed(::open(folder.path(name).c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        int flags = FS_IMMUTABLE_FL;
        if (::ioctl(fixed.number(), FS_IOC_SETFLAGS, &flags) != 0)
            GTEST_SKIP() << "nothing can be fixed here";
        const auto before = snapshotOf(folder.path("tree"));
        {
            const SystemCallFaults plan(across());
            EXPECT_EQ(operations.moveItem(folder.path("tree"), folder.path("moved")),
                      std::errc::operation_not_permitted);
        }
        flags = 0;
        EXPECT_EQ(::ioctl(fixed.number(), FS_IOC_SETFLAGS, &flags), 0);
        EXPECT_EQ(snapshotOf(folder.path("tree")), before);
        EXPECT_THAT(names(), ElementsAre("tree"));
    }
}

TEST_F(HostileSurroundings, whatIsLeftOfAnOriginalStandsUnderItsNameAgain) {
    for (int most = 0;; ++most) {
        const TemporaryFolder work(folder.path());
        ASSERT_EQ(::rename(makeTree().c_str(), work.path("tree").c_str()), 0);
        const auto before = snapshotOf(work.path("tree"));
        int removed = 0;
        std::error_code error;
        {
            // The copy's workplace is removed first.
            const SystemCallFaults plan(across([&](std::string_view call) {
                return call == "unlinkat" && removed++ > most && removed < most + 4 ? EIO : 0;
            }));
            error = operations.moveItem(work.path("tree"), work.path("moved"));
        }
        if (!error) {
            EXPECT_GT(most, 5);
            break;
        }
        EXPECT_EQ(error, std::errc::io_error);
        if (most == 0) {
            EXPECT_EQ(snapshotOf(work.path("tree")), before) << "nothing was removed yet";
        } else {
            EXPECT_THAT(namesIn(work.path()), ElementsAre("moved", "tree"));
            EXPECT_EQ(snapshotOf(work.path("moved")), before);
        }
    }
}

TEST_F(HostileSurroundings, anOriginalIsMovedAwayFromAFullFileSystem) {
    for (const int full : {ENOSPC, EDQUOT, EMLINK}) {
        for (const char* const name : {"tree", "file"}) {
            makeTree();
            folder.makeFile("file", "content");
            const auto before = snapshotOf(folder.path(name));
            {
                const SystemCallFaults plan(across([&, made = 0](std::string_view call) mutable {
                    // First come the copy's workplace and, for the tree, three folders; the rest is made
                    // beside the original.
                    const bool isSource =
                        call == "mkdirat" && made++ >= (name == std::string("tree") ? 4 : 1);
                    return isSource ? full : 0;
                }));
                EXPECT_EQ(operations.moveItem(folder.path(name), folder.path("moved")), std::error_code());
            }
            EXPECT_EQ(snapshotOf(folder.path("moved")), before);
            EXPECT_EQ(snapshotOf(folder.path(name)), TreeSnapshot());
            for (const std::string& left : names()) std::filesystem::remove_all(folder.path(left));
        }
    }
}

}  // namespace
}  // namespace vantrel::test
