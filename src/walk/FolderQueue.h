#pragma once

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/DirectoryReader.h"
#include "walk/Folder.h"

namespace vantrel::walking {

/// A folder to be visited: to be opened while there is no use, to be read on where there is one. Only one
/// visit to a folder waits at a time. Destroyed, it gives the folder up.
struct Visit {
    Visit() = default;
    explicit Visit(FolderReference found) : folder(std::move(found)) {}
    Visit(FolderReference opened, FolderUse reading, std::unique_ptr<DirectoryStream> batches)
        : folder(std::move(opened)), use(std::move(reading)), stream(std::move(batches)) {}
    Visit(Visit&&) noexcept = default;
    Visit& operator=(Visit&& other) noexcept {
        // What it had is given back in the order of destruction.
        stream = std::move(other.stream);
        use = std::move(other.use);
        folder = std::move(other.folder);
        return *this;
    }
    ~Visit() = default;
    explicit operator bool() const { return static_cast<bool>(folder); }

    // Destroyed from the last to the first.
    FolderReference folder;
    FolderUse use;
    std::unique_ptr<DirectoryStream> stream;
};

/// The visits that wait at one worker. Its own end is last in, first out: depth first, so that few folders
/// wait and few descriptors stay open. Other workers take the oldest, which has the most below it.
class alignas(64) FolderQueue {
public:
    /// Leaves `found` empty.
    void push(std::vector<FolderReference>& found) {
        {
            std::lock_guard lock(lock_);
            for (FolderReference& folder : found) visits_.emplace_back(std::move(folder));
            size_.store(visits_.size());
        }
        found.clear();
    }

    void push(Visit visit) {
        std::lock_guard lock(lock_);
        visits_.push_back(std::move(visit));
        size_.store(visits_.size());
    }

    Visit takeNewest() {
        Visit visit;
        if (isEmpty()) return visit;
        std::lock_guard lock(lock_);
        if (visits_.empty()) return visit;
        visit = std::move(visits_.back());
        visits_.pop_back();
        noteTaking();
        return visit;
    }

    Visit takeOldest() {
        Visit visit;
        if (isEmpty()) return visit;
        std::lock_guard lock(lock_);
        if (visits_.empty()) return visit;
        visit = std::move(visits_.front());
        visits_.pop_front();
        noteTaking();
        return visit;
    }

    /// Sequentially consistent with the pushes: a worker that is about to sleep must not miss one.
    bool isEmpty() const { return size_.load() == 0; }

    /// Calls `look(visit)` for every waiting visit, none of which is taken meanwhile.
    template <class Look>
    void forEach(Look look) {
        std::lock_guard lock(lock_);
        for (const Visit& visit : visits_) look(visit);
    }

private:
    // Relaxed: who sees the old number looks in vain under the lock, and no sleeper misses a taking.
    void noteTaking() { size_.store(visits_.size(), std::memory_order_relaxed); }

    std::mutex lock_;
    std::deque<Visit> visits_;
    std::atomic<std::size_t> size_{0};
};

}  // namespace vantrel::walking
