#pragma once

#include <sys/stat.h>

#include <string>

#include "base/FileDescriptor.h"
#include "base/Result.h"

namespace vantrel {

/// An item, there or not, as the open folder that holds it and its name there. What is done to the pair stays
/// in that folder, whatever happens to the folder's path meanwhile.
struct ItemPlace {
    FileDescriptor folder;
    std::string name;
};

/// Opens the folder that holds `path`'s last component; slashes at the end do not count. `path` is of any
/// length, a relative one starts at the current folder.
Result<ItemPlace> placeOf(const std::string& path);

/// The item's own status: a link is not followed.
Result<struct stat> statusOf(int folder, const std::string& name);

/// Nothing when the name is free in that folder; file_exists when it is taken, also by a dangling link.
std::error_code requireFree(int folder, const std::string& name);

/// Whether nothing has that name in that folder.
bool isGone(int folder, const std::string& name);

inline bool isSameFile(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

}  // namespace vantrel
