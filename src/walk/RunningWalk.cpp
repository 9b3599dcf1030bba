#include "walk/RunningWalk.h"

namespace vantrel::walking {

RunningWalk::RunningWalk(std::string rootPath, std::shared_ptr<const CancellationFlag> cancellation,
                         std::unique_ptr<WalkObserver> observer, const Clock& clock,
                         const std::atomic<bool>& stopping)
    : rootPath_(std::move(rootPath)),
      cancellation_(std::move(cancellation)),
      observer_(std::move(observer)),
      clock_(clock),
      stopping_(stopping) {}

void RunningWalk::begin() {
    lastReport_.store(clock_.now(), std::memory_order_relaxed);
}

void RunningWalk::add(WalkTotals& counted) {
    if (counted.items == 0) return;
    std::lock_guard lock(totalsLock_);
    addChecked(totals_, std::exchange(counted, {}));
}

WalkTotals RunningWalk::totals() {
    std::lock_guard lock(totalsLock_);
    return totals_;
}

void RunningWalk::report(Seconds now, WalkTotals& counted) {
    std::unique_lock reporting(reporting_, std::try_to_lock);
    if (!reporting) return;  // another thread is at it
    if (!(now - lastReport_.load(std::memory_order_relaxed) > reportInterval) || isCancelled()) return;
    lastReport_.store(now, std::memory_order_relaxed);
    add(counted);
    observer_->walkDidProgress(totals());
}

void RunningWalk::end() {
    if (stopping_.load(std::memory_order_relaxed)) return;
    if (cancellation_->isCancelled())
        observer_->walkDidEnd(WalkOutcome::cancelled, totals());
    else if (rootFailed_)
        observer_->walkDidEnd(WalkOutcome::rootUnreadable, {});
    else
        observer_->walkDidEnd(WalkOutcome::finished, totals());
}

}  // namespace vantrel::walking
