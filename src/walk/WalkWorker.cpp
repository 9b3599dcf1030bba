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
    while (Folder* folder = scheduler_.take(*this)) {
        while (folder) folder = goOn(folder);
    }
}

void WalkWorker::runUntil(const Clock& clock, Seconds end) {
    Folder* folder = scheduler_.takeNow(*this);
    while (folder) {
        folder = goOn(folder);
        if (clock.now() >= end) break;
        if (!folder) folder = scheduler_.takeNow(*this);
    }
    if (folder) queue_.push(folder);
    reader_->rest();
}

// Visits a folder and answers the one to be visited next, now and then that of a further walk.
Folder* WalkWorker::goOn(Folder* folder) {
    folder = visit(folder);
    if (++visited_ % foldersPerFurtherWalk != 0) return folder;
    Folder* root = scheduler_.beginFurtherWalk();
    if (!root) return folder;
    if (folder) queue_.push(folder);
    return root;
}

void WalkWorker::drop(Folder* folder) {
    if (folder->wasOpened()) {
        folder->endReading();
        folder->endUse();
    } else if (folder->parent()) {
        folder->parent()->endWait();
    }
    releaseFolder(folder);
}

// Visits a folder that was just found or is to be read on. Returns one of its sub-folders, to be visited
// next by the same thread without a detour through the queue.
Folder* WalkWorker::visit(Folder* folder) {
    if (std::exchange(lastWalk_, &folder->walk()) != &folder->walk()) reader_->rest();
    if (folder->walk().isCancelled() || (!folder->wasOpened() && !open(*folder))) {
        drop(folder);
        return nullptr;
    }
    read(*folder);
    folder->walk().add(counted_);
    Folder* kept = publishChildren(*folder);
    releaseFolder(folder);
    return kept;
}

void WalkWorker::read(Folder& folder) {
    while (!folder.walk().isCancelled() && reader_->read(folder.descriptor(), folder.stream())) {
        if (reader_->expectsMore() && !scheduler_.budget().isUsedUp()) {
            countHandedOver(folder);
            return;  // the stream belongs to whoever reads on
        }
        countBatch(folder);
        if (reader_->reachedEnd(folder.descriptor(), folder.walk().volume())) break;
    }
    folder.endReading();
}

// Lets any worker read the folder on while this one counts the batch at hand.
void WalkWorker::countHandedOver(Folder& folder) {
    folder.keepWithin(scheduler_.budget());
    folder.retain();
    folder.useAgain();
    queue_.push(&folder);
    scheduler_.wakeOne();
    countBatch(folder);
}

void WalkWorker::countBatch(Folder& folder) {
    if (folder.walk().reach() == WalkPool::Reach::wholeTree) handOutSubFolders(folder);
    countFiles(folder);
}

// The sub-folders go to whoever is idle before the files are looked at, which takes far longer. In a chain of
// folders that is all that two threads can do side by side.
void WalkWorker::handOutSubFolders(Folder& folder) {
    Entry entry;
    bool hasFiles = false;
    while (!folder.walk().isCancelled() && reader_->next(entry)) {
        if (entry.kind == EntryKind::folder) {
            children_.push_back(Folder::make(folder.walk(), &folder, entry.name));
            folder.walk().progress(counted_);
        } else if (entry.kind != EntryKind::link) {
            hasFiles = true;
        }
    }
    reader_->rewind();
    // Without files there is nothing to do meanwhile; with few descriptors left their number has to stay
    // small.
    if (!hasFiles || children_.empty() || scheduler_.budget().isUsedUp()) return;
    folder.expect(static_cast<std::uint32_t>(children_.size()));
    folder.keepWithin(scheduler_.budget());
    queueChildren();
}

void WalkWorker::queueChildren() {
    queue_.push(children_);
    scheduler_.wakeOne();
    children_.clear();
}

