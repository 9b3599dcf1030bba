#pragma once

#include <sys/types.h>

#include <string>
#include <utility>

#include "platform/posix/SystemCalls.h"

namespace vantrel {

/// Copying, moving and making folders so that nothing is lost, replaced or half done. Paths are raw bytes of
/// any length. Blocks until done; one thread at a time for each object.
class FileOperations {
public:
    explicit FileOperations(SystemCalls calls = {}) : calls_(std::move(calls)) {}

    /// The copy is built under a hidden name beside `to` and gets its own name when it is complete; on
    /// failure nothing of it remains. file_exists when `to` is taken, invalid_argument when a folder would be
    /// copied into itself.
    std::error_code copyItem(const std::string& from, const std::string& to) const;

    /// A rename where both lie on one file system, else a complete copy, compared with its original, which is
    /// then removed. On failure the original is whole and in its place. Errors as in `copyItem`. A name that
    /// differs from the old one only as the file system does not tell names apart is no name of its own, so
    /// this changes its spelling.
    std::error_code moveItem(const std::string& from, const std::string& to) const;

    /// Makes a folder and those above it that are missing; no error when it is there. On failure those that
    /// were made are taken away again. `mode` is what the process's mask leaves of it.
    std::error_code createDirectory(const std::string& path, mode_t mode = 0777) const;

private:
    SystemCalls calls_;
};

}  // namespace vantrel
