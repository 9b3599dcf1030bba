#pragma once

namespace vantrel {

/// A colour in the sRGB space, its components fractions from 0 to 1. They are kept as they were written;
/// rounding to the surface's pixel format is the canvas's business. A value; any thread.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    constexpr Color withAlpha(double value) const { return {red, green, blue, value}; }
    bool operator==(const Color&) const = default;
};

}  // namespace vantrel
