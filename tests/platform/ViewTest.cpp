#include "platform/View.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/FakeDesktop.h"
#include "support/RecordingCanvas.h"

namespace vantrel {
namespace {

using testing::ElementsAre;

class ProbeView : public View {
public:
    ProbeView(const Rect& frame, EventResult answer) : View(frame), answer_(answer) {}
    void draw(Canvas& canvas) override { canvas.fill(bounds(), {}); }
    EventResult mouseDown(const MouseEvent& event) override {
        clicks.push_back(convertFromWindow(event.locationInWindow));
        if (removesItself) removeFromSuperview();
        return answer_;
    }

    std::vector<Point> clicks;
    bool removesItself = false;

private:
    EventResult answer_;
};

struct ViewTree : testing::Test {
    std::shared_ptr<ProbeView> root = std::make_shared<ProbeView>(Rect{0, 0, 100, 100}, EventResult::handled);
    std::shared_ptr<ProbeView> child =
        std::make_shared<ProbeView>(Rect{10, 20, 50, 50}, EventResult::ignored);
    std::shared_ptr<ProbeView> grandchild =
        std::make_shared<ProbeView>(Rect{5, 5, 10, 10}, EventResult::ignored);
    ViewTree() {
        root->addSubview(child);
        child->addSubview(grandchild);
    }
};

TEST_F(ViewTree, windowPointsAreConvertedThroughAllSuperviews) {
    EXPECT_EQ(grandchild->convertFromWindow({16, 27}), (Point{1, 2}));
    EXPECT_EQ(root->convertFromWindow({16, 27}), (Point{16, 27}));
}

TEST_F(ViewTree, theTopmostViewUnderAPointIsHitAndEdgesBelongToTheNeighbour) {
    EXPECT_EQ(root->hitTest({15, 25}), grandchild.get());
    EXPECT_EQ(root->hitTest({25, 25}), child.get());
    EXPECT_EQ(root->hitTest({60, 25}), root.get());
    EXPECT_EQ(root->hitTest({100, 5}), nullptr);
}

TEST_F(ViewTree, aClickGoesUpUntilSomebodyTakesIt) {
    EXPECT_EQ(dispatchMouseDown(*root, {.locationInWindow = {16, 27}}), EventResult::handled);
    EXPECT_THAT(grandchild->clicks, ElementsAre(Point{1, 2}));
    EXPECT_THAT(child->clicks, ElementsAre(Point{6, 7}));
    EXPECT_THAT(root->clicks, ElementsAre(Point{16, 27}));
}

TEST_F(ViewTree, aViewMayRemoveItselfInsideItsOwnHandler) {
    grandchild->removesItself = true;
    const std::weak_ptr<ProbeView> watched = grandchild;
    grandchild.reset();
    dispatchMouseDown(*root, {.locationInWindow = {16, 27}});
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(child->clicks.size(), 1U);
}

TEST_F(ViewTree, everyViewPaintsInItsOwnCoordinatesParentsFirst) {
    test::RecordingCanvas canvas;
    root->drawTree(canvas);
    EXPECT_THAT(canvas.all<test::FillStroke>(),
                ElementsAre(test::FillStroke{{0, 0, 100, 100}, {}}, test::FillStroke{{10, 20, 50, 50}, {}},
                            test::FillStroke{{15, 25, 10, 10}, {}}));
}

TEST_F(ViewTree, redrawsReachTheRootsHostAndARemovedViewHasNone) {
    test::CountingHost host;
    root->setHost(&host);
    grandchild->setNeedsDisplay();
    EXPECT_EQ(host.redraws, 1);
    EXPECT_EQ(host.redrawsInPassing, 0);
    grandchild->setNeedsDisplay(Redraw::inPassing);
    EXPECT_EQ(host.redrawsInPassing, 1);
    child->removeFromSuperview();
    host.redraws = 0;
    grandchild->setNeedsDisplay();
    EXPECT_EQ(host.redraws, 0);
    EXPECT_EQ(child->superview(), nullptr);
}

TEST_F(ViewTree, aViewThatOutlivesItsSuperviewHasNone) {
    root.reset();
    EXPECT_EQ(child->superview(), nullptr);
}

}  // namespace
}  // namespace vantrel
