#include <sys/mount.h>

#include "support/OwnNamespaces.h"
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
