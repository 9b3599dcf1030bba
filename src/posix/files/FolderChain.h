#pragma once

#include <sys/types.h>

#include <string>
#include <system_error>

namespace vantrel {

/// Makes a folder and those above it that are missing, and waits until their names are on the disk. On
/// failure those that were made are removed again. The process's umask applies to `mode`. Blocks; any thread.
[[nodiscard]] std::error_code makeFolders(const std::string& path, mode_t mode);

}  // namespace vantrel
