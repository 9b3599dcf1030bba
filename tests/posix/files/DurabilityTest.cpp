#include <algorithm>
#include <array>

#include "posix/files/FileOperationsFixture.h"
#include "posix/files/Trash.h"
#include "support/SystemCallFaults.h"

// In which order things are brought to the disk, and how often. What remains of them after a power cut is
// tried on real file systems by tests/crash.

namespace vantrel::test {
namespace {

using testing::ElementsAre;

/// The calls that change what others see, or bring it to the disk.
std::vector<std::string> milestones(const std::vector<std::string>& calls) {
    static constexpr std::array<std::string_view, 4> wanted{"renameat2", "fsync", "syncfs", "write"};
    std::vector<std::string> left;
    std::ranges::copy_if(calls, std::back_inserter(left), [](const std::string& call) {
        return std::ranges::find(wanted, call) != wanted.end();
    });
    return left;
}

class Durability : public FileOperationsFixture {
protected:
    Durability() : FileOperationsFixture(quickPlace()) {}

    /// The system calls of an operation; `answer` decides about each.
    template <class Operation>
    std::vector<std::string> callsOf(
        Operation operate, std::function<int(std::string_view)> answer = [](std::string_view) { return 0; }) {
        std::vector<std::string> calls;
        const SystemCallFaults plan([&](std::string_view call) {
            calls.emplace_back(call);
            return answer(call);
        });
        error = operate();
        return calls;
    }

    void makeFiles(int count) const {
        folder.makeFolder("tree");
        for (int number = 0; number < count; ++number)
            folder.makeFile("tree/" + std::to_string(number), "content");
    }

    std::error_code copy(const std::string& name) const {
        return operations.copyItem(folder.path(name), folder.path("copy"));
    }

    std::error_code move(const std::string& name) const {
        return operations.moveItem(folder.path(name), folder.path("moved"));
    }

    /// Fails the first rename as if it led to another file system.
    static std::function<int(std::string_view)> across() {
        return [renames = 0](std::string_view call) mutable {
            return call == "renameat2" && renames++ == 0 ? EXDEV : 0;
        };
    }

    /// Like a file system that a process or a server answers for.
    static int unknownVolume(std::string_view call) { return call == "fstatfs" ? ENOSYS : 0; }

