#include "sizes/CommandLineQueue.h"

#include <poll.h>
#include <unistd.h>

#include <utility>

namespace vantrel::sizes {

void CommandLineQueue::post(Task task) {
    const bool isEnough = waiting_.with([&](Waiting& waiting) {
        waiting.tasks.push_back(std::move(task));
        if (waiting.wanted == 0 || waiting.tasks.size() < waiting.wanted) return false;
        waiting.wanted = 0;
        return true;
    });
    if (!isEnough) return;
    // A full pipe wakes as well as one byte more.
    [[maybe_unused]] const auto written = ::write(wakeUp_.writer.number(), "", 1);
}

bool CommandLineQueue::runAfter(std::size_t count, Seconds longest) {
    const bool mustWait = waiting_.with([&](Waiting& waiting) {
        const bool isEnough = waiting.tasks.size() >= count;
        waiting.wanted = isEnough ? 0 : count;
        return !isEnough;
    });
    if (mustWait && !wait(longest)) return false;
    const auto tasks = waiting_.with([](Waiting& waiting) {
        waiting.wanted = 0;
        return std::exchange(waiting.tasks, {});
    });
    for (const Task& task : tasks) task();
    return true;
}

// False when the program is asked to leave.
bool CommandLineQueue::wait(Seconds longest) const {
    pollfd sources[] = {{interruption_, POLLIN, 0}, {wakeUp_.reader.number(), POLLIN, 0}};
    ::poll(sources, 2, static_cast<int>(longest.count() * 1000));
    char bytes[64];
    while (::read(wakeUp_.reader.number(), bytes, sizeof bytes) > 0) continue;
    return (sources[0].revents & POLLIN) == 0;
}

}  // namespace vantrel::sizes
