#pragma once

namespace vantrel {

// Values; any thread.

/// A place in points (device-independent pixels); y grows downwards.
struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

/// An extent in points.
struct Size {
    double width = 0;
    double height = 0;
    bool operator==(const Size&) const = default;
};

/// An area in points, half open: its right and bottom edges belong to the neighbour.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    constexpr double minX() const { return x; }
    constexpr double minY() const { return y; }
    constexpr double maxX() const { return x + width; }
    constexpr double maxY() const { return y + height; }
    constexpr double midX() const { return x + width / 2; }
    constexpr double midY() const { return y + height / 2; }
    constexpr bool contains(Point p) const { return p.x >= x && p.x < maxX() && p.y >= y && p.y < maxY(); }
    constexpr Rect inset(double by) const { return {x + by, y + by, width - 2 * by, height - 2 * by}; }
    constexpr Rect movedBy(double dx, double dy) const { return {x + dx, y + dy, width, height}; }
    bool operator==(const Rect&) const = default;
};

static_assert(Rect{0, 0, 10, 20}.contains({0, 0}));
static_assert(!Rect{0, 0, 10, 20}.contains({10, 5}), "a right edge belongs to the neighbour");
static_assert(!Rect{0, 0, 10, 20}.contains({5, 20}), "a bottom edge belongs to the neighbour");

}  // namespace vantrel
