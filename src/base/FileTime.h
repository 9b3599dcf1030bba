#pragma once

#include <chrono>

namespace vantrel {

/// So that <chrono> can count in them; ISO C++ has no name for them.
__extension__ using Wide = __int128;

/// A moment of the user's calendar, as file systems keep it: to the nanosecond, in seconds of 64 bits. In
/// nanoseconds of 64 bits there would be no year after 2262. A plain value.
using FileTime = std::chrono::sys_time<std::chrono::duration<Wide, std::nano>>;

/// A moment of the same calendar in 64 bits, for what happens while the program runs. A plain value.
using CalendarTime = std::chrono::sys_time<std::chrono::nanoseconds>;

}  // namespace vantrel
