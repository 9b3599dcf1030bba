#include "qt/QtCanvas.h"

#include <algorithm>
#include <cmath>

#include "base/Precondition.h"

namespace vantrel {

namespace {

constexpr int rowsAtOnce = 64;  // Qt shares out areas half as high again

}  // namespace

QColor qtColor(const Color& color) {
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue), static_cast<float>(color.alpha));
}

QtCanvas::QtCanvas(QPainter& painter, QtFaces& faces)
    : painter_(painter), faces_(faces), grid_(painter.deviceTransform()) {
    painter_.save();
    painter_.setRenderHint(QPainter::Antialiasing, false);
    painter_.setRenderHint(QPainter::TextAntialiasing, true);
    // A name that begins with a right-to-left letter still starts at its cell's left edge.
    painter_.setLayoutDirection(Qt::LeftToRight);
}

QtCanvas::~QtCanvas() {
    painter_.restore();
}

void QtCanvas::fill(const Rect& area, const Color& color) {
    fillPixels(grid_.area(area), qtColor(color));
}

void QtCanvas::stroke(std::span<const Rect> outlines, double lineWidth, const Color& color) {
    QRegion covered;
    for (const Rect& outline : outlines) covered += grid_.outline(outline, lineWidth);
    const QColor shade = qtColor(color);
    for (const QRect& pixels : covered) fillPixels(pixels, shade);
}

void QtCanvas::line(Point from, Point to, double lineWidth, const Color& color) {
    fillPixels(grid_.line(from, to, lineWidth), qtColor(color));
}

void QtCanvas::text(std::string_view utf8, const Rect& area, const Font& font, const Color& color) {
    if (utf8.empty() || area.width <= 0) return;
    const QtFace& face = faces_.face(font);
    const double baseline = grid_.snappedY(area.y + face.ascent());
    painter_.setPen(qtColor(color));
    if (face.width(utf8) <= area.width) {
        face.draw(painter_, area.x, baseline, utf8);
        return;
    }
    // Clipped at the sides only: letters may reach above and below their line.
    const double reach = 4 * face.height();
    painter_.save();
    painter_.setClipRect(grid_.toPoints(grid_.area({area.x, baseline - reach, area.width, 2 * reach})),
                         Qt::IntersectClip);
    face.draw(painter_, area.x, baseline, utf8);
    painter_.restore();
}

Size QtCanvas::textSize(std::string_view utf8, const Font& font) const {
    const QtFace& face = faces_.face(font);
    return {face.width(utf8), face.height()};
}

void QtCanvas::pushArea(const Rect& area) {
    painter_.save();
    ++depth_;
    painter_.setClipRect(grid_.toPoints(grid_.area(area)), Qt::IntersectClip);
    painter_.translate(area.x, area.y);
    grid_ = DeviceGrid(painter_.deviceTransform());
}

void QtCanvas::popArea() {
    precondition(depth_ > 0, "popArea without pushArea");
    painter_.restore();
    --depth_;
    grid_ = DeviceGrid(painter_.deviceTransform());
}

// In bands: Qt would share a taller rectangle among threads of its own, and wait for ever where the system
// refuses to start them.
void QtCanvas::fillPixels(const QRect& pixels, const QColor& color) {
    for (int top = pixels.top(); top <= pixels.bottom(); top += rowsAtOnce) {
        const QRect band(pixels.left(), top, pixels.width(), std::min(rowsAtOnce, pixels.bottom() + 1 - top));
        if (!band.isEmpty()) painter_.fillRect(grid_.toPoints(band), color);
    }
}

}  // namespace vantrel
