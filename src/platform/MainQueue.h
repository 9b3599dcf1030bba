#pragma once

#include <functional>
#include <utility>

namespace vantrel {

/// Port: the way from any thread to the main thread.
class MainQueue {
public:
    using Task = std::function<void()>;
    virtual ~MainQueue() = default;

    /// Runs `task` later on the main thread, never inside this call. Tasks posted by one thread, or by
    /// several that take turns, run in the order of posting. Any thread may call; never waits.
    virtual void post(Task task) = 0;

    /// Runs `task` as soon as the event that is being handled is over: before the next one is handled, and
    /// before every task that waits. A queue beside which no events are handled may just post it. Main
    /// thread.
    virtual void postAfterEvent(Task task) { post(std::move(task)); }
};

}  // namespace vantrel
