#include "walk/Folder.h"

#include <cstring>
#include <new>

#include "walk/RunningWalk.h"

namespace vantrel::walking {

FolderReference FolderReference::again() const {
    // Relaxed: the count cannot reach zero meanwhile, and the folder is known to this thread already.
    folder_->references_.fetch_add(1, std::memory_order_relaxed);
    return FolderReference(folder_.get());
}

void FolderReference::GiveBack::operator()(Folder* folder) const {
    Folder::release(folder);
}

FolderUse FolderUse::again() const {
    // Relaxed: the descriptor cannot be closed meanwhile, and this thread may use it already.
    folder_->state_.fetch_add(Folder::oneUse, std::memory_order_relaxed);
    return FolderUse(folder_.get());
}

void FolderUse::keepWithin(DescriptorBudget& budget) const {
    if (!folder_->share_) folder_->share_ = budget.keep();
}

void FolderUse::giveUp() {
    if (folder_->giveUp()) (void)folder_.release();  // counted no more
}

FolderReference Folder::makeRoot(std::unique_ptr<RunningWalk> walk) {
    // Who it is shows when it is open.
    KnownTotals* const known = walk->known();
    auto tally = known ? std::make_unique<FolderTally>(FileIdentity(), known->now()) : nullptr;
    FolderReference root = make(*walk, "", std::move(tally));
    (void)walk.release();  // taken back in `end`
    return root;
}

FolderReference Folder::make(RunningWalk& walk, std::string_view name, std::unique_ptr<FolderTally> tally) {
    void* memory = ::operator new(sizeof(Folder) + name.size() + 1);
    auto* folder = new (memory) Folder(walk, std::move(tally));
    char* text = static_cast<char*>(memory) + sizeof(Folder);
    std::memcpy(text, name.data(), name.size());
    text[name.size()] = '\0';
    return FolderReference(folder);
}

void Folder::adopt(const std::vector<FolderReference>& children) {
    // Counted for all at once, for other threads may be at these counters. Relaxed: the caller's own
    // reference and use keep both above zero, and the queue's lock hands the children to other threads.
    references_.fetch_add(static_cast<std::uint32_t>(children.size()), std::memory_order_relaxed);
    state_.fetch_add(children.size() * oneWait, std::memory_order_relaxed);
    for (const FolderReference& child : children) {
        child->parent_ = FolderReference(this);
        child->wait_ = FolderWait(this);
    }
}

// A loop, not a recursion: a chain of thousands of folders may end here at once.
void Folder::release(Folder* folder) {
    // Release, so that all that this holder did comes before the end of the folder; acquire, so that the last
    // holder, who ends it, sees what all others did.
    while (folder && folder->references_.fetch_sub(1, std::memory_order_acq_rel) == 1) folder = end(folder);
}

// All below the folder is counted. Returns its parent, whose reference the caller has to give back.
Folder* Folder::end(Folder* folder) {
    Folder* parent = folder->parent_.folder_.release();
    KnownTotals* const known = folder->walk_.known();
    if (folder->tally_ && known) folder->tally_->end(parent ? parent->tally() : nullptr, *known);
    const std::unique_ptr<RunningWalk> ended(folder->isRoot() ? &folder->walk_ : nullptr);
    folder->~Folder();
    ::operator delete(folder);
    if (ended) ended->end();
    return parent;
}

FolderUse Folder::opened(FileDescriptor descriptor) {
    descriptor_ = std::move(descriptor);
    // Relaxed: whoever learns of the folder from here on does so through a queue's lock.
    state_.store(oneUse, std::memory_order_relaxed);
    wait_ = FolderWait();
    return FolderUse(this);
}

FolderUse Folder::tryUse() {
    // Acquire where it fails: `identity_` is read next, and was written before the mark of giving up was set.
    auto state = state_.load(std::memory_order_acquire);
    do {
        if (state == 0 || (state & givenUp)) return FolderUse();
        // Where it succeeds relaxed would do, since the descriptor was opened before this thread heard of the
        // folder; but compilers want no weaker order there than where it fails.
    } while (!state_.compare_exchange_weak(state, state + oneUse, std::memory_order_acquire));
    return FolderUse(this);
}

void Folder::subtract(std::uint64_t amount) {
    // Release, so that what was done with the descriptor comes before its closing; acquire, so that the last,
    // who closes it, comes after all others.
    if (state_.fetch_sub(amount, std::memory_order_acq_rel) == amount) close();
}

bool Folder::giveUp() {
    const auto identity = identify(descriptor_.number());
    if (!identity) return false;
    identity_ = *identity;
    auto state = state_.load(std::memory_order_relaxed);  // the exchange below looks again
    do {
        if ((state & usesMask) != oneUse) return false;
        // Release, so that who sees the mark sees `identity_`; acquire, because the descriptor is closed
        // after all that others did with it.
    } while (!state_.compare_exchange_weak(state, (state - oneUse) | givenUp, std::memory_order_acq_rel,
                                           std::memory_order_relaxed));
    close();
    return true;
}

void Folder::close() {
    descriptor_.close();
    share_.reset();
}

}  // namespace vantrel::walking
