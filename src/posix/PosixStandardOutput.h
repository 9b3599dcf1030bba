#pragma once

#include <string>

#include "platform/StandardOutput.h"

namespace vantrel {

/// Standard output by write(2). Nothing waits: what a reader who does not read leaves no room for is dropped,
/// line by line; of a line that was begun the rest is kept and comes first next time. A reader that has gone
/// away does not end the program, nor does a limit for the size of files. Main thread only.
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
