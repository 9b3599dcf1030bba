#pragma once

namespace vantrel::sizes {

/// SIGINT, SIGTERM and SIGHUP as something to wait for, for the rest of the process's life. Main thread only.
class Interruption {
public:
    /// Installs the handlers; once per process.
    static Interruption install();

    /// Readable once a signal has come.
    int descriptor() const { return descriptor_; }

    /// Ends the process by that signal, so that the caller sees what happened.
    [[noreturn]] void leave() const;

private:
    explicit Interruption(int descriptor) : descriptor_(descriptor) {}

    int descriptor_;
};

}  // namespace vantrel::sizes