void WalkWorker::countFiles(Folder& folder) {
    RunningWalk& walk = folder.walk();
    const int descriptor = reader_->measuringFrom(folder.descriptor());
    Entry entry;
    Measure measure;
    while (!walk.isCancelled() && reader_->next(entry)) {
        if (entry.kind == EntryKind::link || entry.kind == EntryKind::folder) continue;
        if (!reader_->measure(descriptor, entry.name, measure) || measure.kind == EntryKind::link) continue;
        if (measure.kind == EntryKind::other)
            addChecked(counted_, {measure.bytes, 1});
        else if (measure.kind == EntryKind::folder && walk.reach() == WalkPool::Reach::wholeTree)
            children_.push_back(Folder::make(walk, &folder, entry.name));
        walk.progress(counted_);
    }
}

// Queues the sub-folders but one, which it returns, and ends this worker's use of the folder.
Folder* WalkWorker::publishChildren(Folder& folder) {
    if (children_.empty()) {
        folder.endUse();
        return nullptr;
    }
    folder.expect(static_cast<std::uint32_t>(children_.size()));
    Folder* kept = children_.back();
    children_.pop_back();
    bool inUse = true;
    if (scheduler_.budget().isUsedUp()) {
        // The one to be visited next is opened while that is cheap.
        const auto error = tryOpen(*kept);
        if (error && !isDescriptorShortage(error)) drop(std::exchange(kept, nullptr));
        inUse = !scheduler_.giveUp(folder);
    } else {
        folder.keepWithin(scheduler_.budget());
    }
    if (!children_.empty()) queueChildren();
    if (inUse) folder.endUse();
    return kept;
}

// On failure the folder still counts as waiting for its parent's descriptor.
bool WalkWorker::open(Folder& folder) {
    auto error = tryOpen(folder);
    if (isDescriptorShortage(error)) error = retryOpen(folder);
    if (error && !folder.parent()) folder.walk().failAtRoot();
    return !error;
}

// One worker at a time tries again until it has what it needs; all others finish what they have open.
std::error_code WalkWorker::retryOpen(Folder& folder) {
    std::lock_guard lock(scheduler_.shortage());
    for (;;) {
        scheduler_.giveUpAll();
        const auto error = tryOpen(folder);
        if (!isDescriptorShortage(error)) return error;
        if (folder.walk().isCancelled()) return error;
        std::this_thread::sleep_for(pauseWhileDescriptorsAreScarce);
    }
}

std::error_code WalkWorker::tryOpen(Folder& folder) {
    auto opened = openByName(folder);
    if (!opened) return opened.error();
    auto stream = reader_->beginReading(opened->number());
    if (!stream) return stream.error();
    folder.opened(std::move(*opened), std::move(*stream));
    if (folder.parent()) folder.parent()->endWait();
    return {};
}

Result<FileDescriptor> WalkWorker::openByName(Folder& folder) {
    Folder* parent = folder.parent();
    Volume& volume = folder.walk().volume();
    if (!parent) return reader_->openRoot(folder.walk().rootPath(), volume);
    if (parent->tryUse()) {
        auto opened = reader_->openFolder(parent->descriptor(), folder.name(), volume);
        parent->endUse();
        return opened;
    }
    auto place = reopen(*parent);
    if (!place) return place;
    return reader_->openFolder(place->number(), folder.name(), volume);
}

// A descriptor of its own for a folder whose descriptor was given up.
Result<FileDescriptor> WalkWorker::reopen(Folder& folder) {
    std::vector<const Folder*> missing{&folder};
    Folder* ancestor = folder.parent();
    while (ancestor && !ancestor->tryUse()) {
        missing.push_back(ancestor);
        ancestor = ancestor->parent();
    }
    Volume& volume = folder.walk().volume();
    FileDescriptor root;
    if (!ancestor) {
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
    auto opened = reader_->openBelow(ancestor ? ancestor->descriptor() : root.number(), path, volume);
    if (ancestor) ancestor->endUse();
    // A tree renamed meanwhile must not lead the walk to another folder.
    if (opened && identify(opened->number()) != folder.identity())
        return std::make_error_code(std::errc::no_such_file_or_directory);
    return opened;
}

}  // namespace vantrel::walking
