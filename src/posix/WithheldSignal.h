#pragma once

#include <csignal>

namespace vantrel {

/// While it exists, keeps a signal that a write may raise (SIGPIPE, SIGXFSZ) from this thread, so that the
/// write just fails, and discards one raised meanwhile. The process's own handling of the signal stays as it
/// is, because programs that it starts inherit that.
class WithheldSignal {
public:
    explicit WithheldSignal(int number);
    WithheldSignal(const WithheldSignal&) = delete;
    WithheldSignal& operator=(const WithheldSignal&) = delete;
    ~WithheldSignal();

private:
    bool isPending() const;

    int number_;
    sigset_t signals_{};
    sigset_t before_{};
    bool wasPending_ = false;
};

}  // namespace vantrel
