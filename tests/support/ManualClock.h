#pragma once

#include <atomic>

#include "platform/Clock.h"

namespace vantrel::test {

/// A clock that the test turns by hand. Any thread may read it.
class ManualClock final : public Clock {
public:
    Seconds now() const override { return Seconds(seconds_.load()); }
    void advance(double seconds) { seconds_.store(seconds_.load() + seconds); }

private:
    std::atomic<double> seconds_{0};
};

}  // namespace vantrel::test
