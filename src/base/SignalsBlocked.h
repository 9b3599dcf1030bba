#pragma once

#include <pthread.h>
#include <signal.h>

namespace vantrel {

/// While one lives, its thread takes no signal: those are for the program's own threads. Threads that are
/// started meanwhile never take one, since they inherit the mask (pthread_sigmask(3)).
class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &former_);
    }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;
    ~SignalsBlocked() { ::pthread_sigmask(SIG_SETMASK, &former_, nullptr); }

private:
    sigset_t former_;
};

}  // namespace vantrel
