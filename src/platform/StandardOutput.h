#pragma once

#include <string_view>

namespace vantrel {

/// Port: the process's standard output. Main thread only; failures are ignored.
class StandardOutput {
public:
    virtual ~StandardOutput() = default;

    /// Writes the bytes and a newline, at once.
    virtual void writeLine(std::string_view line) = 0;
};

}  // namespace vantrel
