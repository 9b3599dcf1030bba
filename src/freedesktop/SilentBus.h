#pragma once

namespace vantrel {

/// For the start of the program, before the toolkit looks for the bus and waits for it on the main thread:
/// takes the bus out of the environment when it is there and does not say a word within `seconds`. Programs
/// that are started later do not find it either.
void leaveSilentSessionBus(unsigned seconds);

}  // namespace vantrel
