#pragma once

#include <string>

#include "platform/StandardOutput.h"

namespace vantrel {

/// Standard output by write(2) that never waits: when a slow reader leaves no room, whole lines are dropped,
/// but the rest of a line already begun is kept and goes out first next time. Neither a reader that has gone
/// away nor a limit on the size of files ends the program. Main thread only.
class PosixStandardOutput final : public StandardOutput {
public:
    /// `descriptor` is borrowed.
    explicit PosixStandardOutput(int descriptor = 1) : descriptor_(descriptor) {}

    void writeLine(std::string_view line) override;

private:
    int descriptor_;
    std::string rest_;
};

}  // namespace vantrel
