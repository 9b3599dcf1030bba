#pragma once

#include <sys/types.h>

#include <string>

#include "posix/files/SystemCalls.h"

namespace vantrel {

/// Makes a folder and those above it that are missing, and waits until their names are on the disk. On
/// failure those that were made are taken away again. `mode` is what the process's mask leaves of it.
std::error_code makeFolders(const SystemCalls& calls, const std::string& path, mode_t mode);

}  // namespace vantrel
