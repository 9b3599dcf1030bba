#pragma once

#include <cstdint>

namespace vantrel {

/// What came of asking for a lease, which holds off whoever would open a file for writing. `hasWriter`:
/// somebody has it open for writing already, or mapped into memory; `unknown`: this file system, or what this
/// user may do, does not let us tell.
enum class LeaseAnswer : std::uint8_t { held, hasWriter, unknown };

/// Takes a lease on a file opened for reading. It ends when that is closed, or with `endLease`. Whoever opens
/// the file for writing or cuts it short meanwhile waits for that, and `isLeaseHeld` tells. The file is
/// borrowed. Any thread.
LeaseAnswer takeLease(int file);
bool isLeaseHeld(int file);
void endLease(int file);

}  // namespace vantrel
