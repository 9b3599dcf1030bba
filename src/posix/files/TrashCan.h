#pragma once

#include <string>

#include "base/FileDescriptor.h"
#include "base/Result.h"
#include "posix/files/ItemPlace.h"

namespace vantrel {

/// One trash folder with its "files" and "info". One thread at a time; both functions block.
class TrashCan {
public:
    /// Opens the can in an existing folder, and makes what is missing in it. Refuses what belongs to somebody
    /// else, and links in place of its folders (permission_denied). `topFolder` is what paths in it are
    /// relative to; empty for absolute ones.
    static Result<TrashCan> open(FileDescriptor folder, std::string topFolder);

    /// Renames the item into the can, after writing its info file under a name not yet used in the can. The
    /// info is on the disk before the item is in the can, and both are when this returns. `path` is the
    /// item's absolute path without links. On failure the item is where it was and the can as it was.
    [[nodiscard]] std::error_code put(const ItemReference& item, const std::string& path) const;

private:
    TrashCan(FileDescriptor folder, std::string topFolder)
        : folder_(std::move(folder)), topFolder_(std::move(topFolder)) {}

    [[nodiscard]] std::error_code rename(const ItemReference& item, const std::string& name) const;
    bool holds(int folder) const;
    std::string infoFor(const std::string& path) const;

    FileDescriptor folder_;
    FileDescriptor files_;
    FileDescriptor info_;
    std::string topFolder_;
};

/// Opens a folder of this user's own, and makes it if it is missing. permission_denied when it is somebody
/// else's; a link in its place is refused. Any thread.
Result<FileDescriptor> openOwnFolder(const ItemReference& place, int flags);

/// The name that an item gets in a trash at the n-th try: its own first, then with a number before its
/// extension; shortened, between two characters where it is UTF-8, so that no more than `limit` bytes remain.
std::string trashName(const std::string& name, int attempt, std::size_t limit);

}  // namespace vantrel
