#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <memory>

#include "platform/Timer.h"

namespace vantrel::test {

/// What every timer factory keeps. `Subject` offers `TimerFactory& timers()` and `void turn()`, which lets
/// the running timers tick once or longer.
template <class Subject>
class TimerContract : public testing::Test {
protected:
    std::unique_ptr<Timer> start(std::function<void()> tick) {
        return subject_.timers().startRepeating(std::chrono::milliseconds(1), std::move(tick));
    }
    void turn() { subject_.turn(); }

private:
    Subject subject_;
};

TYPED_TEST_SUITE_P(TimerContract);

TYPED_TEST_P(TimerContract, aTimerTicksAgainAndAgainButNotAtOnce) {
    int ticks = 0;
    const auto timer = this->start([&] { ++ticks; });
    EXPECT_EQ(ticks, 0);
    for (int turns = 0; turns < 1000 && ticks < 3; ++turns) this->turn();
    EXPECT_GE(ticks, 3);
}

TYPED_TEST_P(TimerContract, aDestroyedTimerIsSilent) {
    int ticks = 0;
    int othersTicks = 0;
    auto timer = this->start([&] { ++ticks; });
    timer.reset();
    const auto other = this->start([&] { ++othersTicks; });
    for (int turns = 0; turns < 1000 && othersTicks < 3; ++turns) this->turn();
    EXPECT_EQ(ticks, 0);
}

TYPED_TEST_P(TimerContract, aTickMayDestroyItsOwnTimer) {
    int ticks = 0;
    int othersTicks = 0;
    std::unique_ptr<Timer> timer = this->start([&] {
        timer.reset();
        ++ticks;
    });
    const auto other = this->start([&] { ++othersTicks; });
    for (int turns = 0; turns < 1000 && othersTicks < 3; ++turns) this->turn();
    EXPECT_EQ(ticks, 1);
}

REGISTER_TYPED_TEST_SUITE_P(TimerContract, aTimerTicksAgainAndAgainButNotAtOnce, aDestroyedTimerIsSilent,
                            aTickMayDestroyItsOwnTimer);

}  // namespace vantrel::test
