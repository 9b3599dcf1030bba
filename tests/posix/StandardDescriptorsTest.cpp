#include "posix/StandardDescriptors.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace vantrel {
namespace {

bool isNullDevice(int number) {
    struct stat status {
    }, null{};
    return ::fstat(number, &status) == 0 && ::stat("/dev/null", &null) == 0 && status.st_rdev == null.st_rdev;
}

/// Whether `check` holds in a process that was started without the descriptors whose bits are set.
template <class Check>
bool holdsWithout(unsigned closed, Check check) {
    const pid_t child = ::fork();
    if (child == 0) {
        for (int number = 0; number < 3; ++number) {
            if ((closed & (1U << number)) != 0) ::close(number);
        }
        occupyStandardDescriptors();
        ::_exit(check() ? 0 : 1);
    }
    int status = 0;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(StandardDescriptors, areOccupiedWhicheverOfThemAreClosed) {
    for (unsigned closed = 0; closed < 8; ++closed) {
        EXPECT_TRUE(holdsWithout(closed, [&] {
            for (int number = 0; number < 3; ++number) {
                if ((closed & (1U << number)) != 0 && !isNullDevice(number)) return false;
            }
            return ::open("/", O_RDONLY | O_CLOEXEC) > 2;
        })) << closed;
    }
}

TEST(StandardDescriptors, stayAsTheyAreWhereTheyAreOpen) {
    struct stat before {};
    ASSERT_EQ(::fstat(1, &before), 0);
    EXPECT_TRUE(holdsWithout(0, [&] {
        struct stat after {};
        return ::fstat(1, &after) == 0 && after.st_ino == before.st_ino && after.st_dev == before.st_dev;
    }));
}

TEST(StandardDescriptors, stillFailWhenTheyAreUsed) {
    EXPECT_TRUE(holdsWithout(7, [] {
        char byte = 0;
        return ::write(1, "x", 1) == -1 && errno == EBADF && ::write(2, "x", 1) == -1 &&
               ::read(0, &byte, 1) == -1 && errno == EBADF;
    }));
}

/// Sends the descriptor somewhere else from now on.
bool redirect(int number, const char* path) {
    const int opened = ::open(path, O_WRONLY | O_CLOEXEC);
    return opened != -1 && ::dup2(opened, number) == number;
}

TEST(StandardDescriptors, outputThatWasLostBeforeIsNotDeliveredThoughWhatFollowsIs) {
    if (::access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no /dev/full here";
    EXPECT_TRUE(holdsWithout(0, [] {
        if (!redirect(1, "/dev/full") || !redirect(2, "/dev/null")) return false;
        std::fputs("lost\n", stdout);
        if (std::fflush(stdout) == 0 || !redirect(1, "/dev/null")) return false;
        std::fputs("written\n", stdout);
        return !deliverStandardOutput("test");
    }));
}

TEST(StandardDescriptors, outputThatCanBeWrittenIsDelivered) {
    EXPECT_TRUE(holdsWithout(0, [] {
        if (!redirect(1, "/dev/null")) return false;
        std::fputs("written\n", stdout);
        return deliverStandardOutput("test");
    }));
}

}  // namespace
}  // namespace vantrel
