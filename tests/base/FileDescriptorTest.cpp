#include "base/FileDescriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace vantrel {

namespace {

FileDescriptor openNull() {
    return FileDescriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC));
}

bool isOpen(int number) {
    return ::fcntl(number, F_GETFD) != -1;
}

}  // namespace

TEST(FileDescriptor, closesItsFileAtTheEndOfItsLife) {
    int number = -1;
    {
        const FileDescriptor file = openNull();
        number = file.number();
        ASSERT_TRUE(isOpen(number));
    }
    EXPECT_FALSE(isOpen(number));
}

TEST(FileDescriptor, handsItsFileOverWhenMoved) {
    FileDescriptor first = openNull();
    const int number = first.number();
    const FileDescriptor second = std::move(first);
    EXPECT_EQ(second.number(), number);
    EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): this is what a moved descriptor promises
    EXPECT_TRUE(isOpen(number));
}

TEST(FileDescriptor, closesItsOldFileWhenAnotherIsMovedIn) {
    FileDescriptor file = openNull();
    FileDescriptor other = openNull();
    const int oldNumber = file.number();
    const int newNumber = other.number();
    file = std::move(other);
    EXPECT_EQ(file.number(), newNumber);
    EXPECT_FALSE(isOpen(oldNumber));
    EXPECT_TRUE(isOpen(newNumber));
}

TEST(FileDescriptor, leavesAReleasedFileOpen) {
    int number = -1;
    {
        FileDescriptor file = openNull();
        number = file.release();
        EXPECT_FALSE(file);
    }
    EXPECT_TRUE(isOpen(number));
    ::close(number);
}

TEST(FileDescriptor, closesNoNumberTwice) {
    FileDescriptor file = openNull();
    file.close();
    const FileDescriptor other = openNull();  // takes the number that has become free
    file.close();
    EXPECT_TRUE(isOpen(other.number()));
}

}  // namespace vantrel
