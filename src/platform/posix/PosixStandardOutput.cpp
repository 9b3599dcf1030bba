#include "platform/posix/PosixStandardOutput.h"

#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <string>

#include "platform/SystemCall.h"

namespace vantrel {

namespace {

/// Keeps SIGPIPE from this thread while it lives, and takes back one that a write has raised meanwhile. The
/// process's own handling of the signal stays as it is, because programs that it starts inherit that.
class BrokenPipeGuard {
public:
    BrokenPipeGuard() {
        sigemptyset(&brokenPipe_);
        sigaddset(&brokenPipe_, SIGPIPE);
        wasPending_ = isPending();
        pthread_sigmask(SIG_BLOCK, &brokenPipe_, &before_);
    }
    BrokenPipeGuard(const BrokenPipeGuard&) = delete;
    BrokenPipeGuard& operator=(const BrokenPipeGuard&) = delete;
    ~BrokenPipeGuard() {
        int taken = 0;
        if (!wasPending_ && isPending()) sigwait(&brokenPipe_, &taken);
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }

private:
    static bool isPending() {
        sigset_t pending;
        sigpending(&pending);
        return sigismember(&pending, SIGPIPE) == 1;
    }

    sigset_t brokenPipe_;
    sigset_t before_;
    bool wasPending_ = false;
};

/// Whether it is worth trying again after a write that failed.
bool becomesWritable(int descriptor) {
    if (errno != EAGAIN && errno != EWOULDBLOCK) return false;
    pollfd ready{.fd = descriptor, .events = POLLOUT, .revents = 0};
    return uninterrupted([&] { return ::poll(&ready, 1, -1); }) == 1;
}

}  // namespace

void PosixStandardOutput::writeLine(std::string_view line) {
    std::string text(line);
    text += '\n';
    const BrokenPipeGuard guard;
    std::string_view rest = text;
    while (!rest.empty()) {
        const ssize_t written = uninterrupted([&] { return ::write(descriptor_, rest.data(), rest.size()); });
        if (written >= 0) {
            rest.remove_prefix(static_cast<std::size_t>(written));
        } else if (!becomesWritable(descriptor_)) {
            return;
        }
    }
}

}  // namespace vantrel
