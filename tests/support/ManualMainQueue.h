#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/MainQueue.h"

namespace vantrel::test {

/// A main queue that runs when the test says so. Posting is safe from any thread.
class ManualMainQueue final : public MainQueue {
public:
    void post(Task task) override {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
        posted_.notify_all();
    }

    void postAfterEvent(Task task) override { afterEvent_.push_back(std::move(task)); }

    /// What the end of an event brings about, whatever else waits.
    void endEvent() {
        for (auto batch = std::exchange(afterEvent_, {}); !batch.empty();
             batch = std::exchange(afterEvent_, {})) {
            for (Task& task : batch) task();
        }
    }

    /// Runs what has been posted so far; what those tasks post waits for the next call.
    void runOnce() {
        endEvent();
        for (Task& task : take()) task();
    }

    /// Runs until nothing is left.
    void runAll() {
        endEvent();
        for (auto batch = take(); !batch.empty(); batch = take()) {
            for (Task& task : batch) task();
        }
    }

    /// Runs tasks as they come from other threads until `condition` holds; false after a generous minute.
    bool runUntil(const std::function<bool()>& condition) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
        while (!condition()) {
            {
                std::unique_lock lock(mutex_);
                if (!posted_.wait_until(lock, deadline, [&] { return !tasks_.empty(); })) return false;
            }
            runOnce();
        }
        return true;
    }

    std::size_t size() const {
        const std::lock_guard lock(mutex_);
        return tasks_.size();
    }

private:
    std::vector<Task> take() {
        const std::lock_guard lock(mutex_);
        return std::exchange(tasks_, {});
    }

    mutable std::mutex mutex_;
    std::condition_variable posted_;
    std::vector<Task> tasks_;
    std::vector<Task> afterEvent_;  // main thread
};

}  // namespace vantrel::test
