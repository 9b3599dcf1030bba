#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

#include "posix/StopSignals.h"
#include "posix/files/ItemPlace.h"
#include "posix/files/TreeRecord.h"
#include "posix/files/Workplace.h"

namespace vantrel {

/// A copy in the making, out of sight beside its target; removed unless it is put in place. One thread at a
/// time; its functions block.
class PendingCopy {
public:
    /// All borrowed.
    PendingCopy(const StopRequested& stop, const ItemReference& target) : stop_(stop), target_(target) {}

    /// Makes the copy and waits until all of it is on the disk. `record`, if not null, receives the
    /// originals.
    [[nodiscard]] std::error_code make(const ItemReference& source, const struct stat& status,
                                       TreeRecord* record);

    /// Gives the copy its name and waits until that is on the disk as well. On failure nothing is left of the
    /// copy.
    [[nodiscard]] std::error_code putInPlace();

    /// Removes the copy after it was put in place, unless somebody has found and changed it there meanwhile.
    void takeBack(const TreeRecord& record);

private:
    [[nodiscard]] std::error_code makeWorkplace();
    ItemReference outOfSight() const { return {workplace_->number(), target_.name}; }

    const StopRequested& stop_;
    const ItemReference& target_;
    std::optional<Workplace> workplace_;
    timespec seen_{};  ///< when it got its name
};

}  // namespace vantrel
