#include "sizes/Interruption.h"

#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <initializer_list>

#include "sizes/WakeUpPipe.h"

namespace vantrel::sizes {

namespace {

// What a signal handler may touch: lock-free numbers, write(2), signal(2) and raise(3).
volatile sig_atomic_t isPatient = 0;
volatile sig_atomic_t receivedSignal = 0;
volatile sig_atomic_t signalWriter = -1;

extern "C" void noteSignal(int number) {
    if (isPatient == 0) {
        // Comes true when this handler returns, which blocks the signal until then.
        ::signal(number, SIG_DFL);
        ::raise(number);
        return;
    }
    const int error = errno;
    receivedSignal = number;
    [[maybe_unused]] const auto written = ::write(signalWriter, "", 1);
    errno = error;
}

}  // namespace

Interruption::Patience::Patience(const Interruption& interruption) : interruption_(interruption) {
    isPatient = 1;
}

Interruption::Patience::~Patience() {
    isPatient = 0;
    if (receivedSignal != 0) interruption_.leave();
}

Interruption Interruption::install() {
    WakeUpPipe pipe = openWakeUpPipe();
    // Never closed, since a signal may come at any time.
    signalWriter = pipe.writer.release();
    struct sigaction action {};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction former {};
        // What was ignored at the start (nohup, a job in the background) stays ignored.
        if (::sigaction(number, nullptr, &former) == 0 && former.sa_handler != SIG_IGN)
            ::sigaction(number, &action, nullptr);
    }
    return Interruption(pipe.reader.release());
}

void Interruption::leave() const {
    const int number = receivedSignal;
    ::signal(number, SIG_DFL);
    ::raise(number);
    std::_Exit(128 + number);
}

}  // namespace vantrel::sizes
