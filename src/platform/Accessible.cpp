#include "platform/Accessible.h"

#include <numeric>

#include "platform/View.h"

namespace vantrel {

namespace {

bool isDialog(View& view) {
    const Accessible* const accessible = view.accessible();
    return accessible != nullptr && accessible->role() == AccessibleRole::dialog;
}

}  // namespace

std::optional<std::size_t> Accessible::elementAt(Point place) const {
    for (std::size_t index = elementCount(); index > 0; --index) {
        if (element(index - 1).frame.contains(place)) return index - 1;
    }
    return std::nullopt;
}

std::vector<std::size_t> Accessible::shownElements() const {
    std::vector<std::size_t> all(elementCount());
    std::iota(all.begin(), all.end(), std::size_t{0});
    return all;
}

std::optional<AccessiblePlace> accessibleFocus(View& root) {
    // Not std::views::reverse: clang 14 cannot read it in the library of gcc 12.
    const auto& subviews = root.subviews();
    for (auto subview = subviews.rbegin(); subview != subviews.rend(); ++subview) {
        const auto focus = accessibleFocus(**subview);
        if (focus || isDialog(**subview)) return focus;
    }
    const Accessible* const accessible = root.accessible();
    const auto element = accessible == nullptr ? std::nullopt : accessible->focusedElement();
    if (!element) return std::nullopt;
    return AccessiblePlace{&root, *element};
}

bool isBehindDialog(View& view) {
    const View* comingFrom = nullptr;
    for (View* place = &view; place != nullptr; comingFrom = place, place = place->superview()) {
        for (const auto& subview : place->subviews()) {
            if (subview.get() != comingFrom && isDialog(*subview)) return true;
        }
    }
    return false;
}

}  // namespace vantrel
