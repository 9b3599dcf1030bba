#pragma once

#include <ctime>

#include "platform/Clock.h"

namespace vantrel {

/// What one of the system's clocks shows, in seconds. Any thread.
inline Seconds readingOf(clockid_t clock) {
    std::timespec time{};
    ::clock_gettime(clock, &time);
    return Seconds(static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9);
}

}  // namespace vantrel
