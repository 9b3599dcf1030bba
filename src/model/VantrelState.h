#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace vantrel {

namespace state {

/// A walk is under way; the figures are what it has found so far.
struct Calculating {
    std::int64_t currentBytes = 0;
    std::int64_t itemsCount = 0;
    bool operator==(const Calculating&) const = default;
};

/// The walk has ended, or its result was still known.
struct Calculated {
    std::int64_t totalBytes = 0;
    std::int64_t itemsCount = 0;
    bool operator==(const Calculated&) const = default;
};

struct Error {
    std::string message;
    bool operator==(const Error&) const = default;
};

struct NotCalculated {
    bool operator==(const NotCalculated&) const = default;
};

/// The row ".." (and every file): nothing is ever calculated for it.
struct Parent {
    bool operator==(const Parent&) const = default;
};

}  // namespace state

/// What is known of a folder's recursive size. A value; any thread. Two states are equal when their cases and
/// figures are.
using VantrelState =
    std::variant<state::Calculating, state::Calculated, state::Error, state::NotCalculated, state::Parent>;

inline bool isCalculated(const VantrelState& state) {
    return std::holds_alternative<state::Calculated>(state);
}

inline bool isCalculating(const VantrelState& state) {
    return std::holds_alternative<state::Calculating>(state);
}

/// The running or the final total; 0 in every other state.
inline std::int64_t bytes(const VantrelState& state) {
    if (const auto* running = std::get_if<state::Calculating>(&state)) return running->currentBytes;
    if (const auto* final = std::get_if<state::Calculated>(&state)) return final->totalBytes;
    return 0;
}

}  // namespace vantrel
