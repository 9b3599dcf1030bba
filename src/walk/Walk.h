#pragma once

#include <cstdint>
#include <memory>
#include <stop_token>
#include <string>

#include "platform/Clock.h"

namespace vantrel {

/// What a walk has found below its root: entries that are neither folder nor symbolic link.
struct WalkTotals {
    std::int64_t bytes = 0;  ///< allocated on disk
    std::int64_t items = 0;
    bool operator==(const WalkTotals&) const = default;
};

enum class WalkOutcome : std::uint8_t {
    finished,
    rootUnreadable,  ///< the root could not be opened as a folder; the totals are zero
    cancelled,
};

/// Who hears of a walk. The calls come from the threads that walk, one at a time and in order; totals never
/// fall from one call to the next. The walk owns its observer and destroys it after `walkDidEnd`, or without
/// that call when the queue is destroyed first.
class WalkObserver {
public:
    virtual ~WalkObserver() = default;

    /// The first call, before anything is read. A walk that is cancelled while it waits does not begin.
    virtual void walkDidBegin() {}

    /// At most once per 0.1 seconds, only while entries keep coming, never once the walk is seen cancelled.
    virtual void walkDidProgress(WalkTotals soFar) = 0;

    /// Just before the end, where totals were taken over that earlier walks had found: the oldest was so old.
    virtual void walkDidTakeOver(Seconds age) { (void)age; }

    /// The last call, also for a walk that did not begin. For a cancelled walk it may come late (a thread may
    /// be stuck in a system call).
    virtual void walkDidEnd(WalkOutcome outcome, WalkTotals totals) = 0;
};

/// Runs walks in the background, several at once, begun in the order of submission.
class WalkQueue {
public:
    virtual ~WalkQueue() = default;

    /// Begins the walk of the folder at `root` (raw bytes, any length) as soon as a thread is free; a
    /// stop cancels it. Any thread may call; never waits for a walk.
    virtual void submit(std::string root, std::stop_token stop, std::unique_ptr<WalkObserver> observer) = 0;

    /// To be called now and then while walks are awaited, by one thread. Where no thread could be started for
    /// them it tries again, and where that fails too the calling thread works for them, for about as long as
    /// it is lent (not at all for zero), and may hang where they hang. Answers whether it was needed.
    virtual bool catchUp(Seconds lent) {
        (void)lent;
        return false;
    }
};

}  // namespace vantrel
