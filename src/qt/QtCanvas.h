#pragma once

#include <QColor>
#include <QPainter>

#include "platform/Canvas.h"
#include "qt/DeviceGrid.h"
#include "qt/QtFace.h"

namespace vantrel {

/// `color` rounded to what a surface of eight or more bits per channel can show.
QColor qtColor(const Color& color);

/// Paints on a QPainter of any device pixel ratio. Areas and lines cover whole device pixels, text stands on
/// a whole device pixel. The painter and the faces are borrowed; the painter comes back as it was. For the
/// thread that paints.
class QtCanvas final : public Canvas {
public:
    QtCanvas(QPainter& painter, QtFaces& faces);
    QtCanvas(const QtCanvas&) = delete;
    QtCanvas& operator=(const QtCanvas&) = delete;
    ~QtCanvas() override;

    void fill(const Rect& area, const Color& color) override;
    void stroke(std::span<const Rect> outlines, double lineWidth, const Color& color) override;
    void line(Point from, Point to, double lineWidth, const Color& color) override;
    void text(std::string_view utf8, const Rect& area, const Font& font, const Color& color) override;
    Size textSize(std::string_view utf8, const Font& font) const override;
    void pushArea(const Rect& area) override;
    void popArea() override;

private:
    void fillPixels(const QRect& pixels, const QColor& color);

    QPainter& painter_;
    QtFaces& faces_;
    DeviceGrid grid_;
    int depth_ = 0;
};

}  // namespace vantrel
