#include "posix/files/FileReading.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "posix/files/FileOperationsFixture.h"

namespace vantrel {
namespace {

class FileReading : public testing::Test {
protected:
    std::string read(const std::string& path, std::size_t limit) {
        const Result<std::string> content = readFilePrefix(path, limit);
        EXPECT_TRUE(content) << content.error().message();
        return content ? content.value() : "";
    }
    std::error_code error(const std::string& path) { return readFilePrefix(path, 10).error(); }

    test::TemporaryFolder folder;
};

TEST_F(FileReading, givesNoMoreThanTheLimitAndNoMoreThanThereIs) {
    const std::string file = folder.makeFile("file", std::string("ab\0c\xFF", 5));
    EXPECT_EQ(read(file, 3), std::string("ab\0", 3));
    EXPECT_EQ(read(file, 5), std::string("ab\0c\xFF", 5));
    EXPECT_EQ(read(file, 100), std::string("ab\0c\xFF", 5));
    EXPECT_EQ(read(folder.makeFile("empty"), 100), "");
    EXPECT_EQ(read(folder.makeLink("link", "file"), 2), "ab");
}

TEST_F(FileReading, readsOnlyTheStartOfAHugeFile) {
    const std::string file = folder.makeFile("huge", "start");
    if (::truncate(file.c_str(), std::int64_t{1} << 40) != 0) GTEST_SKIP() << "no files of 1 TiB here";
    const std::string content = read(file, 200'000);
    EXPECT_EQ(content.size(), 200'000U);
    EXPECT_TRUE(content.starts_with("start"));
}

TEST_F(FileReading, givesWhatIsLeftOfAFileThatShrinksMeanwhile) {
    const std::string file = folder.makeFile("file", "0123456789");
    const auto shrinking = test::before("pread", [&] { ::truncate(file.c_str(), 4); });
    EXPECT_EQ(test::under(shrinking, [&] { return read(file, 100); }), "0123");
}

TEST_F(FileReading, refusesWhatIsNoOrdinaryFileAtOnce) {
    EXPECT_EQ(error(folder.makeFifo("fifo")), std::errc::operation_not_supported);
    EXPECT_EQ(error(folder.makeSocket("socket")), std::errc::operation_not_supported);
    EXPECT_EQ(error("/dev/zero"), std::errc::operation_not_supported);
    EXPECT_EQ(error(folder.path()), std::errc::is_a_directory);
    EXPECT_EQ(error(folder.path("missing")), std::errc::no_such_file_or_directory);
    EXPECT_EQ(error(folder.makeLink("loop", "loop")), std::errc::too_many_symbolic_link_levels);
}

TEST_F(FileReading, doesNotWaitForAFifoThatTakesTheFilesPlaceMeanwhile) {
    const std::string file = folder.makeFile("file", "x");
    const auto racing = test::before("openat", [&] {
        ::unlink(file.c_str());
        folder.makeFifo("file");
    });
    EXPECT_EQ(test::under(racing, [&] { return error(file); }), std::errc::operation_not_supported);
}

TEST_F(FileReading, obeysPermissions) {
    if (::geteuid() == 0) GTEST_SKIP() << "root may read everything";
    const std::string file = folder.makeFile("file", "x");
    ::chmod(file.c_str(), 0);
    EXPECT_EQ(error(file), std::errc::permission_denied);
}

TEST_F(FileReading, saysWhyAReadFailed) {
    const std::string file = folder.makeFile("file", "x");
    EXPECT_EQ(test::under(test::failing("pread", EIO), [&] { return error(file); }), std::errc::io_error);
}

}  // namespace
}  // namespace vantrel
