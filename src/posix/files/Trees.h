#pragma once

#include <sys/stat.h>

#include <system_error>

#include "posix/StopSignals.h"
#include "posix/files/ItemPlace.h"
#include "posix/files/TreeRecord.h"
#include "posix/files/WrittenFiles.h"

namespace vantrel {

/// What copying a tree needs at every level. All borrowed; one thread at a time.
struct CopyTask {
    WrittenFiles& written;         ///< gets everything that is made
    const StopRequested& stop;     ///< operation_canceled when it asks for the end
    TreeRecord* record = nullptr;  ///< gets the originals, where the copy is to replace them

    /// A copy that is to replace its original must be able to remove the original afterwards: it refuses a
    /// tree with another file system mounted in it, and folders that this user may not empty.
    bool isMove() const { return record != nullptr; }

    [[nodiscard]] std::error_code goOn() const {
        return stop && stop() ? std::make_error_code(std::errc::operation_canceled) : std::error_code();
    }
};

/// Copies an item with everything below it, of any depth. `copy` must not exist. A copied folder gets its
/// attributes (see FileCopy.h) once it is filled. Entries that vanish meanwhile are left out. On failure the
/// caller has to remove what there is of the copy. Blocks; any thread, as for the two below.
[[nodiscard]] std::error_code copyTree(const CopyTask& task, const ItemReference& original,
                                       const struct stat& status, const ItemReference& copy);

/// Removes an item with everything below it, including read-only folders of this user. Stops at other mounts.
/// What cannot be removed is skipped; the first reason is returned.
[[nodiscard]] std::error_code removeTree(const ItemReference& item);

/// The same for all that an open folder holds.
[[nodiscard]] std::error_code removeContents(int folder);

}  // namespace vantrel
