#pragma once

namespace vantrel {

/// Turns the fine movements of wheels and touchpads into whole notches. One for each widget, on the main
/// thread.
class WheelSteps {
public:
    /// Takes a movement in eighths of a degree, positive away from the user; returns the number of notches
    /// that it completes, negative towards the user. A change of direction starts afresh.
    int add(int eighthsOfDegree) {
        if ((eighthsOfDegree > 0) != (rest_ > 0)) rest_ = 0;
        rest_ += eighthsOfDegree;
        const int steps = rest_ / eighthsPerNotch;
        rest_ %= eighthsPerNotch;
        return steps;
    }

private:
    static constexpr int eighthsPerNotch = 120;  // 15 degrees, the notch of nearly all mice

    int rest_ = 0;
};

}  // namespace vantrel
