#pragma once

#include <memory>
#include <vector>

#include "platform/DirectoryReader.h"
#include "walk/FolderOpener.h"
#include "walk/FolderQueue.h"
#include "walk/WalkScheduler.h"

namespace vantrel::walking {

/// One thread of a pool: visits folders, counts their files, queues their sub-folders. Other threads reach
/// nothing but its queue.
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

private:
    void goOn(Visit& visit);
    Visit make(Visit& visit);
    void read(Visit& visit);
    [[nodiscard]] bool readBatch(const Visit& visit);
    void handOver(Visit& visit);
    void countBatch(const Visit& visit);
    void handOutSubFolders(const Visit& visit);
    void countFiles(const Visit& visit);
    void count(const WalkTotals& totals, std::uint64_t entries);
    void foundFolder(const Visit& visit, const Entry& entry);
    [[nodiscard]] bool takeKnown(const Visit& visit, const Entry& entry, const FileIdentity& named);
    static void noteGap(const Visit& visit);
    void queueChildren();
    Visit publishChildren(Visit& visit);

    [[nodiscard]] bool open(Visit& visit);

    WalkScheduler& scheduler_;
    const std::size_t index_;
    const std::unique_ptr<DirectoryReader> reader_;
    FolderOpener opener_;
    FolderQueue queue_;
    unsigned visited_ = 0;
    std::vector<FolderReference> children_;  // found in the folder being visited, not yet adopted
    const RunningWalk* lastWalk_ = nullptr;  // whose folder was visited last; not looked into
    WalkTotals counted_;                     // in the folder being visited, not yet in the walk's totals
    Finding found_;                          // in this visit to the folder, where the walk remembers
};

}  // namespace vantrel::walking
