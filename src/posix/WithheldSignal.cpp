#include "posix/WithheldSignal.h"

namespace vantrel {

WithheldSignal::WithheldSignal(int number) : number_(number) {
    sigemptyset(&signals_);
    sigaddset(&signals_, number);
    wasPending_ = isPending();
    pthread_sigmask(SIG_BLOCK, &signals_, &before_);
}

WithheldSignal::~WithheldSignal() {
    int taken = 0;
    if (!wasPending_ && isPending()) sigwait(&signals_, &taken);
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

bool WithheldSignal::isPending() const {
    sigset_t pending;
    sigpending(&pending);
    return sigismember(&pending, number_) == 1;
}

}  // namespace vantrel
