#include <fcntl.h>
#include <linux/auto_fs.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "base/FileDescriptor.h"
#include "support/OwnNamespaces.h"
#include "support/SystemCallFaults.h"
#include "walk/ForwardingReader.h"
#include "walk/WalkFixture.h"

namespace vantrel::test {
namespace {

class WalkMounts : public EveryReader {
protected:
    /// Calls `body`, which answers whether the walk did right, with a file system at "mounted".
    void inOwnNamespaces(const std::function<bool()>& body) const {
        test::inOwnNamespaces(
            folder, Privileges::mounting, [this] { return mountMemory(folder.path("mounted"), "size=1m"); },
            [&] { EXPECT_TRUE(body()); });
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

TEST_P(WalkMounts, aFolderOfTheSameFileSystemMountedBelowTheRootAddsNothing) {
    folder.makeFolder("mounted");
    inOwnNamespaces([&] {
        folder.makeFolder("mounted/source");
        folder.makeFolder("mounted/root");
        folder.makeFolder("mounted/root/target");
        folder.makeFile("mounted/source/1");
        folder.makeFile("mounted/root/2");
        const auto mount = [&](const char* source, const char* target) {
            return ::mount(folder.path(source).c_str(), folder.path(target).c_str(), nullptr, MS_BIND,
                           nullptr) == 0;
        };
        auto scarce = options();
        scarce.descriptorBudget = 0;
        const std::string root = folder.path("mounted/root");
        return mount("mounted/source", "mounted/root/target") && walk(root) == finished(0, 1) &&
               walk(root, scarce) == finished(0, 1) &&
               walk(folder.path("mounted/root/target")) == finished(0, 1);
    });
}

TEST_P(WalkMounts, aMountedFolderAddsNothingWhereTheSystemLacksNewerCalls) {
    folder.makeFolder("mounted");
    inOwnNamespaces([&] {
        for (const char* const name :
             {"mounted/source", "mounted/root", "mounted/root/target", "mounted/root/memory"})
            folder.makeFolder(name);
        folder.makeFile("mounted/source/1");
        folder.makeFile("mounted/root/2");
        const bool isMounted =
            ::mount(folder.path("mounted/source").c_str(), folder.path("mounted/root/target").c_str(),
                    nullptr, MS_BIND, nullptr) == 0 &&
            mountMemory(folder.path("mounted/root/memory"), "size=1m");
        folder.makeFile("mounted/root/memory/3");
        const auto withoutCalls = [&](std::vector<std::string_view> missing) {
            const SystemCallFaults old([missing = std::move(missing)](std::string_view call) {
                return std::ranges::find(missing, call) == missing.end() ? 0 : ENOSYS;
            });
            return walk(folder.path("mounted/root"));
        };
        // Without statx too, only the number of the device tells one file system from another.
        return isMounted && withoutCalls({"openat2"}) == finished(0, 1) &&
               withoutCalls({"openat2", "statx"}) == finished(0, 2);
    });
}

namespace {

/// An automount point whose file system never comes: starting it is noted and refused. Only root may have
/// one.
class AutomountPoint {
public:
    AutomountPoint(const std::string& place, const char* kind) {
        int started[2];
        int ready[2];
        if (::pipe2(started, O_CLOEXEC) != 0 || ::pipe2(ready, O_CLOEXEC) != 0) return;
        started_ = FileDescriptor(started[0]);
        const FileDescriptor isReady(ready[0]);
        daemon_ = ::fork();
        if (daemon_ == 0) serve(place, kind, started[1], ready[1]);
        ::close(started[1]);
        ::close(ready[1]);
        char byte = 0;
        isMounted_ = ::read(isReady.number(), &byte, 1) == 1;
    }
    AutomountPoint(const AutomountPoint&) = delete;
    AutomountPoint& operator=(const AutomountPoint&) = delete;
    ~AutomountPoint() {
        ::kill(daemon_, SIGKILL);
        ::waitpid(daemon_, nullptr, 0);
    }

    bool isMounted() const { return isMounted_; }

    bool wasStarted() const {
        pollfd source{started_.number(), POLLIN, 0};
        return ::poll(&source, 1, 0) == 1;
    }

private:
    // Processes of its group see the place as it is, so it needs one of its own.
    [[noreturn]] static void serve(const std::string& place, const char* kind, int started, int ready) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::setpgid(0, 0);
        int requests[2];
        const bool isPiped = ::pipe2(requests, O_CLOEXEC | O_DIRECT) == 0;
        const std::string options = "fd=" + std::to_string(requests[1]) +
                                    ",pgrp=" + std::to_string(::getpgrp()) + ",minproto=5,maxproto=5," + kind;
        if (!isPiped || ::mount("test", place.c_str(), "autofs", 0, options.c_str()) != 0) ::_exit(1);
        // A direct one is a key itself, and no longer one when it holds something.
        if (kind == std::string_view("indirect")) ::mkdir((place + "/key").c_str(), 0755);
        const int root = ::open(place.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        [[maybe_unused]] auto written = ::write(ready, "r", 1);
        for (autofs_v5_packet request{}; ::read(requests[0], &request, sizeof request) > 0;) {
            written = ::write(started, "s", 1);
            ::ioctl(root, AUTOFS_IOC_FAIL, static_cast<unsigned long>(request.wait_queue_token));
        }
        ::_exit(0);
    }

    FileDescriptor started_;
    pid_t daemon_ = -1;
    bool isMounted_ = false;
};

}  // namespace

// In a process of its own, whose mounts end with it.
TEST_P(WalkMounts, doesNotStartAutomounts) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root may have automount points";
    folder.makeFolder("direct");
    folder.makeFolder("indirect");
    folder.makeFile("file");
    const pid_t child = ::fork();
    if (child == 0) {
        ::unshare(CLONE_NEWNS);
        ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
        int status = 77;
        const AutomountPoint direct(folder.path("direct"), "direct");
        const AutomountPoint indirect(folder.path("indirect"), "indirect");
        if (direct.isMounted() && indirect.isMounted()) {
            const bool isRight =
                walk(folder.path()) == finished(0, 1) && walk(folder.path("indirect")) == finished(0, 0);
            status = isRight && !direct.wasStarted() && !indirect.wasStarted() ? 0 : 1;
            // What starts one is seen.
            const FileDescriptor started(::open(folder.path("direct").c_str(), O_RDONLY | O_DIRECTORY));
            if (started || !direct.wasStarted()) status = 2;
        }
        ::_exit(status);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == 77) GTEST_SKIP() << "no automount points here";
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_P(WalkMounts, aFileSystemUnmountedWhileItIsWalkedIsWalkedToItsEnd) {
    folder.makeFolder("mounted");
    inOwnNamespaces([&] {
        for (const char* const name : {"mounted/a", "mounted/a/b", "mounted/c"}) folder.makeFolder(name);
        for (const char* const name : {"mounted/a/1", "mounted/a/b/2", "mounted/c/3"}) folder.makeFile(name);
        Gate gate;
        auto gated = options();
        gated.makeReader = disturbed<GatedReader>(GetParam(), &gate);
        WalkPool pool(clock, gated);
        const SubmittedWalk walk = submit(pool, folder.path("mounted"));
        const bool isUnderWay = gate.waitForArrivals(1);
        const bool isGone = ::umount2(folder.path("mounted").c_str(), MNT_DETACH) == 0;
        gate.open();
        return isUnderWay && isGone && walk.record->waitForEnd() == finished(0, 3);
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
