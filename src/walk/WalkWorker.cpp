#include "walk/WalkWorker.h"

#include <chrono>
#include <thread>

#include "base/SystemCall.h"
#include "walk/RunningWalk.h"

namespace vantrel::walking {

namespace {

// How many folders of walks under way are visited between two looks at the walks that wait.
constexpr unsigned foldersPerFurtherWalk = 8;

constexpr std::chrono::milliseconds pauseWhileDescriptorsAreScarce{2};

}  // namespace

WalkWorker::WalkWorker(WalkScheduler& scheduler, std::size_t index, std::unique_ptr<DirectoryReader> reader)
    : scheduler_(scheduler), index_(index), reader_(std::move(reader)) {}

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
    if (walk.isCancelled() || (!visit.use && !open(visit))) return {};
    read(visit);
    walk.add(counted_);
    return publishChildren(visit);
}

void WalkWorker::read(Visit& visit) {
    RunningWalk& walk = visit.folder->walk();
    while (!walk.isCancelled() && reader_->read(visit.use.descriptor(), visit.stream.get())) {
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
            children_.push_back(Folder::make(walk, entry.name));
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
        if (!reader_->measure(descriptor, entry.name, measure) || measure.kind == EntryKind::link) continue;
        if (measure.kind == EntryKind::other)
            addChecked(counted_, {measure.bytes, 1});
        else if (measure.kind == EntryKind::folder && walk.reach() == WalkPool::Reach::wholeTree)
            children_.push_back(Folder::make(walk, entry.name));
        walk.progress(counted_);
    }
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
        const auto error = tryOpen(next);
        if (error && !isDescriptorShortage(error)) next = {};
        scheduler_.giveUp(visit.use);
    } else {
        visit.use.keepWithin(scheduler_.budget());
    }
    if (!children_.empty()) queueChildren();
    return next;
}

bool WalkWorker::open(Visit& visit) {
    auto error = tryOpen(visit);
    if (isDescriptorShortage(error)) error = retryOpen(visit);
    if (error && visit.folder->isRoot()) visit.folder->walk().failAtRoot();
    return !error;
}

// One worker at a time tries again until it has what it needs; all others finish what they have open.
std::error_code WalkWorker::retryOpen(Visit& visit) {
    std::lock_guard lock(scheduler_.shortage());
    for (;;) {
        scheduler_.giveUpAll();
        const auto error = tryOpen(visit);
        if (!isDescriptorShortage(error)) return error;
        if (visit.folder->walk().isCancelled()) return error;
        std::this_thread::sleep_for(pauseWhileDescriptorsAreScarce);
    }
}

std::error_code WalkWorker::tryOpen(Visit& visit) {
    auto opened = openByName(*visit.folder);
    if (!opened) return opened.error();
    auto stream = reader_->beginReading(opened->number());
    if (!stream) return stream.error();
    visit.use = visit.folder->opened(std::move(*opened));
    visit.stream = std::move(*stream);
    return {};
}

Result<FileDescriptor> WalkWorker::openByName(const Folder& folder) {
    Volume& volume = folder.walk().volume();
    if (folder.isRoot()) return reader_->openRoot(folder.walk().rootPath(), volume);
    if (const FolderUse parent = folder.parent()->tryUse())
        return reader_->openFolder(parent.descriptor(), folder.name(), volume);
    auto place = reopen(*folder.parent());
    if (!place) return place;
    return reader_->openFolder(place->number(), folder.name(), volume);
}

// A descriptor of its own for a folder whose descriptor was given up.
Result<FileDescriptor> WalkWorker::reopen(const Folder& folder) {
    std::vector<const Folder*> missing{&folder};
    FolderUse nearest;
    for (Folder* above = folder.parent(); above; above = above->parent()) {
        nearest = above->tryUse();
        if (nearest) break;
        missing.push_back(above);
    }
    Volume& volume = folder.walk().volume();
    FileDescriptor root;
    if (!nearest) {
        auto opened = reader_->openRoot(folder.walk().rootPath(), volume);
        if (!opened) return opened;
        root = std::move(*opened);
        missing.pop_back();
    }
    std::string path;
    for (auto name = missing.rbegin(); name != missing.rend(); ++name) {
        if (!path.empty()) path += '/';
        path += (*name)->name();
    }
    if (path.empty()) path.push_back('.');
    auto opened = reader_->openBelow(nearest ? nearest.descriptor() : root.number(), path, volume);
    // A tree renamed meanwhile must not lead the walk to another folder.
    if (opened && identify(opened->number()) != folder.identity())
        return std::make_error_code(std::errc::no_such_file_or_directory);
    return opened;
}

}  // namespace vantrel::walking
