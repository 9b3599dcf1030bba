#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vantrel::fuzz {

/// Thrown where a rule does not hold: libFuzzer takes it for a crash, a test for a failure.
class Violation : public std::logic_error {
    using std::logic_error::logic_error;
};

inline void require(bool holds, const char* rule) {
    if (!holds) [[unlikely]]
        throw Violation(rule);
}

/// One part of the program together with its rules. `run` may be given any bytes, and throws a Violation
/// where they make the part break a rule.
struct Target {
    std::string_view name;
    void (*run)(std::span<const std::uint8_t>);
    int inputs;  ///< how many pseudo-random ones the ordinary tests try, by what one costs
};

/// Those of the core, and those that need Qt or GLib.
std::span<const Target> coreTargets();
std::span<const Target> desktopTargets();

}  // namespace vantrel::fuzz
