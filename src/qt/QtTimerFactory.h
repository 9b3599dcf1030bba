#pragma once

#include "platform/Timer.h"

namespace vantrel {

/// Timers of the main thread's event loop. A tick may destroy its own timer.
class QtTimerFactory final : public TimerFactory {
public:
    std::unique_ptr<Timer> startRepeating(std::chrono::milliseconds interval,
                                          std::function<void()> tick) override;
};

}  // namespace vantrel
