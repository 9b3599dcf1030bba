#include "posix/PosixStandardOutput.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <csignal>

#include "base/FileDescriptor.h"
#include "base/SystemCall.h"
#include "posix/WithheldSignal.h"

namespace vantrel {

namespace {

/// An output that never makes its writer wait, whoever else shares it and however they use it.
class PatientOutput {
public:
    explicit PatientOutput(int descriptor) : descriptor_(descriptor) {
        struct stat status {};
        if (::fstat(descriptor, &status) != 0) return;
        isSocket_ = S_ISSOCK(status.st_mode);
        isDisk_ = S_ISREG(status.st_mode);
        if (isSocket_ || isDisk_) return;
        // Opened anew, since whether writing waits is a property of the open file description, which others
        // share.
        const std::string path = "/proc/self/fd/" + std::to_string(descriptor);
        constexpr int flags = O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
        own_ = FileDescriptor(uninterrupted([&] { return ::open(path.c_str(), flags); }));
    }

    /// Returns how much there was room for. Sets `hasFailed` where trying again makes no sense.
    std::size_t write(std::string_view text, bool& hasFailed) const {
        std::size_t done = 0;
        while (done < text.size()) {
            const ssize_t count = uninterrupted([&] { return writeOnce(text.substr(done)); });
            if (count < 0) {
                hasFailed = errno != EAGAIN && errno != EWOULDBLOCK;
                break;
            }
            done += static_cast<std::size_t>(count);
        }
        return done;
    }

private:
    ssize_t writeOnce(std::string_view text) const {
        if (isSocket_) return ::send(descriptor_, text.data(), text.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        if (own_) return ::write(own_.number(), text.data(), text.size());
        if (isDisk_) return ::write(descriptor_, text.data(), text.size());
        // A pipe that reports being ready takes this much without waiting.
        pollfd ready{.fd = descriptor_, .events = POLLOUT, .revents = 0};
        if (::poll(&ready, 1, 0) == 1)
            return ::write(descriptor_, text.data(), std::min<std::size_t>(text.size(), PIPE_BUF));
        errno = EAGAIN;
        return -1;
    }

    int descriptor_;
    FileDescriptor own_;
    bool isSocket_ = false;
    bool isDisk_ = false;
};

}  // namespace

void PosixStandardOutput::writeLine(std::string_view line) {
    const WithheldSignal brokenPipe(SIGPIPE);
    const WithheldSignal fileSizeLimit(SIGXFSZ);
    const PatientOutput output(descriptor_);
    bool hasFailed = false;
    rest_.erase(0, output.write(rest_, hasFailed));
    if (hasFailed) rest_.clear();
    if (!rest_.empty()) return;
    std::string text(line);
    text += '\n';
    const std::size_t written = output.write(text, hasFailed);
    if (written > 0 && !hasFailed) rest_ = text.substr(written);
}

}  // namespace vantrel
