#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "base/Result.h"
#include "platform/DirectoryReader.h"

namespace vantrel::sizes {

/// What a folder holds beside sub-folders and symbolic links.
enum class OwnFiles : std::uint8_t { none, some };

/// Reads the first level of the folder at `path`, which may be a link, with `reader`: calls
/// `foundFolder(name)` for each sub-folder, in the order of the directory. Any thread that has a
/// reader of its own.
Result<OwnFiles> readFolder(walking::DirectoryReader& reader, const std::string& path,
                            const std::function<void(const std::string& name)>& foundFolder);

}  // namespace vantrel::sizes
