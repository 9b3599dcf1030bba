#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <optional>

#include "posix/files/FileOperationsFixture.h"
#include "posix/files/Trash.h"
#include "support/SystemCallFaults.h"

// Every operation that changes the file system, with every one of its system calls failing in every way that
// its manual page allows: nothing is lost, nothing is half done, no descriptor stays open.

namespace vantrel {
namespace {

using test::FaultCase;
using test::namesIn;
using test::snapshotOf;
using test::SystemCallFaults;
using test::TemporaryFolder;
using test::TreeSnapshot;
using testing::ElementsAre;

/// A file system that does not have an attribute is no reason to refuse a copy.
bool costsAnAttribute(const FaultCase& fault) {
    static constexpr std::array<std::string_view, 9> setters = {"flistxattr", "fgetxattr", "fsetxattr",
                                                                "fchmod",     "fchmodat",  "fchown",
                                                                "fchownat",   "futimens",  "utimensat"};
    return std::ranges::find(setters, fault.call) != setters.end();
}

/// Whether the call is simply made again or carried on. After an interrupted close nobody knows whether
/// everything was written.
bool isHarmless(const FaultCase& fault) {
    return (fault.error == EINTR && fault.call != "close") || fault.error == SystemCallFaults::givesLess;
}

std::vector<std::string> pathsOf(const TreeSnapshot& tree) {
    std::vector<std::string> paths;
    for (const auto& [path, description] : tree) paths.push_back(path);
    return paths;
}

class FaultyOperations : public test::FileOperationsFixture {
protected:
    FaultyOperations() : FileOperationsFixture(test::quickPlace()) {}
    ~FaultyOperations() override { RecordProperty("cases", static_cast<int>(cases)); }

    /// A folder "tree" with one entry of each kind that is copied in a way of its own.
    void makeSmallTree() {
        work.emplace(folder.path());
        work->makeFolder("tree");
        const std::string file = work->makeFile("tree/file", std::string(5000, 'f'));
        ::setxattr(file.c_str(), "user.note", "remember", 8, 0);
        work->makeFolder("tree/inner");
        work->makeFile("tree/inner/deep", "d");
        work->makeLink("tree/link", "inner/deep");
        work->makeFifo("tree/fifo");
        before = snapshotOf(work->path("tree"));
    }

    void tryEveryFault(
        const std::function<std::error_code()>& operate, const std::function<void(const FaultCase&)>& check,
        const std::function<SystemCallFaults::Plan()>& circumstances = [] {
            return SystemCallFaults::Plan();
        }) {
        cases += test::tryEveryFault({.prepare = [this] { makeSmallTree(); },
                                      .operate = [&] { error = operate(); },
                                      .check =
                                          [&](const FaultCase& fault) {
                                              EXPECT_TRUE(!error || !isHarmless(fault)) << error.message();
                                              check(fault);
                                          },
                                      .circumstances = circumstances});
    }

    /// Expects the copy to be all that it should be although that call failed.
    void expectCopy(const std::string& path, const FaultCase& fault) const {
        const TreeSnapshot copy = snapshotOf(path);
        if (fault.call == "fstatat" && fault.error == ENOENT) {
            EXPECT_LE(copy.size(), before.size()) << "one has vanished";
        } else if (costsAnAttribute(fault)) {
            EXPECT_EQ(pathsOf(copy), pathsOf(before));
        } else {
            EXPECT_EQ(copy, before);
        }
    }

    void expectCopiedOrNot(const FaultCase& fault) const {
        EXPECT_EQ(snapshotOf(work->path("tree")), before);
        if (error) {
            EXPECT_THAT(namesIn(work->path()), ElementsAre("tree"));
        } else {
            EXPECT_THAT(namesIn(work->path()), ElementsAre("copy", "tree"));
            expectCopy(work->path("copy"), fault);
        }
    }

    void expectMovedOrNot() const {
        EXPECT_THAT(namesIn(work->path()), ElementsAre(error ? "tree" : "moved"));
        EXPECT_EQ(snapshotOf(work->path(error ? "tree" : "moved")), before);
    }

    std::error_code copyTree() { return operations.copyItem(work->path("tree"), work->path("copy")); }
    std::error_code moveTree() { return operations.moveItem(work->path("tree"), work->path("moved")); }

