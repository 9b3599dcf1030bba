#pragma once

#include <system_error>

#include "posix/files/ItemPlace.h"

namespace vantrel {

/// Gives an item another name, perhaps in another folder of the same file system, and never replaces
/// anything: file_exists when the new name is taken, even if only a moment ago. A file system that can
/// neither rename without replacing nor make hard links refuses. Any thread, as for the two below.
[[nodiscard]] std::error_code renameExclusively(const ItemReference& from, const ItemReference& to);

/// The same between two folders, even for a folder that its owner may not write to: moving a folder writes to
/// it, so it is made writable for a moment.
[[nodiscard]] std::error_code renameBetweenFolders(const ItemReference& from, const ItemReference& to);

/// The same under the name of `to` or, where that is taken, under the next free name with a number.
[[nodiscard]] std::error_code renameToFreeName(const ItemReference& from, const ItemReference& to);

}  // namespace vantrel
