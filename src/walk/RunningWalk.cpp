#include "walk/RunningWalk.h"

namespace vantrel::walking {

RunningWalk::RunningWalk(WalkRequest request, const Clock& clock, std::stop_token poolStop)
    : request_(std::move(request)),
      clock_(clock),
      poolStop_(std::move(poolStop)),
      known_(request_.reach == WalkPool::Reach::wholeTree ? request_.known : nullptr) {}

void RunningWalk::setTrust(FolderTrust trust) {
    trust_ = trust;
    if (trust == FolderTrust::none) known_ = nullptr;
}

void RunningWalk::didTakeOver(CalendarTime oldest) {
    CalendarTime before = oldest_.load(std::memory_order_relaxed);
    while (oldest < before && !oldest_.compare_exchange_weak(before, oldest, std::memory_order_relaxed))
        continue;
}

void RunningWalk::begin() {
    lastReport_.store(clock_.now(), std::memory_order_relaxed);
    request_.observer->walkDidBegin();
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
    request_.observer->walkDidProgress(totals());
}

void RunningWalk::end() {
    if (poolStop_.stop_requested()) return;
    if (request_.stop.stop_requested())
        request_.observer->walkDidEnd(WalkOutcome::cancelled, totals());
    else if (rootFailed_)
        request_.observer->walkDidEnd(WalkOutcome::rootUnreadable, {});
    else
        finish();
}

void RunningWalk::finish() {
    const CalendarTime oldest = oldest_.load(std::memory_order_relaxed);
    if (oldest != CalendarTime::max()) request_.observer->walkDidTakeOver(known_->now() - oldest);
    request_.observer->walkDidEnd(WalkOutcome::finished, totals());
}

}  // namespace vantrel::walking
