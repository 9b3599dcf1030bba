#include "panel/PanelGeometry.h"

#include <algorithm>

namespace vantrel::panel {

namespace {

constexpr double listTop = topBarHeight + headerHeight;

double listHeight(double height) {
    return height - (listTop + bottomBarHeight);
}

}  // namespace

std::size_t Columns::hitBy(double x) const {
    const std::array zones{start, start + sizeWidth, start + sizeWidth + dateWidth};
    return static_cast<std::size_t>(std::ranges::count_if(zones, [x](double zone) { return x >= zone; }));
}

std::int64_t rowsThatFit(double height) {
    return std::max<std::int64_t>(1, static_cast<std::int64_t>(listHeight(height) / rowHeight));
}

bool isInHeader(double y) {
    return y >= topBarHeight && y < listTop;
}

std::optional<std::int64_t> placeHitBy(double y, double height) {
    const double depth = y - listTop;
    if (depth < 0 || depth >= listHeight(height)) return std::nullopt;
    return static_cast<std::int64_t>(depth / rowHeight);
}

}  // namespace vantrel::panel
