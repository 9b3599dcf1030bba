#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

namespace vantrel {

void PrintTo(const Rect& rect, std::ostream* out) {
    *out << "(" << rect.x << ", " << rect.y << ", " << rect.width << ", " << rect.height << ")";
}

void PrintTo(const Color& color, std::ostream* out) {
    *out << "rgba(" << color.red << ", " << color.green << ", " << color.blue << ", " << color.alpha << ")";
}

void PrintTo(const Font& font, std::ostream* out) {
    *out << font.family << " " << font.size << (font.weight == FontWeight::bold ? " bold" : "");
}

}  // namespace vantrel

namespace vantrel::test {

void RecordingCanvas::fill(const Rect& area, const Color& color) {
    strokes.emplace_back(FillStroke{inWindow(area), color});
}

void RecordingCanvas::stroke(std::span<const Rect> outlines, double lineWidth, const Color& color) {
    OutlineStroke kept{{}, lineWidth, color};
    for (const Rect& outline : outlines) kept.outlines.push_back(inWindow(outline));
    strokes.emplace_back(std::move(kept));
}

void RecordingCanvas::line(Point from, Point to, double lineWidth, const Color& color) {
    const Point o = origin();
    strokes.emplace_back(
        LineStroke{{from.x + o.x, from.y + o.y}, {to.x + o.x, to.y + o.y}, lineWidth, color});
}

void RecordingCanvas::text(std::string_view utf8, const Rect& area, const Font& font, const Color& color) {
    strokes.emplace_back(TextStroke{std::string(utf8), inWindow(area), font, color});
}

Size RecordingCanvas::textSize(std::string_view utf8, const Font& font) const {
    measured_.push_back({std::string(utf8), font});
    const auto isFirstByte = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; };
    return {advance * static_cast<double>(std::ranges::count_if(utf8, isFirstByte)), lineHeight};
}

void RecordingCanvas::pushArea(const Rect& area) {
    const Point o = origin();
    origins_.push_back({o.x + area.x, o.y + area.y});
}

void RecordingCanvas::popArea() {
    origins_.pop_back();
}

TextStroke RecordingCanvas::theText(std::string_view words) const {
    std::vector<TextStroke> found;
    for (const TextStroke& stroke : all<TextStroke>()) {
        if (stroke.text == words) found.push_back(stroke);
    }
    EXPECT_EQ(found.size(), 1U) << "texts reading \"" << words << "\"";
    return found.empty() ? TextStroke{} : found.front();
}

bool RecordingCanvas::hasText(std::string_view words) const {
    return std::ranges::any_of(all<TextStroke>(), [&](const TextStroke& t) { return t.text == words; });
}

std::string RecordingCanvas::textAt(Point corner) const {
    std::string found;
    for (const TextStroke& stroke : all<TextStroke>()) {
        if (Point{stroke.area.x, stroke.area.y} == corner) found = stroke.text;
    }
    return found;
}

int RecordingCanvas::orderOf(const Stroke& stroke) const {
    const auto place = std::ranges::find(strokes, stroke);
    return place == strokes.end() ? -1 : static_cast<int>(place - strokes.begin());
}

void RecordingCanvas::expectMeasuredAsDrawn() const {
    EXPECT_FALSE(measured_.empty());
    const std::vector<TextStroke> drawn = all<TextStroke>();
    for (const MeasuredText& text : measured_) {
        EXPECT_TRUE(std::ranges::any_of(
            drawn,
            [&](const TextStroke& stroke) { return stroke.text == text.text && stroke.font == text.font; }))
            << text.text << " is not drawn in the font that it was measured in";
    }
}

void PrintTo(const FillStroke& stroke, std::ostream* out) {
    *out << "fill ";
    PrintTo(stroke.area, out);
    *out << " ";
    PrintTo(stroke.color, out);
}

void PrintTo(const OutlineStroke& stroke, std::ostream* out) {
    *out << "outlines";
    for (const Rect& outline : stroke.outlines) {
        *out << " ";
        PrintTo(outline, out);
    }
    *out << " width " << stroke.lineWidth << " ";
    PrintTo(stroke.color, out);
}

void PrintTo(const LineStroke& stroke, std::ostream* out) {
    *out << "line (" << stroke.from.x << ", " << stroke.from.y << ") to (" << stroke.to.x << ", "
         << stroke.to.y << ") width " << stroke.lineWidth << " ";
    PrintTo(stroke.color, out);
}

void PrintTo(const TextStroke& stroke, std::ostream* out) {
    *out << "text \"" << stroke.text << "\" ";
    PrintTo(stroke.area, out);
    *out << " ";
    PrintTo(stroke.font, out);
    *out << " ";
    PrintTo(stroke.color, out);
}

}  // namespace vantrel::test
