#pragma once

#include <functional>

namespace vantrel {

/// Port: the way from any thread to the main thread.
class MainQueue {
public:
    using Task = std::function<void()>;
    virtual ~MainQueue() = default;

    /// Runs `task` later on the main thread, never inside this call. Tasks posted by one thread, or by
    /// several that take turns, run in the order of posting. Any thread may call; never waits.
    virtual void post(Task task) = 0;
};

}  // namespace vantrel
