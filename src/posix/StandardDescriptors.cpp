#include "posix/StandardDescriptors.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "base/SystemCall.h"

namespace vantrel {

void occupyStandardDescriptors() {
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(number, F_GETFD) != -1 || errno != EBADF) continue;
        // The wrong way round: input to be written to, output to be read from. Takes the lowest free number,
        // which is this one; programs started later inherit it like any other standard descriptor.
        const int direction = number == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        if (uninterrupted([&] { return ::open("/dev/null", direction); }) == -1) return;
    }
}

bool deliverStandardOutput(const char* programName) {
    errno = EIO;  // the reason for an earlier loss is no longer known
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return true;
    std::fprintf(stderr, "%s: standard output: %s\n", programName, lastError().message().c_str());
    return false;
}

}  // namespace vantrel
