#include "posix/LinuxDirectoryReader.h"

#ifdef __linux__

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <linux/magic.h>
#include <linux/openat2.h>
#include <sched.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>

#include <cerrno>
#include <chrono>
#include <limits>

#include "base/PathLocation.h"
#include "base/SystemCall.h"
#include "posix/ReaderCalls.h"

namespace vantrel::walking {

namespace {

constexpr int readFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;
constexpr int placeFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;
constexpr std::size_t batchBytes = std::size_t{64} * 1024;

Result<FileDescriptor> openat2Within(int base, const char* path, int flags) {
    open_how how{};
    how.flags = static_cast<std::uint64_t>(flags);
    how.resolve = RESOLVE_NO_XDEV | RESOLVE_NO_SYMLINKS;
    // EAGAIN: a rename raced with the look-up. An odd file system might answer so every time.
    constexpr int tries = 8;
    long number = -1;
    for (int i = 0; i < tries; ++i) {
        number = ::syscall(SYS_openat2, base, path, &how, sizeof how);
        if (number >= 0 || (errno != EINTR && errno != EAGAIN)) break;
    }
    if (number < 0) return lastError();
    return FileDescriptor(static_cast<int>(number));
}

// `name` in `base`, not through a link, not into another file system.
Result<FileDescriptor> openWithin(int base, const char* name, int flags, Volume& volume) {
    if (volume.hasOpenat2.load(std::memory_order_relaxed)) {
        auto opened = openat2Within(base, name, flags | O_NOFOLLOW);
        if (opened) return opened;
        const auto error = opened.error();
        // A sandbox may answer EPERM for a call it does not know; so does O_NOATIME on another user's folder.
        if (error != std::errc::function_not_supported && error != std::errc::operation_not_permitted)
            return opened;
        auto fallback = openUnlessMounted(base, name, flags);
        if (fallback) volume.hasOpenat2.store(false, std::memory_order_relaxed);
        return fallback;
    }
    return openUnlessMounted(base, name, flags);
}

// Opens for reading without touching the access time, until the system refuses that: only owners may.
template <class Open>
Result<FileDescriptor> sparingAccessTimes(Volume& volume, Open open) {
    if (volume.sparesAccessTimes.load(std::memory_order_relaxed)) {
        auto opened = open(readFlags | O_NOATIME);
        if (opened || opened.error() != std::errc::operation_not_permitted) return opened;
        volume.sparesAccessTimes.store(false, std::memory_order_relaxed);
    }
    return open(readFlags);
}

}  // namespace

LinuxDirectoryReader::LinuxDirectoryReader() : batch_(std::make_unique_for_overwrite<char[]>(batchBytes)) {}

Result<FileDescriptor> LinuxDirectoryReader::openRoot(const std::string& path, Volume& volume) {
    rest();  // a relative path starts where the program is
    return sparingAccessTimes(volume, [&](int flags) { return openPath(path, flags); });
}

Result<FileDescriptor> LinuxDirectoryReader::openFolder(int parent, const char* name, Volume& volume) {
    return sparingAccessTimes(volume, [&](int flags) { return openWithin(parent, name, flags, volume); });
}

Result<FileDescriptor> LinuxDirectoryReader::openBelow(int ancestor, const std::string& relativePath,
                                                       Volume& volume) {
    const std::size_t longestPiece = volume.hasOpenat2.load(std::memory_order_relaxed) ? PATH_MAX - 1 : 0;
    return openInPieces(ancestor, relativePath, longestPiece, [&](int base, const char* piece) {
        return openWithin(base, piece, placeFlags, volume);
    });
}

Result<std::unique_ptr<DirectoryStream>> LinuxDirectoryReader::beginReading(int) {
    return std::unique_ptr<DirectoryStream>();
}

Batch LinuxDirectoryReader::read(int folder, DirectoryStream*) {
    const auto size = uninterrupted([&] { return ::getdents64(folder, batch_.get(), batchBytes); });
    used_ = size > 0 ? static_cast<std::size_t>(size) : 0;
    position_ = 0;
    lastPosition_ = 0;
    if (used_ > 0) return Batch::names;
    return size == 0 ? Batch::end : Batch::failed;
}

// ext4 gives the last entry of an indexed directory the highest possible position, which saves the call that
// would only return nothing. A short batch proves nothing: a signal that stops the process cuts batches short
// too.
bool LinuxDirectoryReader::reachedEnd(int folder, Volume& volume) const {
    if (lastPosition_ != std::numeric_limits<std::int64_t>::max()) return false;
    auto mark = volume.endMark.load(std::memory_order_relaxed);
    if (mark == EndMark::unknown) {
        struct statfs status {};
        const bool isExt4 = ::fstatfs(folder, &status) == 0 && status.f_type == EXT4_SUPER_MAGIC;
        mark = isExt4 ? EndMark::trusted : EndMark::none;
        volume.endMark.store(mark, std::memory_order_relaxed);
    }
    return mark == EndMark::trusted;
}

bool LinuxDirectoryReader::expectsMore() const {
    return used_ > batchBytes / 2;
}

int LinuxDirectoryReader::measuringFrom(int folder) {
    // Moving there costs about as much as ten calls save.
    constexpr std::size_t worthwhile = 1024;
    if (used_ < worthwhile || !ownsWorkingFolder() || ::fchdir(folder) != 0) return folder;
    workingFolder_ = WorkingFolder::inAWalk;
    return AT_FDCWD;
}

bool LinuxDirectoryReader::ownsWorkingFolder() {
    if (workingFolder_ == WorkingFolder::notAsked) {
        home_ = FileDescriptor(::open(".", placeFlags));
        workingFolder_ = home_ && ::unshare(CLONE_FS) == 0 ? WorkingFolder::atHome : WorkingFolder::shared;
    }
    return workingFolder_ != WorkingFolder::shared;
}

void LinuxDirectoryReader::rest() {
    // A thread that stayed there would keep the file system from being unmounted.
    if (workingFolder_ == WorkingFolder::inAWalk && ::fchdir(home_.number()) == 0)
        workingFolder_ = WorkingFolder::atHome;
}

bool LinuxDirectoryReader::next(Entry& entry) {
    while (position_ < used_) {
        const auto* record = reinterpret_cast<const dirent64*>(batch_.get() + position_);
        position_ += record->d_reclen;
        lastPosition_ = record->d_off;
        if (isDotOrDotDot(record->d_name)) continue;
        entry.name = record->d_name;
        entry.kind = kindOf(*record);
        entry.inode = record->d_ino;
        return true;
    }
    return false;
}

std::error_code LinuxDirectoryReader::measure(int folder, const char* name, Measure& measure) {
    struct stat status;
    constexpr int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
    if (uninterrupted([&] { return ::fstatat(folder, name, &status, flags); }) != 0) return lastError();
    measure = measureOf(status);
    return {};
}

Result<FolderLook> LinuxDirectoryReader::look(int folder, const char* name) {
    struct statx status {};
    constexpr int flags = AT_EMPTY_PATH | AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
    constexpr unsigned wanted = STATX_TYPE | STATX_INO | STATX_CTIME;
    if (uninterrupted([&] { return ::statx(folder, name, flags, wanted, &status); }) != 0) return lastError();
    if (!S_ISDIR(status.stx_mode)) return std::make_error_code(std::errc::not_a_directory);
    constexpr std::uint64_t mounts = STATX_ATTR_MOUNT_ROOT | STATX_ATTR_AUTOMOUNT;
    const bool tellsMounts = (status.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0;  // since Linux 5.8
    return FolderLook{.identity = {::makedev(status.stx_dev_major, status.stx_dev_minor), status.stx_ino},
                      .changed = CalendarTime(std::chrono::seconds(status.stx_ctime.tv_sec) +
                                              std::chrono::nanoseconds(status.stx_ctime.tv_nsec)),
                      .isMountPoint = !tellsMounts || (status.stx_attributes & mounts) != 0};
}

Result<FolderLook> LinuxDirectoryReader::look(int folder) {
    return look(folder, "");
}

// A directory of btrfs or of an overlay may name another inode than a look at the folder itself tells, and a
// walk of btrfs comes through several devices.
FolderTrust LinuxDirectoryReader::trust(int folder) {
    struct statfs volume {};
    if (uninterrupted([&] { return ::fstatfs(folder, &volume); }) != 0) return FolderTrust::none;
    switch (static_cast<std::uint32_t>(volume.f_type)) {
        case EXT4_SUPER_MAGIC:  // ext2 and ext3 have the same
        case XFS_SUPER_MAGIC:
        case F2FS_SUPER_MAGIC:
        case TMPFS_MAGIC:
            return FolderTrust::andInodes;
        case BTRFS_SUPER_MAGIC:
        case OVERLAYFS_SUPER_MAGIC:
            return FolderTrust::looks;
        default:
            return FolderTrust::none;
    }
}

}  // namespace vantrel::walking

#endif
