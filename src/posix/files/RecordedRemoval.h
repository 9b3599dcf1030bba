#pragma once

#include <vector>

#include "posix/files/OriginalCheck.h"

namespace vantrel {

/// Removes the items of a record one by one. Each is first moved into a folder where nobody else can reach it
/// and checked there; one that differs from its record is put back and ends the removal
/// (device_or_resource_busy), as does a folder that holds anything else (directory_not_empty). Blocks; one
/// thread at a time.
class RecordedRemoval : SideBySide {
public:
    /// `outOfReach` is that folder, and the name that the top item gets there unless it is a folder. The
    /// folder is -1 where none could be made: items are then checked just before they are removed.
    RecordedRemoval(const TreeRecord& record, const ItemReference& original, const ItemReference& copy,
                    ItemReference outOfReach)
        : SideBySide(record, original, copy), outOfReach_(std::move(outOfReach)) {}

    [[nodiscard]] std::error_code run();

    bool hasRemovedAny() const { return hasRemovedAny_; }

    [[nodiscard]] std::error_code enter(const TreeRecord::Entry& entry, std::size_t index);
    [[nodiscard]] std::error_code leave(const TreeRecord::Entry& entry);
    [[nodiscard]] std::error_code leaf(const TreeRecord::Entry& entry);

private:
    /// An item that is looked at, opened where that is possible.
    struct Subject {
        const TreeRecord::Entry& entry;
        FileDescriptor file;
        bool isLeased = false;
        struct stat status {};
    };

    [[nodiscard]] std::error_code lookAt(Subject& subject) const;
    [[nodiscard]] std::error_code lookAgain(const Subject& subject, const ItemReference& place) const;
    ItemReference placeOutOfReach(const TreeRecord::Entry& entry) const;
    [[nodiscard]] std::error_code unlink(const ItemReference& item, int flags = 0);
    void restoreFolders();

    ItemReference outOfReach_;
    bool hasRemovedAny_ = false;
    std::vector<const TreeRecord::Entry*> open_;
};

}  // namespace vantrel
