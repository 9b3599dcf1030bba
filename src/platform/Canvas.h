#pragma once

#include <span>
#include <string_view>

#include "platform/Color.h"
#include "platform/Font.h"
#include "platform/Geometry.h"

namespace vantrel {

/// Port: what views draw on. Points, y downwards, relative to the area on top of the stack of
/// `pushArea`; nothing is painted outside that area. Later strokes cover earlier ones. Main thread only.
class Canvas {
public:
    virtual ~Canvas() = default;

    virtual void fill(const Rect& area, const Color& color) = 0;

    /// Outlines of all rectangles in one stroke, the line centred on their edges.
    virtual void stroke(std::span<const Rect> outlines, double lineWidth, const Color& color) = 0;

    /// A horizontal or vertical line, centred on the way from one point to the other.
    virtual void line(Point from, Point to, double lineWidth, const Color& color) = 0;

    /// One line of text, left-aligned, its top on the area's top edge, cut off at the area's right edge
    /// without an ellipsis. `utf8` is valid UTF-8 without control characters.
    virtual void text(std::string_view utf8, const Rect& area, const Font& font, const Color& color) = 0;

    /// Advance width and line height of `utf8`, in points.
    virtual Size textSize(std::string_view utf8, const Font& font) const = 0;

    /// Until the matching `popArea`, coordinates start at the area's corner and painting is clipped to it.
    virtual void pushArea(const Rect& area) = 0;
    virtual void popArea() = 0;
};

}  // namespace vantrel
