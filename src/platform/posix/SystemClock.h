#pragma once

#include <ctime>

#include "platform/Clock.h"

namespace vantrel {

/// Seconds since the machine started, the time that it slept included, so that what was remembered before a
/// night is old in the morning.
class SystemClock final : public Clock {
public:
    Seconds now() const override {
#ifdef CLOCK_BOOTTIME
        constexpr clockid_t clock = CLOCK_BOOTTIME;
#else
        constexpr clockid_t clock = CLOCK_MONOTONIC;
#endif
        std::timespec time{};
        ::clock_gettime(clock, &time);
        return Seconds(static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9);
    }
};

}  // namespace vantrel
