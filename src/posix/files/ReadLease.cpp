#include "posix/files/ReadLease.h"

#include <fcntl.h>

#include <cerrno>
#include <csignal>

namespace vantrel {

LeaseAnswer takeLease(int file) {
    // A waiting writer is announced by a signal: SIGURG, which does nothing by default, instead of SIGIO,
    // which would end this program.
    if (::fcntl(file, F_SETSIG, SIGURG) != 0) return LeaseAnswer::unknown;
    if (::fcntl(file, F_SETLEASE, F_RDLCK) == 0) return LeaseAnswer::held;
    return errno == EAGAIN ? LeaseAnswer::hasWriter : LeaseAnswer::unknown;
}

bool isLeaseHeld(int file) {
    return ::fcntl(file, F_GETLEASE, 0) == F_RDLCK;
}

void endLease(int file) {
    ::fcntl(file, F_SETLEASE, F_UNLCK);
}

}  // namespace vantrel
