#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "walk/WalkFixture.h"

namespace vantrel::test {
namespace {

// Mount points are made in a process of its own, in namespaces of its own, so that nobody else sees them and
// none stays behind.
enum class Verdict : int { passed, failed, notPermitted };

bool enterOwnNamespaces() {
    const auto user = ::getuid();
    const auto group = ::getgid();
    if (::unshare(CLONE_NEWNS) != 0) {
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
        std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
    }
    return ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool mountOwnFileSystem(const std::string& where) {
    return ::mount("tmpfs", where.c_str(), "tmpfs", 0, "size=1m") == 0;
}

class WalkMounts : public EveryReader {
protected:
    // Calls `body` in the process with its own mounts; it answers whether the walk did right.
    template <class Body>
    void inOwnNamespaces(Body body) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            auto verdict = Verdict::notPermitted;
            if (enterOwnNamespaces() && mountOwnFileSystem(folder.path("mounted"))) {
                verdict = body() && !HasFailure() ? Verdict::passed : Verdict::failed;
            }
            ::_exit(static_cast<int>(verdict));
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status));
        if (WEXITSTATUS(status) == static_cast<int>(Verdict::notPermitted))
            GTEST_SKIP() << "this system does not let the test mount anything";
        EXPECT_EQ(WEXITSTATUS(status), static_cast<int>(Verdict::passed));
    }
};
VANTREL_FOR_EVERY_READER(WalkMounts);

TEST_P(WalkMounts, aFileSystemMountedBelowTheRootAddsNothing) {
    folder.makeFolder("mounted");
    const auto bytes = allocatedBytes(folder.makeFile("file", "x"));
    inOwnNamespaces([&] {
        folder.makeFile("mounted/inside", "x");
        return walk(folder.path()) == finished(bytes, 1);
    });
}

TEST_P(WalkMounts, aFileSystemMountedBelowTheRootAddsNothingWhenDescriptorsAreScarce) {
    folder.makeFolder("mounted");
    folder.makeFolder("a");
    folder.makeFile("a/file");
    inOwnNamespaces([&] {
        folder.makeFile("mounted/inside", "x");
        auto scarce = options();
        scarce.descriptorBudget = 0;
        return walk(folder.path(), scarce) == finished(0, 1);
    });
}

TEST_P(WalkMounts, aRootThatIsAMountPointIsWalked) {
    folder.makeFolder("mounted");
    inOwnNamespaces([&] {
        folder.makeFolder("mounted/sub");
        const auto bytes = allocatedBytes(folder.makeFile("mounted/sub/inside", "x"));
        return bytes > 0 && walk(folder.path("mounted")) == finished(bytes, 1);
    });
}

TEST_P(WalkMounts, aFileMountedOnAFileCountsAsWhatItShows) {
    folder.makeFolder("mounted");
    folder.makeFile("file");
    inOwnNamespaces([&] {
        const std::string source = folder.makeFile("mounted/inside", "x");
        const std::string target = folder.path("file");
        if (::mount(source.c_str(), target.c_str(), nullptr, MS_BIND, nullptr) != 0) return false;
        const auto bytes = allocatedBytes(source);
        return bytes > 0 && walk(folder.path()) == finished(bytes, 1);
    });
}

}  // namespace
}  // namespace vantrel::test
