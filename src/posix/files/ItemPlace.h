#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <string>
#include <system_error>
#include <utility>

#include "base/FileDescriptor.h"
#include "base/Result.h"

namespace vantrel {

/// An item, existing or not, given by an open folder, which is borrowed, and a name in it. Whatever happens
/// to the folder's path meanwhile, what is done through the pair is done in that folder. Any thread may call
/// the functions below; they fail as the system calls that they make.
struct ItemReference {
    int folder = -1;
    std::string name;
};

/// The same, and keeps the folder open.
struct ItemPlace : ItemReference {
    ItemPlace(FileDescriptor opened, std::string itsName)
        : ItemReference{opened.number(), std::move(itsName)}, keptOpen(std::move(opened)) {}

    FileDescriptor keptOpen;
};

/// Opens the folder that holds `path`'s last component; slashes at the end do not count. `path` is of any
/// length, a relative one starts at the current folder.
Result<ItemPlace> placeOf(const std::string& path);

/// The item's own status: a link is not followed.
Result<struct stat> statusOf(const ItemReference& item);

/// Where a link leads.
Result<std::string> targetOfLink(const ItemReference& link);

/// Flags to list a folder, to reach no more than what is in it, and to read a file without waiting for the
/// other end of a FIFO.
constexpr int listingFlags = O_RDONLY | O_DIRECTORY | O_NONBLOCK;
constexpr int passingFlags = O_PATH | O_DIRECTORY;
constexpr int readingFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY;

/// Opens the item itself: a link is not followed. O_CLOEXEC is added; only its owner may use a new file. On
/// failure the result is empty and the reason is in errno.
[[nodiscard]] FileDescriptor openItem(const ItemReference& item, int flags);

/// unlinkat(2).
[[nodiscard]] std::error_code unlinkItem(const ItemReference& item, int flags = 0);

/// No error when the name is free in that folder; file_exists when it is taken, even by a dangling link.
[[nodiscard]] std::error_code requireFree(const ItemReference& item);

/// Whether nothing has that name in that folder.
bool isGone(const ItemReference& item);

inline bool isSameFile(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

}  // namespace vantrel
