#include "platform/View.h"

#include <algorithm>
#include <utility>

namespace vantrel {

namespace {

class AreaScope {
public:
    AreaScope(Canvas& canvas, const Rect& area) : canvas_(canvas) { canvas_.pushArea(area); }
    AreaScope(const AreaScope&) = delete;
    AreaScope& operator=(const AreaScope&) = delete;
    ~AreaScope() { canvas_.popArea(); }

private:
    Canvas& canvas_;
};

template <class Event>
EventResult dispatch(View& root, const Event& event, EventResult (View::*handler)(const Event&)) {
    View* target = root.hitTest(root.convertFromWindow(event.locationInWindow));
    while (target != nullptr) {
        // A handler may take its own view out of the tree, so the view is held and the way up noted first.
        const std::shared_ptr<View> held = target->weak_from_this().lock();
        View* const next = target->superview();
        if ((target->*handler)(event) == EventResult::handled) return EventResult::handled;
        target = next;
    }
    return EventResult::ignored;
}

}  // namespace

View::~View() {
    for (const auto& view : subviews_) view->superview_ = nullptr;
}

void View::setFrame(const Rect& frame) {
    if (frame_ == frame) return;
    frame_ = frame;
    frameDidChange();
    setNeedsDisplay();
}

void View::addSubview(std::shared_ptr<View> view) {
    view->removeFromSuperview();
    view->superview_ = this;
    subviews_.push_back(std::move(view));
    setNeedsDisplay();
}

void View::removeFromSuperview() {
    View* const parent = std::exchange(superview_, nullptr);
    if (parent == nullptr) return;
    parent->setNeedsDisplay();
    auto& siblings = parent->subviews_;
    const auto place = std::ranges::find(siblings, this, &std::shared_ptr<View>::get);
    const std::shared_ptr<View> held = std::move(*place);
    siblings.erase(place);
}

ViewHost* View::host() const {
    const View* view = this;
    while (view->superview_ != nullptr) view = view->superview_;
    return view->host_;
}

Point View::convertFromWindow(Point point) const {
    for (const View* view = this; view->superview_ != nullptr; view = view->superview_) {
        point.x -= view->frame_.x;
        point.y -= view->frame_.y;
    }
    return point;
}

View* View::hitTest(Point point) {
    if (!bounds().contains(point)) return nullptr;
    for (auto it = subviews_.rbegin(); it != subviews_.rend(); ++it) {
        const Rect& frame = (*it)->frame_;
        if (View* const hit = (*it)->hitTest({point.x - frame.x, point.y - frame.y})) return hit;
    }
    return this;
}

void View::setNeedsDisplay(Redraw urgency) {
    if (ViewHost* const window = host()) window->scheduleRedraw(urgency);
}

void View::drawTree(Canvas& canvas) {
    const AreaScope area(canvas, frame_);
    draw(canvas);
    for (const auto& view : subviews_) view->drawTree(canvas);
}

EventResult dispatchMouseDown(View& root, const MouseEvent& event) {
    return dispatch(root, event, &View::mouseDown);
}

EventResult ClickRouter::mouseDown(View& root, const MouseEvent& event) {
    View* const target = root.hitTest(root.convertFromWindow(event.locationInWindow));
    if (event.clickCount > 1 && target != underFirstPress_.lock().get()) return EventResult::ignored;
    underFirstPress_ = target == nullptr ? std::weak_ptr<View>() : target->weak_from_this();
    return dispatchMouseDown(root, event);
}

EventResult dispatchScrollWheel(View& root, const ScrollEvent& event) {
    return dispatch(root, event, &View::scrollWheel);
}

}  // namespace vantrel
