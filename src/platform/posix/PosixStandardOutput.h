#pragma once

#include "platform/StandardOutput.h"

namespace vantrel {

/// Standard output by write(2): nothing is buffered, and a reader that has gone away does not end the
/// program.
class PosixStandardOutput final : public StandardOutput {
public:
    /// `descriptor` is borrowed.
    explicit PosixStandardOutput(int descriptor = 1) : descriptor_(descriptor) {}

    void writeLine(std::string_view line) override;

private:
    int descriptor_;
};

}  // namespace vantrel
