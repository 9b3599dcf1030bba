#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "base/FileIdentity.h"
#include "base/FileTime.h"

namespace vantrel {

/// The folders that hold something, nearest first, whatever names and links lead there.
using Ancestry = std::vector<FileIdentity>;

/// Where a folder stands, beside its path: one folder may have several. A value; nothing in it has to be
/// known.
struct FolderPlace {
    std::optional<FileIdentity> identity = {};
    std::shared_ptr<const Ancestry> above = nullptr;
    /// The folder itself or the list of its entries, when last seen.
    std::optional<CalendarTime> changed = {};
};

}  // namespace vantrel
