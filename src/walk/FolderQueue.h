#pragma once

#include <atomic>
#include <deque>
#include <mutex>
#include <vector>

#include "walk/Folder.h"

namespace vantrel::walking {

/// The folders that wait at one worker. Its own end is last in, first out: depth first, so that few folders
/// wait and few descriptors stay open. Other workers take the oldest, which has the most below it.
class alignas(64) FolderQueue {
public:
    void push(const std::vector<Folder*>& folders) {
        std::lock_guard lock(lock_);
        folders_.insert(folders_.end(), folders.begin(), folders.end());
        size_.store(folders_.size());
    }

    void push(Folder* folder) {
        std::lock_guard lock(lock_);
        folders_.push_back(folder);
        size_.store(folders_.size());
    }

    Folder* takeNewest() {
        if (isEmpty()) return nullptr;
        std::lock_guard lock(lock_);
        if (folders_.empty()) return nullptr;
        Folder* folder = folders_.back();
        folders_.pop_back();
        size_.store(folders_.size(), std::memory_order_relaxed);
        return folder;
    }

    Folder* takeOldest() {
        if (isEmpty()) return nullptr;
        std::lock_guard lock(lock_);
        if (folders_.empty()) return nullptr;
        Folder* folder = folders_.front();
        folders_.pop_front();
        size_.store(folders_.size(), std::memory_order_relaxed);
        return folder;
    }

    /// Sequentially consistent with the pushes: a worker that is about to sleep must not miss one.
    bool isEmpty() const { return size_.load() == 0; }

    /// Calls `visit(folder)` for every waiting folder, none of which is taken meanwhile.
    template <class Visit>
    void forEach(Visit visit) {
        std::lock_guard lock(lock_);
        for (Folder* folder : folders_) visit(*folder);
    }

private:
    std::mutex lock_;
    std::deque<Folder*> folders_;
    std::atomic<std::size_t> size_{0};
};

}  // namespace vantrel::walking
