#pragma once

#include <ctime>

#include "platform/Clock.h"

namespace vantrel {

/// The very clock that the kernel stamps files with: never ahead of a stamp that it gives later. Any thread.
class CoarseCalendar final : public Calendar {
public:
    CalendarTime now() const override {
        std::timespec time{};
#ifdef CLOCK_REALTIME_COARSE
        ::clock_gettime(CLOCK_REALTIME_COARSE, &time);
#else
        ::clock_gettime(CLOCK_REALTIME, &time);
#endif
        return CalendarTime(std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
    }
};

}  // namespace vantrel
