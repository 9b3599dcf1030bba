#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/Timer.h"

namespace vantrel::test {

/// Timers that tick when the test says so.
class ManualTimers final : public TimerFactory {
public:
    struct Entry {
        std::chrono::milliseconds interval;
        std::function<void()> tick;
    };

    std::unique_ptr<Timer> startRepeating(std::chrono::milliseconds interval,
                                          std::function<void()> tick) override {
        running.push_back(std::make_shared<Entry>(Entry{interval, std::move(tick)}));
        return std::make_unique<RunningTimer>(*this, running.back());
    }

    void tickAll() {
        for (const auto& entry : std::vector(running)) entry->tick();
    }

    std::vector<std::shared_ptr<Entry>> running;

private:
    class RunningTimer final : public Timer {
    public:
        RunningTimer(ManualTimers& owner, std::shared_ptr<Entry> entry)
            : owner_(owner), entry_(std::move(entry)) {}
        ~RunningTimer() override { std::erase(owner_.running, entry_); }

    private:
        ManualTimers& owner_;
        std::shared_ptr<Entry> entry_;
    };
};

}  // namespace vantrel::test
