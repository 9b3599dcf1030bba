#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <string>

#include "platform/posix/SystemCalls.h"

namespace vantrel {

/// What a copy is made for. One that is to replace its original (`move`) must be able to remove that
/// afterwards: it refuses a tree with another file system mounted in it and folders that this user may not
/// empty.
enum class CopyPurpose : std::uint8_t { copy, move };

/// Copies an item with everything below it, of any depth. `newName` must not exist. A copied folder gets its
/// attributes (see FileCopy.h) once it is filled. Entries that vanish meanwhile are left out. On failure
/// there is a part of the copy, for the caller to remove.
std::error_code copyTree(const SystemCalls& calls, CopyPurpose purpose, int folder, const std::string& name,
                         const struct stat& status, int newFolder, const std::string& newName);

/// Whether a copy made by `copyTree` still holds all that its original holds: the same names, kinds, sizes,
/// modification dates and link targets. device_or_resource_busy when it does not.
std::error_code compareTrees(const SystemCalls& calls, int folder, const std::string& name, int otherFolder,
                             const std::string& otherName);

/// Removes an item with everything below it, read-only folders of this user too. Stops before another mount.
std::error_code removeTree(const SystemCalls& calls, int folder, const std::string& name);

}  // namespace vantrel
