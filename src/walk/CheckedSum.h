#pragma once

#include "base/Precondition.h"
#include "walk/Walk.h"

namespace vantrel {

/// Adds with a check: an overflow of bytes or items stops the program. Threads: one at a time for each sum.
inline void addChecked(WalkTotals& totals, WalkTotals more) {
    const bool overflow = __builtin_add_overflow(totals.bytes, more.bytes, &totals.bytes) ||
                          __builtin_add_overflow(totals.items, more.items, &totals.items);
    precondition(!overflow, "a folder's size does not fit into 64 bits");
}

}  // namespace vantrel
