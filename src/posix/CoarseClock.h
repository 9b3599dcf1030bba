#pragma once

#include "posix/ClockReading.h"

namespace vantrel {

/// For readings by the million, one after each entry of a walk: in steps of some milliseconds, at a fifth of
/// the price where the system has such a clock. Stands still while the machine sleeps. Any thread.
class CoarseClock final : public Clock {
public:
    Seconds now() const override {
#ifdef CLOCK_MONOTONIC_COARSE
        return readingOf(CLOCK_MONOTONIC_COARSE);
#else
        return readingOf(CLOCK_MONOTONIC);
#endif
    }
};

}  // namespace vantrel
