#include "walk/Folder.h"

#include <cstring>
#include <new>

namespace vantrel::walking {

Folder* Folder::make(RunningWalk& walk, Folder* parent, std::string_view name) {
    void* memory = ::operator new(sizeof(Folder) + name.size() + 1);
    auto* folder = new (memory) Folder(walk, parent);
    char* text = static_cast<char*>(memory) + sizeof(Folder);
    std::memcpy(text, name.data(), name.size());
    text[name.size()] = '\0';
    return folder;
}

void Folder::discard(Folder* folder) {
    folder->~Folder();
    ::operator delete(folder);
}

RunningWalk* Folder::release(Folder* folder) {
    // A loop, not a recursion: a chain of thousands of folders may end here at once.
    while (folder->references_.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        Folder* parent = folder->parent_;
        RunningWalk& walk = folder->walk_;
        discard(folder);
        if (!parent) return &walk;
        folder = parent;
    }
    return nullptr;
}

void Folder::expect(std::uint32_t count) {
    references_.fetch_add(count, std::memory_order_relaxed);
    state_.fetch_add(count * oneWait, std::memory_order_relaxed);
}

void Folder::opened(FileDescriptor descriptor, std::unique_ptr<DirectoryStream> stream) {
    descriptor_ = std::move(descriptor);
    stream_ = std::move(stream);
    wasOpened_ = true;
    state_.store(oneUse, std::memory_order_release);
}

bool Folder::tryUse() {
    auto state = state_.load(std::memory_order_acquire);
    do {
        if (state == 0 || (state & givenUp)) return false;
    } while (!state_.compare_exchange_weak(state, state + oneUse, std::memory_order_acq_rel,
                                           std::memory_order_acquire));
    return true;
}

void Folder::subtract(std::uint64_t amount) {
    if (state_.fetch_sub(amount, std::memory_order_acq_rel) == amount) close();
}

void Folder::keepWithin(DescriptorBudget& budget) {
    if (keptWithin_) return;
    keptWithin_ = &budget;
    budget.keep();
}

bool Folder::giveUp() {
    auto identity = identify(descriptor());
    if (!identity) return false;
    identity_ = *identity;
    auto state = state_.load(std::memory_order_acquire);
    do {
        if ((state & usesMask) != oneUse) return false;
    } while (!state_.compare_exchange_weak(state, (state - oneUse) | givenUp, std::memory_order_acq_rel,
                                           std::memory_order_acquire));
    close();
    return true;
}

void Folder::close() {
    descriptor_.close();
    if (keptWithin_) keptWithin_->drop();
}

}  // namespace vantrel::walking
