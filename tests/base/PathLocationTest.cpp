#include "base/PathLocation.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <climits>

#include "support/TemporaryFolder.h"

namespace vantrel {

using test::openDescriptors;
using test::TemporaryFolder;

namespace {

const std::string longName(100, 'n');
constexpr std::size_t beyondPathMax = 2 * PATH_MAX / 101 + 1;  // folders of 101 bytes with their slash

std::error_code openingFails(const std::string& path, int flags) {
    return openPath(path, flags).error();
}

}  // namespace

TEST(PathLocation, takesAShortPathAsItIs) {
    const Result<PathLocation> location = PathLocation::of("/usr/../tmp/");
    ASSERT_TRUE(location);
    EXPECT_EQ(location.value().folder(), AT_FDCWD);
    EXPECT_STREQ(location.value().path(), "/usr/../tmp/");
}

TEST(PathLocation, reachesFoldersDeeperThanPathMax) {
    const TemporaryFolder folder;
    const std::string deep = folder.makeDeepFolder(beyondPathMax, longName);
    ASSERT_GT(deep.size(), 2u * PATH_MAX);
    const Result<PathLocation> location = PathLocation::of(deep);
    ASSERT_TRUE(location);
    EXPECT_LT(std::string(location.value().path()).size(), std::size_t{PATH_MAX});
    ASSERT_EQ(
        ::mkdirat(location.value().folder(), (std::string(location.value().path()) + "/x").c_str(), 0700), 0);

    EXPECT_TRUE(openPath(deep + "/x", O_RDONLY | O_DIRECTORY));
    EXPECT_TRUE(openPath(deep + "//x/", O_RDONLY | O_DIRECTORY));
    EXPECT_EQ(openingFails(deep + "/y", O_RDONLY), std::errc::no_such_file_or_directory);
}

TEST(PathLocation, saysWhatOpenSaysAboutAFolderOnTheWay) {
    const TemporaryFolder folder;
    folder.makeFile("file");
    std::string path = folder.path("missing");
    while (path.size() < std::size_t{2} * PATH_MAX) path += "/a";
    EXPECT_EQ(PathLocation::of(path).error(), std::errc::no_such_file_or_directory);
    path.replace(folder.path().size() + 1, 7, "file");
    EXPECT_EQ(PathLocation::of(path).error(), std::errc::not_a_directory);
}

TEST(PathLocation, leavesANameThatCannotBeCutToTheSystem) {
    const std::string name(PATH_MAX + 10, 'x');
    EXPECT_EQ(openingFails("/" + name, O_RDONLY), std::errc::filename_too_long);
    EXPECT_EQ(openingFails(name, O_RDONLY), std::errc::filename_too_long);
}

TEST(PathLocation, refusesAZeroByteInsteadOfNamingAnotherFile) {
    EXPECT_EQ(openingFails(std::string("/tmp\0x", 6), O_RDONLY), std::errc::invalid_argument);
}

TEST(PathLocation, leavesNoDescriptorBehind) {
    const TemporaryFolder folder;
    const std::string deep = folder.makeDeepFolder(beyondPathMax, longName);
    const std::size_t before = openDescriptors();
    for (const char* const end : {"", "/missing"}) {
        for (int round = 0; round < 3; ++round) (void)openPath(deep + end, O_RDONLY | O_DIRECTORY);
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(OpenPath, keepsTheFileFromProgramsThatAreStarted) {
    const Result<FileDescriptor> file = openPath("/dev/null", O_RDONLY);
    ASSERT_TRUE(file);
    EXPECT_EQ(::fcntl(file.value().number(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

}  // namespace vantrel
