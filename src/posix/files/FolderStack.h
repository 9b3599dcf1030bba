#pragma once

#include <sys/stat.h>

#include <string>
#include <vector>

#include "base/FileDescriptor.h"
#include "base/Result.h"

namespace vantrel {

/// The way down from one open folder into the folders below it, of any depth, with a bounded number of
/// descriptors: outer folders are closed on the way, sooner when descriptors run short, and reopened through
/// "..", provided that this still leads to the same folder. Links are never followed. One thread at a time.
class FolderStack {
public:
    /// `base` is borrowed.
    explicit FolderStack(int base) : base_(base) {}

    /// The innermost folder, the base at first.
    int current() const { return levels_.empty() ? base_ : levels_.back().folder.number(); }

    /// Status of the innermost folder as it was entered. Not for the base.
    const struct stat& status() const { return levels_.back().status; }

    [[nodiscard]] std::error_code enter(const std::string& name);

    /// Back to the next outer folder. Fails with no_such_file_or_directory when the tree was moved meanwhile
    /// and the way back leads elsewhere.
    [[nodiscard]] std::error_code leave();

    /// Names of the entries of the innermost folder, without "." and "..".
    Result<std::vector<std::string>> names();

private:
    struct Level {
        FileDescriptor folder;  ///< closed while many others lie further in
        struct stat status {};
    };

    bool closeOuterFolders();

    int base_;
    std::vector<Level> levels_;
};

/// Names of the entries of an open folder, without "." and "..".
Result<std::vector<std::string>> namesIn(int folder);

}  // namespace vantrel
