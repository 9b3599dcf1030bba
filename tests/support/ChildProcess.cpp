#include "support/ChildProcess.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

namespace vantrel::test {

int inChild(const std::function<void()>& body) {
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        body();
        std::fflush(nullptr);
        ::_exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = -1;
    EXPECT_GT(child, 0);
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return status;
}

bool hasSucceeded(int status) {
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

int signalOf(int status) {
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

}  // namespace vantrel::test
