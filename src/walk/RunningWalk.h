#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string>

#include "platform/Clock.h"
#include "platform/DirectoryReader.h"
#include "walk/CheckedSum.h"
#include "walk/KnownTotals.h"
#include "walk/Walk.h"
#include "walk/WalkPool.h"

namespace vantrel::walking {

/// What was asked of a pool.
struct WalkRequest {
    std::string root;
    std::stop_token stop = {};
    std::unique_ptr<WalkObserver> observer = nullptr;
    WalkPool::Reach reach = WalkPool::Reach::wholeTree;
    KnownTotals* known = nullptr;
};

/// One submitted walk: its root, its totals, its observer. Any of the pool's threads may work for it; lives
/// until its root folder is released.
class RunningWalk {
public:
    RunningWalk(WalkRequest request, const Clock& clock, std::stop_token poolStop);

    const std::string& rootPath() const { return request_.root; }
    WalkPool::Reach reach() const { return request_.reach; }
    Volume& volume() { return volume_; }

    /// What it may take over, and where it leaves what it has found; nothing where it does neither.
    KnownTotals* known() const { return poolStop_.stop_requested() ? nullptr : known_; }

    /// From the moment that its root is open: how far its file system's word goes. Before other threads know.
    void setTrust(FolderTrust trust);
    FolderTrust trust() const { return trust_; }

    /// A known total has become part of this walk's.
    void didTakeOver(CalendarTime oldest);

    /// By whoever asked for it, or because the pool is being destroyed.
    bool isCancelled() const { return request_.stop.stop_requested() || poolStop_.stop_requested(); }

    /// Tells the observer. From here on the time between reports counts.
    void begin();

    /// The root could not be opened: the outcome of this walk.
    void failAtRoot() { rootFailed_ = true; }

    /// Moves what a thread has counted into the totals.
    void add(WalkTotals& counted);

    /// To be called after every entry: moves `counted` into the totals and reports them when it is time.
    void progress(WalkTotals& counted) {
        const Seconds now = clock_.now();
        if (now - lastReport_.load(std::memory_order_relaxed) > reportInterval) report(now, counted);
    }

    /// The last thing that happens to a walk. No other thread may be at work for it.
    void end();

private:
    static constexpr Seconds reportInterval{0.1};

    void report(Seconds now, WalkTotals& counted);
    void finish();
    WalkTotals totals();

    const WalkRequest request_;
    const Clock& clock_;
    const std::stop_token poolStop_;
    KnownTotals* known_;
    FolderTrust trust_ = FolderTrust::none;
    Volume volume_;
    bool rootFailed_ = false;

    // Relaxed: looked at when all folders have ended.
    std::atomic<CalendarTime> oldest_{CalendarTime::max()};

    // Relaxed: only says whether to try for `reporting_`, under which it is looked at again.
    std::atomic<Seconds> lastReport_{Seconds(0)};
    std::mutex reporting_;  // held during the observer's call, so that calls are serial; only ever tried
    alignas(64) std::mutex totalsLock_;
    WalkTotals totals_;  // under totalsLock_
};

}  // namespace vantrel::walking
