#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>

#include "base/PathLocation.h"
#include "posix/files/FileOperationsFixture.h"

namespace vantrel {
namespace {

using test::snapshotOf;
using testing::ElementsAre;
using testing::IsEmpty;

class CreateDirectory : public test::FileOperationsFixture {
protected:
    std::error_code make(const std::string& name) { return operations.createDirectory(folder.path(name)); }
};

TEST_F(CreateDirectory, makesAFolderAndThoseAboveIt) {
    EXPECT_EQ(make("one"), std::error_code());
    EXPECT_EQ(make("a/b//c/"), std::error_code());
    EXPECT_EQ(make("one/./two/../three"), std::error_code());
    EXPECT_EQ(make("caf\xE9\n"), std::error_code());
    EXPECT_THAT(names(), ElementsAre("a", "caf\xE9\n", "one"));
    EXPECT_THAT(test::namesIn(folder.path("a/b")), ElementsAre("c"));
    EXPECT_THAT(test::namesIn(folder.path("one")), ElementsAre("three", "two"));
}

TEST_F(CreateDirectory, isContentWithAFolderThatIsThere) {
    folder.makeFolder("there");
    folder.makeFile("there/file");
    folder.makeLink("link", "there");
    EXPECT_EQ(make("there"), std::error_code());
    EXPECT_EQ(make("link"), std::error_code());
    EXPECT_EQ(make("link/new"), std::error_code());
    EXPECT_EQ(operations.createDirectory("/"), std::error_code());
    EXPECT_THAT(test::namesIn(folder.path("there")), ElementsAre("file", "new"));
}

TEST_F(CreateDirectory, leavesThePermissionsToTheProcesssMask) {
    const mode_t before = ::umask(027);
    EXPECT_EQ(make("a/b"), std::error_code());
    ::umask(before);
    struct stat status {};
    for (const char* const name : {"a", "a/b"}) {
        ASSERT_EQ(::stat(folder.path(name).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777u, 0750u);
    }
}

TEST_F(CreateDirectory, refusesWhatIsNoFolder) {
    folder.makeFile("file");
    folder.makeLink("dangling", "nowhere");
    const auto before = snapshotOf(folder.path());
    EXPECT_EQ(make("file"), std::errc::not_a_directory);
    EXPECT_EQ(make("file/inner"), std::errc::not_a_directory);
    EXPECT_EQ(make("dangling"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(operations.createDirectory(""), std::errc::no_such_file_or_directory);
    EXPECT_EQ(snapshotOf(folder.path()), before);
}

TEST_F(CreateDirectory, takesAwayWhatItMadeWhenItFailsOnTheWay) {
    EXPECT_EQ(make("a/b/" + std::string(256, 'n') + "/c"), std::errc::filename_too_long);
    EXPECT_THAT(names(), IsEmpty());
    folder.makeFolder("there");
    int failures = 0;
    for (test::FailingCall failing{.number = 0};; ++failing.number) {
        failing.made = 0;
        const auto error =
            test::under(failing.plan(), [&] { return operations.createDirectory(folder.path("there/a/b")); });
        RecordProperty("cases", failing.number);
        if (!failing.wasReached()) break;
        if (error) {
            EXPECT_EQ(error, std::errc::io_error);
            EXPECT_THAT(test::namesIn(folder.path("there")), IsEmpty()) << failing.number;
            ++failures;
        } else {
            // Only the search for leftovers failed, which must not matter.
            EXPECT_THAT(test::namesIn(folder.path("there/a")), testing::ElementsAre("b")) << failing.number;
            std::filesystem::remove_all(folder.path("there/a"));
        }
    }
    EXPECT_GE(failures, 8);
}

TEST_F(CreateDirectory, reachesBeyondPathMax) {
    std::string path = "deep";
    while (path.size() < std::size_t{2} * PATH_MAX) path += "/" + std::string(200, 'd');
    EXPECT_EQ(make(path), std::error_code());
    EXPECT_TRUE(openPath(folder.path(path), O_RDONLY | O_DIRECTORY));
}

}  // namespace
}  // namespace vantrel
