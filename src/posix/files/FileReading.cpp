#include "posix/files/FileReading.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "base/PathLocation.h"
#include "base/SystemCall.h"

namespace vantrel {

namespace {

[[nodiscard]] std::error_code requireOrdinary(const struct stat& status) {
    if (S_ISREG(status.st_mode)) return {};
    return std::make_error_code(S_ISDIR(status.st_mode) ? std::errc::is_a_directory
                                                        : std::errc::operation_not_supported);
}

}  // namespace

Result<std::string> readFilePrefix(const std::string& path, std::size_t limit) {
    const Result<PathLocation> location = PathLocation::of(path);
    if (!location) return location.error();
    struct stat status {};
    // Checked before opening, because merely opening a device can have effects.
    if (uninterrupted([&] { return ::fstatat(location->folder(), location->path(), &status, 0); }) != 0) {
        return lastError();
    }
    if (const std::error_code error = requireOrdinary(status)) return error;
    const FileDescriptor file(uninterrupted([&] {
        return ::openat(location->folder(), location->path(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    }));
    if (!file || uninterrupted([&] { return ::fstat(file.number(), &status); }) != 0) return lastError();
    if (const std::error_code error = requireOrdinary(status)) return error;

    std::string content(limit, '\0');
    std::size_t size = 0;
    while (size < limit) {
        const ssize_t count = uninterrupted([&] {
            return ::pread(file.number(), content.data() + size, limit - size, static_cast<off_t>(size));
        });
        if (count < 0) return lastError();
        if (count == 0) break;
        size += static_cast<std::size_t>(count);
    }
    content.resize(size);
    return content;
}

}  // namespace vantrel
