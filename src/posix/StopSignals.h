#pragma once

#include <array>
#include <csignal>
#include <functional>

namespace vantrel {

/// Long work calls this again and again, on its own thread; true tells it to stop. Empty when nobody ever
/// will.
using StopRequested = std::function<bool()>;

/// While one of these exists, the signals that end a program (SIGHUP, SIGINT, SIGQUIT, SIGTERM) are only
/// noted, so that unfinished work can be undone first; the destructor raises the one that came last. Ignored
/// signals stay ignored. Signals belong to the whole process, so there must be only one of these at a time.
class StopSignals {
public:
    StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;
    ~StopSignals();

    bool hasArrived() const;

private:
    static constexpr std::array numbers{SIGHUP, SIGINT, SIGQUIT, SIGTERM};
    std::array<struct sigaction, numbers.size()> former_{};
};

}  // namespace vantrel
