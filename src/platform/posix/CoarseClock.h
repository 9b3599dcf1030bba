#pragma once

#include <ctime>

#include "platform/Clock.h"

namespace vantrel {

/// For readings by the million, one after each entry of a walk: in steps of some milliseconds, at a fifth of
/// the price where the system has such a clock. Stands still while the machine sleeps.
class CoarseClock final : public Clock {
public:
    Seconds now() const override {
#ifdef CLOCK_MONOTONIC_COARSE
        constexpr clockid_t clock = CLOCK_MONOTONIC_COARSE;
#else
        constexpr clockid_t clock = CLOCK_MONOTONIC;
#endif
        std::timespec time{};
        ::clock_gettime(clock, &time);
        return Seconds(static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9);
    }
};

}  // namespace vantrel
