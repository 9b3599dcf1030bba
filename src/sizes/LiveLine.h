#pragma once

#include "sizes/FolderSizes.h"

namespace vantrel::sizes {

/// One line on the terminal that is written over and over while counting goes on, and removed at the end. It
/// goes to standard error, so that standard output may be redirected; nothing is shown where that is no
/// terminal. Main thread only.
class LiveLine {
public:
    LiveLine();
    ~LiveLine() { erase(); }
    LiveLine(const LiveLine&) = delete;
    LiveLine& operator=(const LiveLine&) = delete;

    void show(const SizesQuestion& question);
    void erase();

private:
    const bool isTerminal_;
    bool isShown_ = false;
};

}  // namespace vantrel::sizes
