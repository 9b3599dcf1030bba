#pragma once

#include <optional>
#include <system_error>

#include "posix/files/ItemPlace.h"
#include "posix/files/TreeRecord.h"
#include "posix/files/Workplace.h"

namespace vantrel {

/// The end of a move that had to copy: removes the original once its copy is on the disk under its final
/// name. Removes nothing but what is in the record, and each item only after it was moved out of everybody's
/// reach and checked there, so that whatever anybody does to the original at any moment is kept. Blocks; one
/// thread at a time.
class OriginalRemoval {
public:
    /// All borrowed. `copy` is the finished copy in its place.
    OriginalRemoval(const TreeRecord& record, const ItemReference& original, const ItemReference& copy)
        : record_(record), original_(original), copy_(copy) {}

    /// On failure what is left of the original stands under its own name, or one with a number where somebody
    /// has taken that. device_or_resource_busy when others have changed it or are about to.
    [[nodiscard]] std::error_code run();

    /// Whether a failure has left the original whole.
    bool hasKeptAll() const { return hasKeptAll_; }

private:
    [[nodiscard]] std::error_code removeFolder();
    [[nodiscard]] std::error_code removeLeaf();
    [[nodiscard]] std::error_code putBack(std::error_code reason);

    const TreeRecord& record_;
    const ItemReference& original_;
    const ItemReference& copy_;
    std::optional<Workplace> workplace_;
    ItemReference aside_;  ///< the original while it is set aside
    bool hasKeptAll_ = true;
};

}  // namespace vantrel
