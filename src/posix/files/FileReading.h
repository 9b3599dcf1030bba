#pragma once

#include <cstddef>
#include <string>

#include "base/Result.h"

namespace vantrel {

/// The first bytes of a file, at most `limit`. Only ordinary files are read: a folder is refused with
/// is_a_directory; a FIFO, socket or device with operation_not_supported, unopened. Any thread.
Result<std::string> readFilePrefix(const std::string& path, std::size_t limit);

}  // namespace vantrel
