#include "platform/WindowPlacement.h"

#include <algorithm>
#include <cmath>

namespace vantrel {

namespace {

struct Span {
    double start;
    double length;
};

Span place(const Span& available, double wanted, double smallest, double before, double after) {
    const double room = std::floor(available.length - before - after);
    const double length = std::max(std::min(wanted, room), smallest);
    const double margin = std::max(0.0, (room - length) / 2);
    return {std::floor(available.start + margin + before), length};
}

}  // namespace

Rect placeContent(const Rect& available, const Size& wanted, const Size& smallest,
                  const Surroundings& around) {
    const Span across =
        place({available.x, available.width}, wanted.width, smallest.width, around.left, around.right);
    const Span down =
        place({available.y, available.height}, wanted.height, smallest.height, around.top, around.bottom);
    return {across.start, down.start, across.length, down.length};
}

}  // namespace vantrel
