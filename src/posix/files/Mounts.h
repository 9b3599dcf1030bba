#pragma once

#include <cstdint>
#include <string>

#include "base/Result.h"

namespace vantrel {

/// The mount that a folder is reached through.
struct Mount {
    std::uint64_t number = 0;
    std::string topFolder;  ///< absolute path without links
    /// Whether people keep files there: it is neither in memory only nor one of the system's folders.
    bool keepsTrash = false;
};

/// The mount of an open folder, which is borrowed; its absolute path, without links, is `path`. Any thread.
/// Fails as open(2) does on the way up.
Result<Mount> findMount(int folder, const std::string& path);

/// A number for the mount of an open folder; a bind mount of the same file system has another. Any thread; 0
/// where it cannot be told.
std::uint64_t mountOf(int folder);

}  // namespace vantrel
