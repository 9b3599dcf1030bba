#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/Accessible.h"
#include "platform/Canvas.h"
#include "platform/Events.h"
#include "platform/Geometry.h"

namespace vantrel {

/// How soon a change has to be seen. What changes by itself while nobody waits for it, such as a running
/// total, may share a frame with what changes next.
enum class Redraw : std::uint8_t { atOnce, inPassing };

/// Port: the window's content area that shows a tree of views. Main thread only.
class ViewHost {
public:
    virtual ~ViewHost() = default;

    /// Ask for a redraw of the whole tree soon; many calls in one turn of the event loop cost one redraw.
    virtual void scheduleRedraw(Redraw urgency) = 0;

    /// Give the keyboard back to the tree (from a text field inside it).
    virtual void focusContent() = 0;
};

/// A rectangle of the window that draws itself and takes events; the base of every view of the program.
/// A view owns its subviews; its superview and its host are borrowed. Main thread only.
/// Coordinates: a view's bounds start at (0, 0); its frame is in its superview's coordinates.
class View : public std::enable_shared_from_this<View> {
public:
    View() = default;
    explicit View(const Rect& frame) : frame_(frame) {}
    View(const View&) = delete;
    View& operator=(const View&) = delete;
    virtual ~View();

    const Rect& frame() const { return frame_; }
    Rect bounds() const { return {0, 0, frame_.width, frame_.height}; }
    void setFrame(const Rect& frame);

    View* superview() const { return superview_; }
    const std::vector<std::shared_ptr<View>>& subviews() const { return subviews_; }
    void addSubview(std::shared_ptr<View> view);  ///< on top of the others
    void removeFromSuperview();  ///< may destroy this view when the superview was its last owner

    /// The host of the tree's root; null outside a window. Only a root has one of its own.
    ViewHost* host() const;
    void setHost(ViewHost* host) { host_ = host; }

    /// From window coordinates (= the root's bounds) into this view's.
    Point convertFromWindow(Point point) const;

    /// The topmost view of this tree at a point in this view's coordinates; null outside.
    View* hitTest(Point point);

    void setNeedsDisplay(Redraw urgency = Redraw::atOnce);

    /// Paints this view and then its subviews, each in its own area.
    void drawTree(Canvas& canvas);

    /// Paints this view alone, in its own coordinates.
    virtual void draw(Canvas&) {}

    /// What assistive technology is told of this view, as long as the view lives; null for one without
    /// meaning of its own.
    virtual Accessible* accessible() { return nullptr; }

    virtual bool acceptsFirstResponder() const { return false; }
    virtual EventResult keyDown(const KeyEvent&) { return EventResult::ignored; }
    virtual EventResult mouseDown(const MouseEvent&) { return EventResult::ignored; }
    virtual EventResult scrollWheel(const ScrollEvent&) { return EventResult::ignored; }

protected:
    /// Runs after the size or the place has changed.
    virtual void frameDidChange() {}

private:
    Rect frame_;
    View* superview_ = nullptr;
    ViewHost* host_ = nullptr;
    std::vector<std::shared_ptr<View>> subviews_;
};

/// Sends a click or a turn of the wheel to the topmost view under it, then up the superviews until one takes
/// it. `root` is the window's content; returns whether anybody did.
EventResult dispatchMouseDown(View& root, const MouseEvent& event);
EventResult dispatchScrollWheel(View& root, const ScrollEvent& event);

/// Sends the presses of a pointer into a tree of views. All presses of a double click belong to the view that
/// was under the first: when that one has made way, or another has come on top, the rest belongs to nobody.
class ClickRouter {
public:
    EventResult mouseDown(View& root, const MouseEvent& event);

private:
    std::weak_ptr<View> underFirstPress_;
};

}  // namespace vantrel
