#pragma once

#include <chrono>

namespace vantrel {

/// A moment of the user's calendar, as file systems keep it.
using FileTime = std::chrono::sys_time<std::chrono::nanoseconds>;

}  // namespace vantrel
