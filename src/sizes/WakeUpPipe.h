#pragma once

#include "base/FileDescriptor.h"

namespace vantrel::sizes {

/// A pipe whose bytes mean only that something has happened. Neither end ever waits, and programs that are
/// started get none of them. Any thread and any signal handler may write.
struct WakeUpPipe {
    FileDescriptor reader;
    FileDescriptor writer;
};

/// Stops the program where there is none to be had.
WakeUpPipe openWakeUpPipe();

}  // namespace vantrel::sizes
