#pragma once

#include <array>
#include <csignal>
#include <functional>

namespace vantrel {

/// Asked again and again by work that takes long; true when it shall end. Empty: nobody will ask for it.
using StopRequested = std::function<bool()>;

/// While it lives, the signals that end a program (SIGHUP, SIGINT, SIGQUIT, SIGTERM) are only noted, so that
/// what was begun can be taken back first. The end of its life lets the one that came do its work. Signals
/// that are ignored stay so. One at a time.
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
