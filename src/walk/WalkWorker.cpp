#include "walk/WalkWorker.h"

#include <algorithm>

#include "base/SystemCall.h"
#include "walk/RunningWalk.h"

namespace vantrel::walking {

namespace {

// How many folders of walks under way are visited between two looks at the walks that wait.
constexpr unsigned foldersPerFurtherWalk = 8;

}  // namespace

WalkWorker::WalkWorker(WalkScheduler& scheduler, std::size_t index, std::unique_ptr<DirectoryReader> reader)
    : scheduler_(scheduler), index_(index), reader_(std::move(reader)), opener_(scheduler, *reader_) {}

void WalkWorker::run() {
    while (Visit visit = scheduler_.take(*this)) {
        while (visit) goOn(visit);
    }
}

void WalkWorker::runUntil(const Clock& clock, Seconds end) {
    Visit visit = scheduler_.takeNow(*this);
    while (visit) {
        goOn(visit);
        if (clock.now() >= end) break;
        if (!visit) visit = scheduler_.takeNow(*this);
    }
    if (visit) queue_.push(std::move(visit));
    reader_->rest();
}

// Makes a visit and puts the next in its place, now and then that of a further walk.
void WalkWorker::goOn(Visit& visit) {
    visit = make(visit);
    if (++visited_ % foldersPerFurtherWalk != 0) return;
    Visit root = scheduler_.beginFurtherWalk();
    if (!root) return;
    if (visit) queue_.push(std::move(visit));
    visit = std::move(root);
}

// Returns the visit to one of the folder's sub-folders, to be made next by the same thread without a detour
// through the queue.
Visit WalkWorker::make(Visit& visit) {
    RunningWalk& walk = visit.folder->walk();
    if (std::exchange(lastWalk_, &walk) != &walk) reader_->rest();
    if (walk.isCancelled()) {
        noteGap(visit);
        return {};
    }
    if (!visit.use && !open(visit)) return {};
    found_ = {};
    read(visit);
    walk.add(counted_);
    if (FolderTally* const tally = visit.folder->tally()) tally->add(found_);
    if (walk.isCancelled()) noteGap(visit);  // seen by whoever has stopped for it
    return publishChildren(visit);
}

bool WalkWorker::readBatch(const Visit& visit) {
    const RunningWalk& walk = visit.folder->walk();
    if (walk.isCancelled()) return false;
    const Batch batch = reader_->read(visit.use.descriptor(), visit.stream.get());
    if (batch == Batch::failed) noteGap(visit);
    return batch == Batch::names;
}

void WalkWorker::read(Visit& visit) {
    RunningWalk& walk = visit.folder->walk();
    while (readBatch(visit)) {
        if (reader_->expectsMore() && !scheduler_.budget().isUsedUp()) {
            handOver(visit);
            countBatch(visit);
            return;
        }
        countBatch(visit);
        if (reader_->reachedEnd(visit.use.descriptor(), walk.volume())) break;
    }
    visit.stream.reset();
}

// Lets any worker read the folder on while this one counts the batch at hand.
void WalkWorker::handOver(Visit& visit) {
    visit.use.keepWithin(scheduler_.budget());
    queue_.push(Visit(visit.folder.again(), visit.use.again(), std::move(visit.stream)));
    scheduler_.wakeOne();
}

void WalkWorker::countBatch(const Visit& visit) {
    if (visit.folder->walk().reach() == WalkPool::Reach::wholeTree) handOutSubFolders(visit);
    countFiles(visit);
}

// The sub-folders go to whoever is idle before the files are looked at, which takes far longer. In a chain of
// folders that is all that two threads can do side by side.
void WalkWorker::handOutSubFolders(const Visit& visit) {
    RunningWalk& walk = visit.folder->walk();
    Entry entry;
    bool hasFiles = false;
    while (!walk.isCancelled() && reader_->next(entry)) {
        if (entry.kind == EntryKind::folder) {
            foundFolder(visit, entry);
            walk.progress(counted_);
        } else if (entry.kind != EntryKind::link) {
            hasFiles = true;
        }
    }
    reader_->rewind();
    // Without files there is nothing to do meanwhile; with few descriptors left their number has to stay
    // small.
    if (!hasFiles || children_.empty() || scheduler_.budget().isUsedUp()) return;
    visit.folder->adopt(children_);
    visit.use.keepWithin(scheduler_.budget());
    queueChildren();
}

void WalkWorker::queueChildren() {
    queue_.push(children_);
    scheduler_.wakeOne();
}

void WalkWorker::countFiles(const Visit& visit) {
    RunningWalk& walk = visit.folder->walk();
    const int descriptor = reader_->measuringFrom(visit.use.descriptor());
    Entry entry;
    Measure measure;
    while (!walk.isCancelled() && reader_->next(entry)) {
        if (entry.kind == EntryKind::link || entry.kind == EntryKind::folder) continue;
        if (const auto error = reader_->measure(descriptor, entry.name, measure)) {
            // What vanishes meanwhile is not there to be counted.
            if (error != std::errc::no_such_file_or_directory) noteGap(visit);
            continue;
        }
        if (measure.kind == EntryKind::link) continue;
        if (measure.kind == EntryKind::other)
            count({measure.bytes, 1}, 1);
        else if (walk.reach() == WalkPool::Reach::wholeTree)
            foundFolder(visit, entry);
        walk.progress(counted_);
    }
}

void WalkWorker::count(const WalkTotals& totals, std::uint64_t entries) {
    addChecked(counted_, totals);
    addChecked(found_.totals, totals);
    found_.entries += entries;
}

void WalkWorker::noteGap(const Visit& visit) {
    if (FolderTally* const tally = visit.folder->tally()) tally->hasGap();
}

void WalkWorker::foundFolder(const Visit& visit, const Entry& entry) {
    RunningWalk& walk = visit.folder->walk();
    const FolderTally* const tally = visit.folder->tally();
    if (!tally) {
        children_.push_back(Folder::make(walk, entry.name));
        return;
    }
    const FileIdentity identity{tally->identity().device, entry.inode};
    if (takeKnown(visit, entry, identity)) return;
    children_.push_back(
        Folder::make(walk, entry.name, std::make_unique<FolderTally>(identity, tally->openedAt())));
}

// A folder whose total is known is not entered. What a directory says of it only tells whether it is worth a
// look.
bool WalkWorker::takeKnown(const Visit& visit, const Entry& entry, const FileIdentity& named) {
    RunningWalk& walk = visit.folder->walk();
    KnownTotals* const known = walk.known();
    if (!known || !known->isKnown(named)) return false;
    const auto look = reader_->look(visit.use.descriptor(), entry.name);
    if (!look || look->isMountPoint) return false;
    const auto total = known->find(look->identity, look->changed);
    if (!total) return false;
    count(total->totals, total->entries + 1);
    found_.oldest = std::min(found_.oldest, total->oldest);
    walk.didTakeOver(total->oldest);
    return true;
}

// Queues the visits to the sub-folders but one, which it returns.
Visit WalkWorker::publishChildren(Visit& visit) {
    Visit next;
    if (children_.empty()) return next;
    visit.folder->adopt(children_);
    next.folder = std::move(children_.back());
    children_.pop_back();
    if (scheduler_.budget().isUsedUp()) {
        // The one to be made next is opened while that is cheap.
        const auto error = opener_.tryOpen(next);
        if (error && !isDescriptorShortage(error)) next = {};
        scheduler_.giveUp(visit.use);
    } else {
        visit.use.keepWithin(scheduler_.budget());
    }
    if (!children_.empty()) queueChildren();
    return next;
}

bool WalkWorker::open(Visit& visit) {
    const auto error = opener_.open(visit);
    if (error && visit.folder->isRoot()) visit.folder->walk().failAtRoot();
    return !error;
}

}  // namespace vantrel::walking
