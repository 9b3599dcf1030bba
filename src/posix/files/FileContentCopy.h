#pragma once

#include <sys/stat.h>

#include <system_error>

#include "posix/files/Trees.h"

namespace vantrel {

/// Copies the content of one open file into another, empty one: by sharing its blocks, else inside the
/// kernel, else through a buffer; holes stay holes. `status` is the original's; a file that has become
/// shorter is copied as far as it goes, one of size 0 (as files in /proc claim) up to its end. Starts writing
/// to the disk as it goes, so that the final flush does not take long. Blocks; any thread. Both files are
/// borrowed. On failure part of the copy remains.
[[nodiscard]] std::error_code copyContent(const CopyTask& task, int from, int to, const struct stat& status);

}  // namespace vantrel
