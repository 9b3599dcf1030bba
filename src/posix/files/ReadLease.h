#pragma once

#include <cstdint>

namespace vantrel {

/// Holds off whoever would open a file for writing. `hasWriter`: somebody has it open for writing already, or
/// mapped into memory; `unknown`: this file system or this user's rights do not allow to tell.
enum class LeaseAnswer : std::uint8_t { held, hasWriter, unknown };

/// Takes a lease on a file opened for reading. It ends when that is closed, or with `endLease`. Whoever opens
/// the file for writing or cuts it short meanwhile waits for that, and `isLeaseHeld` tells.
LeaseAnswer takeLease(int file);
bool isLeaseHeld(int file);
void endLease(int file);

}  // namespace vantrel
