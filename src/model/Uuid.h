#pragma once

#include <array>
#include <cstdint>

namespace vantrel {

/// A random identifier (RFC 9562, version 4).
struct Uuid {
    std::array<std::uint64_t, 2> words{};

    /// A fresh one. Any thread; no system call after a thread's first.
    static Uuid random();

    bool operator==(const Uuid&) const = default;
};

}  // namespace vantrel
