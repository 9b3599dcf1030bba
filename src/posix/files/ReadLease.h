#pragma once

#include <cstdint>

namespace vantrel {

/// The answer to a request for a lease, which holds off whoever would open a file for writing. `hasWriter`:
/// somebody already has it open for writing, or mapped into memory; `unknown`: the file system, or what this
/// user may do, does not let us tell.
enum class LeaseAnswer : std::uint8_t { held, hasWriter, unknown };

/// Takes a lease on a file opened for reading. It ends when that is closed, or with `endLease`. Meanwhile
/// whoever opens the file for writing or truncates it has to wait, and `isLeaseHeld` becomes false. The file
/// is borrowed. Any thread.
LeaseAnswer takeLease(int file);
bool isLeaseHeld(int file);
void endLease(int file);

}  // namespace vantrel
