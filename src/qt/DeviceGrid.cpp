#include "qt/DeviceGrid.h"

#include <algorithm>
#include <cmath>

namespace vantrel {

namespace {

int nearest(double value) {
    return static_cast<int>(std::floor(value + 0.5));
}
int nearestFromAbove(double value) {
    return static_cast<int>(std::ceil(value - 0.5));
}

/// First and one-past-last device pixel of a stroke on a rectangle's left or top side.
struct Band {
    int begin = 0;
    int end = 0;
};

Band leadingBand(double centre, int width) {
    const int begin = nearest(centre - width / 2.0);
    return {begin, begin + width};
}

Band trailingBand(double centre, int width) {
    const int end = nearestFromAbove(centre + width / 2.0);
    return {end - width, end};
}

QRect between(int left, int top, int right, int bottom) {
    return {left, top, right - left, bottom - top};
}

}  // namespace

QRect DeviceGrid::area(const Rect& area) const {
    const QRectF mapped = toDevice_.mapRect(QRectF(area.x, area.y, area.width, area.height));
    return between(nearest(mapped.left()), nearest(mapped.top()), nearest(mapped.right()),
                   nearest(mapped.bottom()));
}

QRegion DeviceGrid::outline(const Rect& outline, double lineWidth) const {
    if (outline.width < 0 || outline.height < 0) return {};
    const QRectF mapped = toDevice_.mapRect(QRectF(outline.x, outline.y, outline.width, outline.height));
    const int width = strokeWidth(lineWidth);
    const Band left = leadingBand(mapped.left(), width);
    const Band top = leadingBand(mapped.top(), width);
    const Band right = trailingBand(mapped.right(), width);
    const Band bottom = trailingBand(mapped.bottom(), width);
    QRegion whole(between(left.begin, top.begin, right.end, bottom.end));
    if (left.end >= right.begin || top.end >= bottom.begin) return whole;
    return whole.subtracted(between(left.end, top.end, right.begin, bottom.begin));
}

QRect DeviceGrid::line(Point from, Point to, double lineWidth) const {
    const QPointF first = toDevice_.map(QPointF(from.x, from.y));
    const QPointF last = toDevice_.map(QPointF(to.x, to.y));
    const int width = strokeWidth(lineWidth);
    if (from.y == to.y) {
        const auto [left, right] = std::minmax({first.x(), last.x()});
        const Band band = leadingBand(first.y(), width);
        return between(nearest(left), band.begin, nearest(right), band.end);
    }
    if (from.x == to.x) {
        const auto [top, bottom] = std::minmax({first.y(), last.y()});
        const Band band = leadingBand(first.x(), width);
        return between(band.begin, nearest(top), band.end, nearest(bottom));
    }
    return {};
}

int DeviceGrid::strokeWidth(double lineWidth) const {
    return std::max(1, static_cast<int>(std::floor(lineWidth * toDevice_.m11())));
}

double DeviceGrid::snappedY(double y) const {
    const double scale = toDevice_.m22();
    return (nearest(y * scale + toDevice_.dy()) - toDevice_.dy()) / scale;
}

}  // namespace vantrel
