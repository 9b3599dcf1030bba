#pragma once

#include <array>
#include <csignal>
#include <functional>

namespace vantrel {

/// Long work asks this again and again, on its own thread; true when it is to end. Empty when nobody will
/// ever want that.
using StopRequested = std::function<bool()>;

/// While it lives, the signals that end a program (SIGHUP, SIGINT, SIGQUIT, SIGTERM) are only noted, so that
/// what was begun can be taken back first. The end of its life lets the one that came do its work. Signals
/// that are ignored stay so. Signals belong to the whole process, so there is one of these at a time.
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
