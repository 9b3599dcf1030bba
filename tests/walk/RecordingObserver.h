#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "walk/Walk.h"

namespace vantrel::test {

/// What an observer was told. Any thread.
class WalkRecord {
public:
    struct End {
        WalkOutcome outcome;
        WalkTotals totals;
        bool operator==(const End&) const = default;
    };

    /// Waits for the end of the walk; nothing when it has not ended within a minute.
    std::optional<End> waitForEnd() {
        return waitUntil([this] { return ends_ > 0; }) ? end() : std::nullopt;
    }

    /// Waits until the observer has been destroyed, which follows the end.
    bool waitForDestruction() {
        return waitUntil([this] { return destroyed_; });
    }

    /// Of the oldest total that was taken over.
    std::optional<Seconds> age() const {
        std::lock_guard lock(lock_);
        return age_;
    }

    int beginnings() const {
        std::lock_guard lock(lock_);
        return beginnings_;
    }

    bool waitForProgress() {
        return waitUntil([this] { return !progress_.empty(); });
    }

    std::optional<End> end() const {
        std::lock_guard lock(lock_);
        return end_;
    }

    int ends() const {
        std::lock_guard lock(lock_);
        return ends_;
    }

    bool isDestroyed() const {
        std::lock_guard lock(lock_);
        return destroyed_;
    }

    std::vector<WalkTotals> progress() const {
        std::lock_guard lock(lock_);
        return progress_;
    }

    /// Whether two calls overlapped, one came after the end, or the beginning was not the first and only one.
    bool sawDisorder() const {
        std::lock_guard lock(lock_);
        return disorder_;
    }

private:
    friend class RecordingObserver;

    template <class Condition>
    bool waitUntil(Condition condition) {
        std::unique_lock lock(lock_);
        return changed_.wait_for(lock, std::chrono::minutes(1), condition);
    }

    mutable std::mutex lock_;
    std::condition_variable changed_;
    std::vector<WalkTotals> progress_;
    std::optional<End> end_;
    std::optional<Seconds> age_;
    int beginnings_ = 0;
    int ends_ = 0;
    int callsUnderWay_ = 0;
    bool destroyed_ = false;
    bool disorder_ = false;
};

/// Keeps every call in a record, and calls a hook of the test during each progress report.
class RecordingObserver final : public WalkObserver {
public:
    using Hook = std::function<void(WalkTotals)>;

    explicit RecordingObserver(std::shared_ptr<WalkRecord> record, Hook onProgress = {})
        : record_(std::move(record)), onProgress_(std::move(onProgress)) {}

    ~RecordingObserver() override {
        std::lock_guard lock(record_->lock_);
        record_->destroyed_ = true;
        record_->changed_.notify_all();
    }

    void walkDidBegin() override {
        enter();
        leave([&] {
            if (++record_->beginnings_ > 1 || !record_->progress_.empty()) record_->disorder_ = true;
        });
    }

    void walkDidProgress(WalkTotals soFar) override {
        enter();
        if (onProgress_) onProgress_(soFar);
        leave([&] { record_->progress_.push_back(soFar); });
    }

    void walkDidTakeOver(Seconds age) override {
        enter();
        leave([&] { record_->age_ = age; });
    }

    void walkDidEnd(WalkOutcome outcome, WalkTotals totals) override {
        enter();
        leave([&] {
            record_->end_ = WalkRecord::End{outcome, totals};
            ++record_->ends_;
        });
    }

private:
    void enter() {
        std::lock_guard lock(record_->lock_);
        if (record_->callsUnderWay_++ > 0 || record_->ends_ > 0) record_->disorder_ = true;
    }

    template <class Note>
    void leave(Note note) {
        std::lock_guard lock(record_->lock_);
        note();
        --record_->callsUnderWay_;
        record_->changed_.notify_all();
    }

    std::shared_ptr<WalkRecord> record_;
    Hook onProgress_;
};

}  // namespace vantrel::test
