#pragma once

#include <cstddef>
#include <cstdint>
#include <system_error>
#include <vector>

#include "base/FileDescriptor.h"

namespace vantrel {

/// What an operation has written to one file system and what has to reach the disk before it counts. A few
/// files are flushed one by one when all are written, many by one syncfs(2), which costs less but also waits
/// for what others have written; where syncfs(2) does not reach, each file is flushed as it is finished. One
/// thread at a time; flushing blocks. Failures are those of fsync(2), syncfs(2) and close(2).
class WrittenFiles {
public:
    /// `folder` lies on the file system in question and was opened before the first write to it, so that
    /// errors of writing are not missed. It is borrowed.
    WrittenFiles(int folder);

    /// Takes over a finished file, with its attributes.
    [[nodiscard]] std::error_code add(FileDescriptor file);

    /// The same for a folder, which stays the caller's.
    [[nodiscard]] std::error_code addFolder(int folder);

    /// What cannot be flushed by itself: a link, a FIFO.
    void addUnopened() { onlyAll_ = isReachedByAll_; }

    /// Flushes all that was added.
    [[nodiscard]] std::error_code flush();

    /// Closes what is kept open for later, for whoever needs descriptors now.
    [[nodiscard]] std::error_code giveUpDescriptors();

private:
    int folder_;
    bool isReachedByAll_;
    bool onlyAll_ = false;  // syncfs(2) has to do it
    std::vector<FileDescriptor> kept_;
};

/// Waits until what happened to the entries of an open folder has reached the disk. The descriptor may be an
/// O_PATH one. No error where folders cannot be flushed, or where this user may not read the folder.
[[nodiscard]] std::error_code flushFolder(int folder);

/// fsync(2) for a file or a folder; no error where the file system knows no such thing.
[[nodiscard]] std::error_code flushFile(int file);

}  // namespace vantrel
