#include "walk/PosixCalls.h"

#include <fcntl.h>

#include <algorithm>

#include "platform/SystemCall.h"

namespace vantrel::walking {

std::optional<Identity> identify(int descriptor) {
    struct stat status;
    if (uninterrupted([&] { return ::fstat(descriptor, &status); }) != 0) return std::nullopt;
    return Identity{status.st_dev, status.st_ino};
}

bool isDescriptorShortage(const std::error_code& error) {
    // Asked about every folder, so that success has to be told without comparing categories.
    return error &&
           (error == std::errc::too_many_files_open || error == std::errc::too_many_files_open_in_system);
}

Result<FileDescriptor> openOnSameDevice(int parent, const char* name, int flags) {
    FileDescriptor opened(uninterrupted([&] { return ::openat(parent, name, flags | O_NOFOLLOW); }));
    if (!opened) return lastError();
    const auto outer = identify(parent);
    const auto inner = identify(opened.number());
    if (!outer || !inner) return lastError();
    if (outer->device != inner->device) return std::make_error_code(std::errc::cross_device_link);
    return opened;
}

Measure measureOf(const struct stat& status) {
    constexpr std::int64_t blockSize = 512;  // the unit of st_blocks on every system this runs on
    if (S_ISDIR(status.st_mode)) return {EntryKind::folder, 0};
    if (S_ISLNK(status.st_mode)) return {EntryKind::link, 0};
    std::int64_t bytes = 0;
    // A server may answer anything; what cannot be a number of blocks counts as unknown.
    if (status.st_blocks < 0 || __builtin_mul_overflow(std::int64_t{status.st_blocks}, blockSize, &bytes))
        bytes = std::max<std::int64_t>(status.st_size, 0);
    return {EntryKind::other, bytes};
}

}  // namespace vantrel::walking
