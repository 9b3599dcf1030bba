#pragma once

#include <vector>

#include "base/Guarded.h"
#include "platform/Clock.h"
#include "platform/MainQueue.h"
#include "sizes/WakeUpPipe.h"

namespace vantrel::sizes {

/// The main thread of a command line program: runs what other threads post, and hears of signals. It is woken
/// only when there is enough to do, since every wake-up takes a processor from the threads that walk.
class CommandLineQueue final : public MainQueue {
public:
    /// `interruption` becomes readable when the program is asked to leave; borrowed.
    explicit CommandLineQueue(int interruption) : interruption_(interruption) {}

    void post(Task task) override;

    /// Waits until `count` tasks are there, or so long, then runs what is there. False when interrupted.
    bool runAfter(std::size_t count, Seconds longest);

private:
    struct Waiting {
        std::vector<Task> tasks;
        std::size_t wanted = 0;  // so many wake the main thread; 0 when it is awake
    };

    bool wait(Seconds longest) const;

    const int interruption_;
    const WakeUpPipe wakeUp_ = openWakeUpPipe();
    Guarded<Waiting> waiting_;
};

}  // namespace vantrel::sizes
