#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace vantrel {

/// A running repeating timer; destroying it stops it.
class Timer {
public:
    virtual ~Timer() = default;
};

/// Port: timers on the main thread.
class TimerFactory {
public:
    virtual ~TimerFactory() = default;

    /// Calls `tick` on the main thread every `interval` until the returned timer is destroyed, which a tick
    /// may do too.
    virtual std::unique_ptr<Timer> startRepeating(std::chrono::milliseconds interval,
                                                  std::function<void()> tick) = 0;
};

}  // namespace vantrel
