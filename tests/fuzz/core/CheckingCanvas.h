#pragma once

#include <vector>

#include "platform/Canvas.h"

namespace vantrel::fuzz {

/// Paints nothing, but holds every stroke against the rules: real numbers, text that can be drawn, and inside
/// the view that draws. In a window below its smallest size views may be narrower than what stands in them,
/// and so may a window be than a dialog; there the clipping of the view must do.
class CheckingCanvas final : public Canvas {
public:
    ~CheckingCanvas() override;

    void fill(const Rect& area, const Color& color) override;
    void stroke(std::span<const Rect> outlines, double lineWidth, const Color& color) override;
    void line(Point from, Point to, double lineWidth, const Color& color) override;
    void text(std::string_view utf8, const Rect& area, const Font& font, const Color& color) override;
    Size textSize(std::string_view utf8, const Font& font) const override;
    void pushArea(const Rect& area) override;
    void popArea() override;

private:
    enum class Strictness { none, vertical, full };

    Strictness strictness() const;
    void check(const Rect& area) const;

    std::vector<Rect> areas_;  ///< the window's content first
};

}  // namespace vantrel::fuzz
