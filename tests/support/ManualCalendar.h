#pragma once

#include <atomic>

#include "platform/Clock.h"

namespace vantrel::test {

/// A calendar that goes with a clock of the test's, so many seconds ahead of it. Any thread may read it.
class ManualCalendar final : public Calendar {
public:
    explicit ManualCalendar(const Clock& clock, Seconds ahead = Seconds(1'000'000))
        : clock_(clock), ahead_(ahead) {}

    CalendarTime now() const override {
        return CalendarTime(std::chrono::duration_cast<CalendarTime::duration>(clock_.now() + ahead_.load()));
    }

    /// As somebody does who sets the time.
    void jump(Seconds by) { ahead_.store(ahead_.load() + by); }

private:
    const Clock& clock_;
    std::atomic<Seconds> ahead_;
};

/// By how much a calendar is ahead of `clock` by which everything on the disk was made an hour ago. No change
/// that a test makes is seen in a folder's own time stamp then.
inline Seconds anHourAheadOf(const Clock& clock) {
    return std::chrono::system_clock::now().time_since_epoch() + std::chrono::hours(1) - clock.now();
}

}  // namespace vantrel::test
