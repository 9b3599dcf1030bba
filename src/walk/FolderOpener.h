#pragma once

#include <system_error>

#include "platform/DirectoryReader.h"
#include "walk/FolderQueue.h"

namespace vantrel::walking {

class WalkScheduler;

/// Opens folders to be read, by name in the folder above, whether that is still open or has to be found
/// again. One for each worker, on its thread; scheduler and reader are the worker's.
class FolderOpener {
public:
    FolderOpener(WalkScheduler& scheduler, DirectoryReader& reader)
        : scheduler_(scheduler), reader_(reader) {}

    /// Where descriptors are scarce it waits until the other workers have closed some, or the walk is
    /// cancelled.
    [[nodiscard]] std::error_code open(Visit& visit);

    /// Fails at once where descriptors are scarce.
    [[nodiscard]] std::error_code tryOpen(Visit& visit);

private:
    [[nodiscard]] std::error_code retry(Visit& visit);
    void didOpen(Folder& folder, int descriptor);
    Result<FileDescriptor> openByName(const Folder& folder);
    Result<FileDescriptor> reopen(const Folder& folder);

    WalkScheduler& scheduler_;
    DirectoryReader& reader_;
};

}  // namespace vantrel::walking
