#pragma once

#include <sys/types.h>

#include <string>
#include <system_error>
#include <utility>

#include "posix/StopSignals.h"

namespace vantrel {

/// Copying, moving and making folders so that nothing is lost, replaced or half done, also when the power
/// goes: what these report as done is on the disk. Paths are raw bytes of any length. Blocks until done; one
/// thread at a time for each object. In the folders that they work in they clear away what operations of a
/// process that has ended left behind.
class FileOperations {
public:
    /// A copy asks `stop` again and again whether it shall end, up to the moment when it gets its name; it
    /// then fails with operation_canceled.
    explicit FileOperations(StopRequested stop = {}) : stop_(std::move(stop)) {}

    /// The copy is built out of sight beside `to` and gets its name when all of it is on the disk; on failure
    /// nothing of it remains. file_exists when `to` is taken, invalid_argument when a folder would be copied
    /// into itself.
    [[nodiscard]] std::error_code copyItem(const std::string& from, const std::string& to) const;

    /// A rename where both lie on one file system, else a complete copy and the removal of the original. On
    /// failure the original is whole and in its place, unless removing it failed on the way: then the copy is
    /// whole and in its place, and what is left of the original stands where it was. What others do to either
    /// meanwhile is never lost; device_or_resource_busy when that ends the move. Errors else as in
    /// `copyItem`. A name that differs from the old one only as the file system does not tell names apart is
    /// no name of its own, so this changes its spelling.
    [[nodiscard]] std::error_code moveItem(const std::string& from, const std::string& to) const;

    /// Makes a folder and those above it that are missing; no error when it is there. On failure those that
    /// were made are taken away again. `mode` is what the process's mask leaves of it.
    [[nodiscard]] std::error_code createDirectory(const std::string& path, mode_t mode = 0777) const;

private:
    StopRequested stop_;
};

}  // namespace vantrel
