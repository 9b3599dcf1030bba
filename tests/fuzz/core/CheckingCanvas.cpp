#include "fuzz/core/CheckingCanvas.h"

#include <algorithm>
#include <cmath>

#include "base/Precondition.h"
#include "fuzz/Target.h"
#include "fuzz/Utf8.h"

namespace vantrel::fuzz {

namespace {

constexpr Size smallestWindow{800, 500};
constexpr Size smallestForDialogs{700, 560};
constexpr double advance = 8;
constexpr double lineHeight = 15;
constexpr double tolerance = 1e-6;  // points

bool isAtLeast(const Rect& area, Size size) {
    return area.width >= size.width && area.height >= size.height;
}

}  // namespace

CheckingCanvas::~CheckingCanvas() {
    precondition(areas_.empty(), "every area that was entered is left");
}

CheckingCanvas::Strictness CheckingCanvas::strictness() const {
    const Rect& window = areas_.front();
    const Rect& view = areas_.back();
    const bool isDialog = areas_.size() > 1 && view.width == window.width && view.height == window.height;
    // A long name in its title may make a dialog's first line wider than the window.
    if (isDialog) return isAtLeast(window, smallestForDialogs) ? Strictness::vertical : Strictness::none;
    return isAtLeast(window, smallestWindow) ? Strictness::full : Strictness::none;
}

void CheckingCanvas::check(const Rect& area) const {
    require(!areas_.empty(), "only views draw");
    for (const double number : {area.x, area.y, area.width, area.height}) {
        require(std::isfinite(number), "coordinates are numbers");
    }
    const Strictness rule = strictness();
    const Rect& view = areas_.back();
    if (rule == Strictness::none) return;
    require(area.width >= 0 && area.height >= 0, "areas have a size");
    require(area.minY() >= -tolerance && area.maxY() <= view.height + tolerance,
            "what is drawn lies between the top and the bottom of its view");
    if (rule == Strictness::vertical) return;
    require(area.minX() >= -tolerance && area.maxX() <= view.width + tolerance,
            "what is drawn lies between the sides of its view");
}

void CheckingCanvas::fill(const Rect& area, const Color&) {
    check(area);
}

void CheckingCanvas::stroke(std::span<const Rect> outlines, double lineWidth, const Color&) {
    for (const Rect& outline : outlines) check(outline.inset(-lineWidth / 2));
}

void CheckingCanvas::line(Point from, Point to, double, const Color&) {
    require(from.x == to.x || from.y == to.y, "lines are horizontal or vertical");
    check({std::min(from.x, to.x), std::min(from.y, to.y), std::abs(from.x - to.x), std::abs(from.y - to.y)});
}

void CheckingCanvas::text(std::string_view utf8, const Rect& area, const Font&, const Color&) {
    require(isDrawable(utf8), "text is UTF-8 on one line");
    // Below its line a text's area is empty.
    check({area.x, area.y, area.width, std::min(area.height, lineHeight)});
}

Size CheckingCanvas::textSize(std::string_view utf8, const Font&) const {
    return {advance * static_cast<double>(decodedUtf8(utf8).size()), lineHeight};
}

void CheckingCanvas::pushArea(const Rect& area) {
    if (!areas_.empty()) check(area);
    areas_.push_back(area);
}

void CheckingCanvas::popArea() {
    areas_.pop_back();
}

}  // namespace vantrel::fuzz
