#pragma once

#include "posix/ClockReading.h"

namespace vantrel {

/// Seconds since the machine started, including the time it slept, so that what was remembered in the evening
/// is old in the morning. Any thread.
class SystemClock final : public Clock {
public:
    Seconds now() const override {
#ifdef CLOCK_BOOTTIME
        return readingOf(CLOCK_BOOTTIME);
#else
        return readingOf(CLOCK_MONOTONIC);
#endif
    }
};

}  // namespace vantrel
