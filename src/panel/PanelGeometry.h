#pragma once

#include <array>
#include <cstdint>

#include "panel/OvPanelView.h"
#include "platform/Geometry.h"

/// Where a panel paints its parts, in points of its own coordinates. What a click hits is measured in bands
/// of 24 instead (see the navigation).
namespace vantrel::panel {

inline constexpr double headerTop = 26;
inline constexpr double headerRuleY = 50;
inline constexpr double rowsTop = 52;

/// The columns of a panel of that width.
struct Columns {
    static constexpr std::size_t count = 4;

    explicit Columns(double width)
        : end(width), start(width - 245), size(start + 6), date(size + 85), time(date + 95) {}

    double end;
    double start;  ///< the name column ends here
    double size;   ///< x of the separator before each column
    double date;
    double time;

    std::array<double, 3> separators() const { return {size, date, time}; }
    double left(std::size_t column) const { return std::array{0.0, size, date, time}[column]; }
    double right(std::size_t column) const { return std::array{size, date, time, end}[column]; }
};

/// The top of a row that stands `place` rows below the first one on show.
constexpr double rowTop(std::int64_t place) {
    return rowsTop + static_cast<double>(place) * OvPanelView::rowHeight;
}

}  // namespace vantrel::panel