    std::error_code error;
};

TEST_F(Durability, aFileIsOnTheDiskBeforeItsNameAndItsNameBeforeTheCopyIsDone) {
    folder.makeFile("file", "content");
    const auto calls = callsOf([&] { return copy("file"); });
    EXPECT_THAT(milestones(calls), ElementsAre("fsync", "renameat2", "fsync"));
    EXPECT_EQ(error, std::error_code());
}

TEST_F(Durability, manyFilesAreFlushedAtOnce) {
    makeFiles(100);
    EXPECT_THAT(milestones(callsOf([&] { return copy("tree"); })),
                ElementsAre("syncfs", "renameat2", "fsync"));
}

TEST_F(Durability, fewFilesAreFlushedByThemselvesSoThatOthersDoNotHoldThemUp) {
    makeFiles(2);
    EXPECT_THAT(milestones(callsOf([&] { return copy("tree"); })),
                ElementsAre("fsync", "fsync", "fsync", "renameat2", "fsync"))
        << "two files and their folder, and the folder around";
}

TEST_F(Durability, whatCannotBeFlushedByItselfIsFlushedWithAll) {
    folder.makeLink("link", "nowhere");
    EXPECT_THAT(milestones(callsOf([&] { return copy("link"); })),
                ElementsAre("syncfs", "renameat2", "fsync"));
}

TEST_F(Durability, whereFlushingAllMayNotReachEachIsFlushed) {
    makeFiles(100);
    const auto calls = milestones(callsOf([&] { return copy("tree"); }, &unknownVolume));
    EXPECT_EQ(std::ranges::count(calls, "fsync"), 102) << "files, folder, folder around";
    EXPECT_EQ(std::ranges::count(calls, "syncfs"), 0);
    EXPECT_THAT(contentOf(folder.path("copy/42")), "content");
}

TEST_F(Durability, anErrorOfFlushingFailsTheCopyWhereverItComes) {
    makeFiles(40);
    const std::vector<std::pair<std::string, std::function<int(std::string_view)>>> volumes{
        {"syncfs", [](std::string_view) { return 0; }}, {"fsync", &unknownVolume}};
    for (const auto& [call, volume] : volumes) {
        for (int number = 0;; ++number) {
            int made = 0;
            callsOf([&] { return copy("tree"); },
                    [&](std::string_view name) {
                        return (name == "fsync" || name == "syncfs") && made++ == number ? EIO : volume(name);
                    });
            if (made <= number) break;
            EXPECT_EQ(error, std::errc::io_error) << call << " " << number;
            EXPECT_THAT(names(), ElementsAre("tree")) << call << " " << number;
        }
        EXPECT_EQ(error, std::error_code());
        std::filesystem::remove_all(folder.path("copy"));
    }
}

TEST_F(Durability, aMoveWhoseCopyIsNotOnTheDiskLeavesTheOriginal) {
    makeFiles(3);
    const auto before = snapshotOf(folder.path("tree"));
    for (int number = 0; number < 5; ++number) {
        int made = 0;
        auto first = across();
        callsOf([&] { return move("tree"); },
                [&](std::string_view name) {
                    return name == "fsync" && made++ == number ? EIO : unknownVolume(name) + first(name);
                });
        EXPECT_EQ(error, std::errc::io_error);
        EXPECT_EQ(snapshotOf(folder.path("tree")), before);
        EXPECT_THAT(names(), ElementsAre("tree")) << number;
    }
}

TEST_F(Durability, theOriginalGoesAfterTheNameOfItsCopyIsOnTheDisk) {
    folder.makeFile("file", "content");
    const auto calls = callsOf([&] { return move("file"); }, across());
    EXPECT_EQ(error, std::error_code());
    EXPECT_THAT(milestones(calls), ElementsAre("renameat2",  // fails across file systems
                                               "fsync",      // content
                                               "renameat2",  // its name
                                               "fsync",      // that of the folder
                                               "renameat2",  // the original, out of everybody's reach
                                               "fsync"));    // its removal
}

TEST_F(Durability, aRenameIsOnTheDiskInBothFolders) {
    folder.makeFile("file");
    folder.makeFolder("other");
    EXPECT_THAT(milestones(callsOf(
                    [&] { return operations.moveItem(folder.path("file"), folder.path("other/file")); })),
                ElementsAre("renameat2", "fsync", "fsync"));
    EXPECT_THAT(milestones(callsOf([&] { return move("other/file"); })),
                ElementsAre("renameat2", "fsync", "fsync"));
    EXPECT_THAT(
        milestones(callsOf([&] { return operations.moveItem(folder.path("moved"), folder.path("again")); })),
        ElementsAre("renameat2", "fsync"))
        << "one folder";
}

TEST_F(Durability, aRenameThatCannotBeFlushedIsTakenBack) {
    folder.makeFile("file");
    folder.makeFolder("other");
    for (int number = 0; number < 2; ++number) {
        int made = 0;
        callsOf([&] { return operations.moveItem(folder.path("file"), folder.path("other/file")); },
                [&](std::string_view call) { return call == "fsync" && made++ == number ? EIO : 0; });
        EXPECT_EQ(error, std::errc::io_error);
        EXPECT_THAT(names(), ElementsAre("file", "other"));
        EXPECT_THAT(namesIn(folder.path("other")), testing::IsEmpty());
    }
}

TEST_F(Durability, theWayBackFromTheTrashIsOnTheDiskBeforeTheItemIsThere) {
    folder.makeFile("file");
    folder.makeFile("first");
    const Trash trash({.dataHome = folder.path("data")});
    ASSERT_EQ(trash.put(folder.path("first")), std::error_code());
    const auto calls = callsOf([&] { return trash.put(folder.path("file")); });
    EXPECT_THAT(milestones(calls), ElementsAre("write", "fsync", "fsync",       // the info and its name
                                               "renameat2", "fsync", "fsync"))  // the item in both folders
    ;
    EXPECT_EQ(error, std::error_code());
}

TEST_F(Durability, aNewFolderIsOnTheDisk) {
    EXPECT_THAT(milestones(callsOf([&] { return operations.createDirectory(folder.path("a/b/c")); })),
                ElementsAre("fsync", "fsync", "fsync"));
    EXPECT_THAT(milestones(callsOf([&] { return operations.createDirectory(folder.path("a/b/c")); })),
                testing::IsEmpty())
        << "it was there";
}

}  // namespace
}  // namespace vantrel::test
