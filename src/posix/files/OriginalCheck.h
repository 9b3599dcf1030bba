#pragma once

#include <string>

#include "posix/files/FolderStack.h"
#include "posix/files/ItemPlace.h"
#include "posix/files/TreeRecord.h"

namespace vantrel {

/// Goes through an original and its copy side by side, as the record says: the base of what looks at both.
/// One thread at a time. Record and folders are borrowed.
class SideBySide {
protected:
    SideBySide(const TreeRecord& record, const ItemReference& original, const ItemReference& copy)
        : record_(record),
          originalTop_(original),
          copyTop_(copy),
          original_(original.folder),
          copy_(copy.folder) {}

    bool isTop(const TreeRecord::Entry& entry) const { return &entry == &record_.top(); }
    const std::string& nameOf(const TreeRecord::Entry& entry) const {
        return isTop(entry) ? originalTop_.name : entry.name;
    }
    ItemReference originalOf(const TreeRecord::Entry& entry) const {
        return {original_.current(), nameOf(entry)};
    }
    ItemReference copyOf(const TreeRecord::Entry& entry) const {
        return {copy_.current(), isTop(entry) ? copyTop_.name : entry.name};
    }
    [[nodiscard]] std::error_code enterBoth(const TreeRecord::Entry& entry);
    [[nodiscard]] std::error_code leaveBoth();

    /// Whether an open original holds what the copy of `entry` holds; busy() when it does not.
    [[nodiscard]] std::error_code compareContent(int original, const TreeRecord::Entry& entry) const;

    const TreeRecord& record_;
    ItemReference originalTop_;
    ItemReference copyTop_;
    FolderStack original_;
    FolderStack copy_;
};

/// The failure that means: somebody else is working on it.
[[nodiscard]] std::error_code busy();

/// Whether an original is still in its place and as it was copied: nothing was added, removed or changed in
/// any way. An item that can never be removed (chattr +i, +a) is refused too, with operation_not_permitted.
/// Blocks; any thread, as for the two below.
[[nodiscard]] std::error_code checkInPlace(const TreeRecord& record, const ItemReference& original);

/// The same for a folder that has been renamed to where nobody finds it: in addition, nobody may have a file
/// in it open for writing, and whatever could have been changed without a trace is compared with the copy.
/// device_or_resource_busy otherwise.
[[nodiscard]] std::error_code checkSetAside(const TreeRecord& record, const ItemReference& original,
                                            const ItemReference& copy);

/// Whether a copy is still as it was made. `seen` is when others could first see it.
[[nodiscard]] std::error_code checkCopy(const TreeRecord& record, const ItemReference& copy,
                                        const timespec& seen);

}  // namespace vantrel
