#include "posix/files/Mounts.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "base/FileDescriptor.h"
#include "base/Paths.h"
#include "base/SystemCall.h"
#include "posix/files/ItemPlace.h"

namespace vantrel {

namespace {

/// Where distributions mount parts of the system; desktops look for no trash there.
constexpr std::array<std::string_view, 14> systemFolders = {
    "/",    "/boot", "/boot/efi", "/etc", "/home",      "/opt",     "/root",
    "/srv", "/tmp",  "/usr",      "/var", "/usr/local", "/var/log", "/var/tmp",
};

bool isInMemoryOnly(int folder) {
    struct statfs volume {};
    if (uninterrupted([&] { return ::fstatfs(folder, &volume); }) != 0) return true;
    switch (static_cast<std::uint32_t>(volume.f_type)) {
        case TMPFS_MAGIC:
        case RAMFS_MAGIC:
        case PROC_SUPER_MAGIC:
        case SYSFS_MAGIC:
        case DEVPTS_SUPER_MAGIC:
        case CGROUP_SUPER_MAGIC:
        case CGROUP2_SUPER_MAGIC:
        case DEBUGFS_MAGIC:
        case TRACEFS_MAGIC:
        case SECURITYFS_MAGIC:
        case BPF_FS_MAGIC:
            return true;
        default:
            return false;
    }
}

}  // namespace

std::uint64_t mountOf(int folder) {
#ifdef STATX_MNT_ID
    struct statx extended {};
    if (uninterrupted([&] { return ::statx(folder, "", AT_EMPTY_PATH, STATX_MNT_ID, &extended); }) == 0 &&
        (extended.stx_mask & STATX_MNT_ID) != 0) {
        return extended.stx_mnt_id;
    }
#endif
    struct stat status {};
    return ::fstat(folder, &status) == 0 ? static_cast<std::uint64_t>(status.st_dev) : 0;
}

Result<Mount> findMount(int folder, const std::string& path) {
    Mount mount{.number = mountOf(folder), .topFolder = path, .keepsTrash = false};
    FileDescriptor place = openItem({folder, "."}, passingFlags);
    if (!place) return lastError();
    while (mount.topFolder != "/") {
        FileDescriptor above = openItem({place.number(), ".."}, passingFlags);
        if (!above) return lastError();
        if (mountOf(above.number()) != mount.number) break;
        mount.topFolder = paths::deletingLastComponent(mount.topFolder);
        place = std::move(above);
    }
    mount.keepsTrash =
        !isInMemoryOnly(folder) && std::ranges::find(systemFolders, mount.topFolder) == systemFolders.end();
    return mount;
}

}  // namespace vantrel
