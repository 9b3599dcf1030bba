#include "posix/StopSignals.h"

#include <atomic>

namespace vantrel {

namespace {

std::atomic<int> arrived{0};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler writes it");

void note(int number) {
    arrived = number;
}

}  // namespace

StopSignals::StopSignals() {
    arrived = 0;
    // Without SA_RESTART, so that a copy inside the kernel returns early with what it has done.
    struct sigaction noting {};
    noting.sa_handler = &note;
    sigemptyset(&noting.sa_mask);
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        ::sigaction(numbers[index], nullptr, &former_[index]);
        if (former_[index].sa_handler != SIG_IGN) ::sigaction(numbers[index], &noting, nullptr);
    }
}

StopSignals::~StopSignals() {
    for (std::size_t index = 0; index < numbers.size(); ++index)
        ::sigaction(numbers[index], &former_[index], nullptr);
    if (arrived != 0) ::raise(arrived);
}

bool StopSignals::hasArrived() const {
    return arrived != 0;
}

}  // namespace vantrel
