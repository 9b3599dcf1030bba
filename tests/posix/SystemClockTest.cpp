#include "posix/SystemClock.h"

#include <gtest/gtest.h>

namespace vantrel {

TEST(SystemClock, goesForwardAndNeverBack) {
    const SystemClock clock;
    const Seconds start = clock.now();
    Seconds latest = start;
    while (latest == start) {
        const Seconds reading = clock.now();
        ASSERT_GE(reading, latest);
        latest = reading;
    }
    EXPECT_GT(latest, start);
}

TEST(SystemClock, agreesWithTheSystemsUptime) {
    std::timespec uptime{};
    ASSERT_EQ(::clock_gettime(CLOCK_BOOTTIME, &uptime), 0);
    EXPECT_GE(SystemClock().now().count(), static_cast<double>(uptime.tv_sec));
}

}  // namespace vantrel
