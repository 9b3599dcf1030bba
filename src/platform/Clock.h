#pragma once

#include <chrono>

#include "base/FileTime.h"

namespace vantrel {

/// Seconds since some fixed moment; only differences mean anything.
using Seconds = std::chrono::duration<double>;

/// Port: a clock that only goes forward. Any thread may read it, often: a reading costs a few nanoseconds,
/// so its steps may be as coarse as 10 ms.
class Clock {
public:
    virtual ~Clock() = default;
    virtual Seconds now() const = 0;
};

/// Port: the clock by which this machine's file systems stamp what they keep. It may be set and jump. Any
/// thread may read it, as often as a Clock.
class Calendar {
public:
    virtual ~Calendar() = default;
    virtual CalendarTime now() const = 0;
};

}  // namespace vantrel
