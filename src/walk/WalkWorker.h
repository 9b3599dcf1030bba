#pragma once

#include <memory>
#include <vector>

#include "platform/DirectoryReader.h"
#include "walk/FolderQueue.h"
#include "walk/WalkScheduler.h"

namespace vantrel::walking {

/// One thread of a pool: visits folders, counts their files, queues their sub-folders.
class WalkWorker {
public:
    WalkWorker(WalkScheduler& scheduler, std::size_t index, std::unique_ptr<DirectoryReader> reader);

    /// The thread's body; returns when the pool is being destroyed.
    void run();

    /// The same for a lent thread: returns when nothing is left to do, or between two folders when it is
    /// time.
    void runUntil(const Clock& clock, Seconds end);

    std::size_t index() const { return index_; }
    FolderQueue& queue() { return queue_; }

    /// To be called before the thread sleeps.
    void rest() { reader_->rest(); }

    /// Gives up a folder taken from a queue without visiting it.
    static void drop(Folder* folder);

private:
    Folder* goOn(Folder* folder);
    Folder* visit(Folder* folder);
    void read(Folder& folder);
    void countHandedOver(Folder& folder);
    void countBatch(Folder& folder);
    void handOutSubFolders(Folder& folder);
    void countFiles(Folder& folder);
    void queueChildren();
    Folder* publishChildren(Folder& folder);

    bool open(Folder& folder);
    [[nodiscard]] std::error_code tryOpen(Folder& folder);
    [[nodiscard]] std::error_code retryOpen(Folder& folder);
    Result<FileDescriptor> openByName(Folder& folder);
    Result<FileDescriptor> reopen(Folder& folder);

    WalkScheduler& scheduler_;
    const std::size_t index_;
    const std::unique_ptr<DirectoryReader> reader_;
    FolderQueue queue_;
    unsigned visited_ = 0;
    std::vector<Folder*> children_;          // found in the folder being visited, seen by no other thread yet
    const RunningWalk* lastWalk_ = nullptr;  // whose folder was visited last; not looked into
    WalkTotals counted_;                     // in the folder being visited, not yet in the walk's totals
};

}  // namespace vantrel::walking
