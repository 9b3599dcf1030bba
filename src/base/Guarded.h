#pragma once

#include <mutex>
#include <utility>

namespace vantrel {

/// Data that can only be reached with its lock held, so that any thread may use it. The lock is not
/// re-entrant: the function that `with` runs must neither call back nor take it again.
template <class T>
class Guarded {
public:
    template <class Function>
    decltype(auto) with(Function&& function) {
        const std::lock_guard lock(mutex_);
        return std::forward<Function>(function)(value_);
    }

    template <class Function>
    decltype(auto) with(Function&& function) const {
        const std::lock_guard lock(mutex_);
        return std::forward<Function>(function)(value_);
    }

private:
    mutable std::mutex mutex_;
    T value_;
};

}  // namespace vantrel
