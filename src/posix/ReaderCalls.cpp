#include "posix/ReaderCalls.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>

#include "base/FileIdentity.h"
#include "base/SystemCall.h"

namespace vantrel::walking {

namespace {

[[nodiscard]] std::error_code requireSameDevice(int parent, int opened) {
    const auto outer = identify(parent);
    const auto inner = identify(opened);
    if (!outer || !inner) return lastError();
    return outer->device == inner->device ? std::error_code()
                                          : std::make_error_code(std::errc::cross_device_link);
}

#if defined(O_PATH) && defined(STATX_ATTR_MOUNT_ROOT)

[[nodiscard]] std::error_code requireNoMount(int parent, int place) {
    struct statx status {};
    constexpr int flags = AT_EMPTY_PATH | AT_NO_AUTOMOUNT;
    if (uninterrupted([&] { return ::statx(place, "", flags, STATX_TYPE, &status); }) != 0) {
        // How old kernels and sandboxes refuse a call that they do not know.
        if (errno == ENOSYS || errno == EPERM || errno == EINVAL) return requireSameDevice(parent, place);
        return lastError();
    }
    if (!S_ISDIR(status.stx_mode)) return std::make_error_code(std::errc::not_a_directory);
    if (!(status.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT)) return requireSameDevice(parent, place);
    if (status.stx_attributes & (STATX_ATTR_MOUNT_ROOT | STATX_ATTR_AUTOMOUNT))
        return std::make_error_code(std::errc::cross_device_link);
    return {};
}

#endif

}  // namespace

#if defined(O_PATH) && defined(STATX_ATTR_MOUNT_ROOT)

Result<FileDescriptor> openUnlessMounted(int parent, const char* name, int flags) {
    // Naming a place (O_PATH) triggers no automount unless it has to be a folder; nor does opening "." in it.
    constexpr int nameOnly = O_PATH | O_NOFOLLOW | O_CLOEXEC;
    FileDescriptor place(uninterrupted([&] { return ::openat(parent, name, nameOnly); }));
    if (!place) return lastError();
    if (const auto error = requireNoMount(parent, place.number())) return error;
    if (flags & O_PATH) return place;
    FileDescriptor opened(uninterrupted([&] { return ::openat(place.number(), ".", flags); }));
    if (!opened) return lastError();
    return opened;
}

#else

Result<FileDescriptor> openUnlessMounted(int parent, const char* name, int flags) {
    FileDescriptor opened(uninterrupted([&] { return ::openat(parent, name, flags | O_NOFOLLOW); }));
    if (!opened) return lastError();
    if (const auto error = requireSameDevice(parent, opened.number())) return error;
    return opened;
}

#endif

Measure measureOf(const struct stat& status) {
    constexpr std::int64_t blockSize = 512;  // the unit of st_blocks on every system this runs on
    if (S_ISDIR(status.st_mode)) return {EntryKind::folder, 0};
    if (S_ISLNK(status.st_mode)) return {EntryKind::link, 0};
    std::int64_t bytes = 0;
    // A server may answer anything: an impossible number of blocks counts as unknown.
    if (status.st_blocks < 0 || __builtin_mul_overflow(std::int64_t{status.st_blocks}, blockSize, &bytes))
        bytes = std::max<std::int64_t>(status.st_size, 0);
    return {EntryKind::other, bytes};
}

}  // namespace vantrel::walking
