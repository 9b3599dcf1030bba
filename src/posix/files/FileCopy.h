#pragma once

#include <sys/stat.h>

#include <string>
#include <system_error>

#include "posix/files/Trees.h"

namespace vantrel {

/// Copies one item, not a folder, whose status was `status`. Links stay links, a FIFO, socket or device
/// becomes another one of its kind, and none of them is opened. A file shares its blocks with its copy where
/// the file system can do that, and keeps its holes. Owner, group, permission bits, times and extended
/// attributes are the original's as far as the file system has them and this user may set them. `copy` must
/// not exist. On failure part of the copy may remain. Blocks; any thread, as for the two below.
[[nodiscard]] std::error_code copyLeaf(const CopyTask& task, const ItemReference& original,
                                       const struct stat& status, const ItemReference& copy);

/// Owner, group, permission bits, times and extended attributes of an open file or folder onto another one.
[[nodiscard]] std::error_code copyAttributes(int from, const struct stat& status, int to);

/// The extended attributes of an open item that a copy gets, with their values. Empty where there are none or
/// they cannot be read.
std::string extendedAttributesOf(int item);

}  // namespace vantrel
