#pragma once

#include <sys/resource.h>

namespace vantrel::bench {

/// Milliseconds that all threads of this process have worked, in the system too (getrusage(2)). Any thread.
inline double processorTime() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto milliseconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

}  // namespace vantrel::bench
