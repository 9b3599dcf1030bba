#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/Canvas.h"

namespace vantrel::test {

/// What is drawn on it is drawn in these, in tests that ask for the program's fonts.
inline const Font regular{"Menlo", 13, FontWeight::regular};
inline const Font bold{"Menlo", 13, FontWeight::bold};

struct FillStroke {
    Rect area;
    Color color;
    bool operator==(const FillStroke&) const = default;
};

struct OutlineStroke {
    std::vector<Rect> outlines;
    double lineWidth;
    Color color;
    bool operator==(const OutlineStroke&) const = default;
};

struct LineStroke {
    Point from;
    Point to;
    double lineWidth;
    Color color;
    bool operator==(const LineStroke&) const = default;
};

struct TextStroke {
    std::string text;
    Rect area;
    Font font;
    Color color;
    bool operator==(const TextStroke&) const = default;
};

using Stroke = std::variant<FillStroke, OutlineStroke, LineStroke, TextStroke>;

/// Keeps every stroke in order, in the window's coordinates. Each byte sequence of one code point is
/// `advance` points wide, each line `lineHeight` high.
class RecordingCanvas final : public Canvas {
public:
    static constexpr double advance = 8;
    static constexpr double lineHeight = 15;

    void fill(const Rect& area, const Color& color) override;
    void stroke(std::span<const Rect> outlines, double lineWidth, const Color& color) override;
    void line(Point from, Point to, double lineWidth, const Color& color) override;
    void text(std::string_view utf8, const Rect& area, const Font& font, const Color& color) override;
    Size textSize(std::string_view utf8, const Font& font) const override;
    void pushArea(const Rect& area) override;
    void popArea() override;

    template <class Kind>
    std::vector<Kind> all() const {
        std::vector<Kind> found;
        for (const Stroke& stroke : strokes) {
            if (const auto* kind = std::get_if<Kind>(&stroke)) found.push_back(*kind);
        }
        return found;
    }

    /// The one text with exactly these words; a failed expectation when there is none or more than one.
    TextStroke theText(std::string_view words) const;
    bool hasText(std::string_view words) const;
    /// The last text whose area's corner is there, empty when none is.
    std::string textAt(Point corner) const;
    /// Position of a stroke in the order of painting, -1 when it is not there.
    int orderOf(const Stroke& stroke) const;
    /// Every text that was measured was also drawn, in the same font.
    void expectMeasuredAsDrawn() const;

    std::vector<Stroke> strokes;

private:
    struct MeasuredText {
        std::string text;
        Font font;
    };

    Point origin() const { return origins_.empty() ? Point{} : origins_.back(); }
    Rect inWindow(const Rect& area) const { return area.movedBy(origin().x, origin().y); }

    std::vector<Point> origins_;
    mutable std::vector<MeasuredText> measured_;
};

void PrintTo(const FillStroke& stroke, std::ostream* out);
void PrintTo(const OutlineStroke& stroke, std::ostream* out);
void PrintTo(const LineStroke& stroke, std::ostream* out);
void PrintTo(const TextStroke& stroke, std::ostream* out);

}  // namespace vantrel::test

namespace vantrel {

void PrintTo(const Rect& rect, std::ostream* out);
void PrintTo(const Color& color, std::ostream* out);
void PrintTo(const Font& font, std::ostream* out);

}  // namespace vantrel