    std::size_t cases = 0;
    std::optional<TemporaryFolder> work;
    TreeSnapshot before;
    std::error_code error;
};

TEST_F(FaultyOperations, aCopyIsCompleteOrNotThere) {
    tryEveryFault([this] { return copyTree(); },
                  [this](const FaultCase& fault) { expectCopiedOrNot(fault); });
}

TEST_F(FaultyOperations, aCopyThatTheKernelDoesNotHelpWithIsCompleteOrNotThere) {
    tryEveryFault([this] { return copyTree(); }, [this](const FaultCase& fault) { expectCopiedOrNot(fault); },
                  [] {
                      return [](std::string_view name) {
                          return name == "ioctl" || name == "copy_file_range" ? EOPNOTSUPP : 0;
                      };
                  });
}

TEST_F(FaultyOperations, aCopyWithoutARenameThatRefusesToReplaceIsCompleteOrNotThere) {
    tryEveryFault([this] { return copyTree(); }, [this](const FaultCase& fault) { expectCopiedOrNot(fault); },
                  [] { return [](std::string_view name) { return name == "renameat2" ? EINVAL : 0; }; });
}

TEST_F(FaultyOperations, aMoveHasHappenedOrNot) {
    tryEveryFault([this] { return moveTree(); }, [this](const FaultCase&) { expectMovedOrNot(); });
}

TEST_F(FaultyOperations, aMoveWithoutARenameThatRefusesToReplaceHasHappenedOrNot) {
    const auto circumstances = [] {
        return [](std::string_view name) { return name == "renameat2" ? EINVAL : 0; };
    };
    tryEveryFault([this] { return moveTree(); }, [this](const FaultCase&) { expectMovedOrNot(); },
                  circumstances);
    const auto expectFileMovedOrNot = [this](const FaultCase&) {
        EXPECT_EQ(test::contentOf(work->path(error ? "tree/inner/deep" : "moved")), "d");
        EXPECT_EQ(snapshotOf(work->path(error ? "moved" : "tree/inner/deep")), TreeSnapshot());
    };
    tryEveryFault([this] { return operations.moveItem(work->path("tree/inner/deep"), work->path("moved")); },
                  expectFileMovedOrNot, circumstances);
}

TEST_F(FaultyOperations, aMoveToAnotherFileSystemLosesNothing) {
    tryEveryFault([this] { return moveTree(); },
                  [this](const FaultCase& fault) {
                      EXPECT_THAT(namesIn(work->path()), testing::IsSubsetOf({"moved", "tree"}))
                          << "something hidden remains";
                      const bool isWhole = snapshotOf(work->path("tree")) == before;
                      const bool isGone = snapshotOf(work->path("tree")).empty();
                      if (error && isWhole) {
                          EXPECT_THAT(namesIn(work->path()), ElementsAre("tree"));
                      } else {
                          // A part of the original that could not be removed stands where it was.
                          EXPECT_EQ(isGone, !error);
                          expectCopy(work->path("moved"), fault);
                      }
                  },
                  [] {
                      return [renames = 0](std::string_view name) mutable {
                          return name == "renameat2" && renames++ == 0 ? EXDEV : 0;
                      };
                  });
}

TEST_F(FaultyOperations, aNewChainOfFoldersIsWholeOrNotThere) {
    tryEveryFault([this] { return operations.createDirectory(work->path("tree/a/b/c")); },
                  [this](const FaultCase&) {
                      const bool isThere = snapshotOf(work->path("tree/a/b/c")).size() == 1;
                      EXPECT_EQ(isThere, !error);
                      if (!isThere) {
                          EXPECT_EQ(pathsOf(snapshotOf(work->path("tree"))), pathsOf(before));
                      }
                  });
}

TEST_F(FaultyOperations, anItemIsInTheTrashWithItsInfoOrWhereItWas) {
    tryEveryFault([this] { return Trash({.dataHome = work->path("data")}).put(work->path("tree")); },
                  [this](const FaultCase& fault) {
                      // Where a name seems to be taken, the next one is used.
                      const auto path = [&](const char* way, const char* suffix) {
                          const std::string first = work->path(way + std::string("tree") + suffix);
                          return fault.error != EEXIST || !snapshotOf(first).empty()
                                     ? first
                                     : work->path(way + std::string("tree.2") + suffix);
                      };
                      const auto trashed = snapshotOf(path("data/Trash/files/", ""));
                      const auto infos = pathsOf(snapshotOf(work->path("data/Trash/info")));
                      EXPECT_EQ(trashed, error ? TreeSnapshot() : before);
                      EXPECT_EQ(snapshotOf(work->path("tree")), error ? before : TreeSnapshot());
                      if (error) {
                          EXPECT_LE(infos.size(), 1U) << "an info without its item";
                      } else {
                          EXPECT_EQ(infos.size(), 2U);
                          EXPECT_THAT(test::contentOf(path("data/Trash/info/", ".trashinfo")),
                                      testing::HasSubstr("\nDeletionDate="));
                      }
                  });
}

}  // namespace
}  // namespace vantrel
