#pragma once

#include <sys/types.h>

#include <string>
#include <system_error>
#include <utility>

#include "posix/StopSignals.h"

namespace vantrel {

/// Copies and moves items and makes folders so that nothing is lost, replaced or half done, even in a power
/// cut: what is reported as done is on the disk. Paths are raw bytes of any length. Blocks until done; one
/// thread at a time for each object. In the folders where it works it clears away what operations of ended
/// processes left behind.
class FileOperations {
public:
    /// A copy keeps asking `stop` whether to end, until it gets its name; if so, it fails with
    /// operation_canceled.
    explicit FileOperations(StopRequested stop = {}) : stop_(std::move(stop)) {}

    /// The copy is built out of sight beside `to` and gets its name when all of it is on the disk; on failure
    /// nothing of it remains. file_exists when `to` is taken, invalid_argument when a folder would be copied
    /// into itself.
    [[nodiscard]] std::error_code copyItem(const std::string& from, const std::string& to) const;

    /// A rename where both lie on one file system, else a complete copy and the removal of the original. On
    /// failure the original is whole and in its place, unless removing it failed on the way: then the copy is
    /// whole and in its place, and what is left of the original stands where it was. What others do to either
    /// meanwhile is never lost; device_or_resource_busy when that ends the move. Otherwise errors are as in
    /// `copyItem`. Where the file system takes the old and the new name for the same, only the spelling
    /// changes.
    [[nodiscard]] std::error_code moveItem(const std::string& from, const std::string& to) const;

    /// Makes a folder and those above it that are missing; no error when it is there. On failure those that
    /// were made are removed again. The process's umask applies to `mode`.
    [[nodiscard]] std::error_code createDirectory(const std::string& path, mode_t mode = 0777) const;

private:
    StopRequested stop_;
};

}  // namespace vantrel
