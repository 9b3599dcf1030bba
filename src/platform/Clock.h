#pragma once

#include <chrono>

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

}  // namespace vantrel
