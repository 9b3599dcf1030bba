#pragma once

#include <cstdio>
#include <cstdlib>

namespace vantrel {

/// Stops the program on a programming error, in release builds too. Any thread.
[[noreturn]] inline void fatalError(const char* message) {
    std::fprintf(stderr, "vantrel: %s\n", message);
    std::abort();
}

inline void precondition(bool holds, const char* message) {
    if (!holds) [[unlikely]]
        fatalError(message);
}

}  // namespace vantrel
