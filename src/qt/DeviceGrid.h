#pragma once

#include <QRect>
#include <QRegion>
#include <QTransform>

#include "platform/Geometry.h"

namespace vantrel {

/// Places areas and lines on whole device pixels. Made from the transform between points and device pixels,
/// which may scale and move but not turn. Results are in device pixels. A value; any thread.
class DeviceGrid {
public:
    explicit DeviceGrid(const QTransform& toDevice) : toDevice_(toDevice), toPoints_(toDevice.inverted()) {}

    /// Every edge goes to the nearest pixel boundary, so neighbours neither overlap nor leave a seam.
    QRect area(const Rect& area) const;

    /// The four sides of `outline`. Right and bottom mirror left and top, so a frame looks even.
    QRegion outline(const Rect& outline, double lineWidth) const;

    /// A horizontal or vertical line; empty for any other.
    QRect line(Point from, Point to, double lineWidth) const;

    /// How many whole device pixels fit into `lineWidth` points, at least one.
    int strokeWidth(double lineWidth) const;

    /// The device pixel boundary nearest to `y`, both in points.
    double snappedY(double y) const;

    QRectF toPoints(const QRect& pixels) const { return toPoints_.mapRect(QRectF(pixels)); }

private:
    QTransform toDevice_;
    QTransform toPoints_;
};

}  // namespace vantrel
