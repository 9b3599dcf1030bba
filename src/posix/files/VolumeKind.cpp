#include "posix/files/VolumeKind.h"

#include <linux/magic.h>
#include <sys/vfs.h>

#include "base/SystemCall.h"

namespace vantrel {

namespace {

// Not in linux/magic.h, or not in that of every kernel that this is built for.
constexpr std::uint32_t exfatMagic = 0x2011BAB0;
constexpr std::uint32_t ntfs3Magic = 0x7366746E;

}  // namespace

VolumeKind volumeKindOf(int descriptor) {
    struct statfs volume {};
    if (uninterrupted([&] { return ::fstatfs(descriptor, &volume); }) != 0) return VolumeKind::unknown;
    switch (static_cast<std::uint32_t>(volume.f_type)) {
        case EXT4_SUPER_MAGIC:  // ext2 and ext3 have the same
        case XFS_SUPER_MAGIC:
        case BTRFS_SUPER_MAGIC:
        case F2FS_SUPER_MAGIC:
        case TMPFS_MAGIC:
        case RAMFS_MAGIC:
        case OVERLAYFS_SUPER_MAGIC:
            return VolumeKind::native;
        case MSDOS_SUPER_MAGIC:
        case exfatMagic:
        case ntfs3Magic:
            return VolumeKind::foreign;
        default:
            return VolumeKind::unknown;
    }
}

}  // namespace vantrel
