#pragma once

namespace vantrel::sizes {

/// SIGINT, SIGTERM and SIGHUP as something to wait for. Main thread only.
class Interruption {
public:
    /// While it lives, signals wait for `leave`; its end is the end of the process too if one has come. At
    /// all other times they end the process by themselves, also one that hangs in a system call.
    class Patience {
    public:
        explicit Patience(const Interruption& interruption);
        Patience(const Patience&) = delete;
        Patience& operator=(const Patience&) = delete;
        ~Patience();

    private:
        const Interruption& interruption_;
    };

    /// Installs the handlers; once per process, for the rest of its life.
    static Interruption install();

    /// Readable once a signal has come that was waited for.
    int descriptor() const { return descriptor_; }

    /// Ends the process by that signal, so that the caller sees what happened.
    [[noreturn]] void leave() const;

private:
    explicit Interruption(int descriptor) : descriptor_(descriptor) {}

    int descriptor_;
};

}  // namespace vantrel::sizes
