#pragma once

namespace vantrel {

/// To be called at the start of the program, before the toolkit looks for the bus and waits for it on the
/// main thread: removes the bus from the environment when something listens there but does not answer within
/// `seconds`. Programs that are started later do not find it either.
void leaveSilentSessionBus(unsigned seconds);

}  // namespace vantrel
