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

class Clicks : public ViewTree {
protected:
    EventResult press(Point place, int number) {
        return router.mouseDown(*root, {.locationInWindow = place, .clickCount = number});
    }
    const Point inGrandchild{16, 27};
    ClickRouter router;
};

TEST_F(Clicks, allPressesOfADoubleClickGoToTheViewUnderTheFirst) {
    for (int number = 1; number <= 3; ++number) press(inGrandchild, number);
    EXPECT_EQ(grandchild->clicks.size(), 3U);
}

TEST_F(Clicks, theSecondPressBelongsToNobodyWhenTheFirstTookItsViewAway) {
    grandchild->removesItself = true;
    press(inGrandchild, 1);
    EXPECT_EQ(child->clicks.size(), 1U) << "the first goes on upwards";
    EXPECT_EQ(press(inGrandchild, 2), EventResult::ignored);
    EXPECT_EQ(press(inGrandchild, 3), EventResult::ignored);
    EXPECT_EQ(child->clicks.size(), 1U);
    EXPECT_EQ(press(inGrandchild, 1), EventResult::handled);
    EXPECT_EQ(child->clicks.size(), 2U);
}

TEST_F(Clicks, theSecondPressBelongsToNobodyWhenAnotherViewCameOnTop) {
    press(inGrandchild, 1);
    const auto cover = std::make_shared<ProbeView>(Rect{0, 0, 100, 100}, EventResult::handled);
    root->addSubview(cover);
    EXPECT_EQ(press(inGrandchild, 2), EventResult::ignored);
    EXPECT_TRUE(cover->clicks.empty());
}

TEST_F(Clicks, aSecondPressWhoseFirstWentToAnotherWindowBelongsToNobody) {
    EXPECT_EQ(press(inGrandchild, 2), EventResult::ignored);
    EXPECT_TRUE(grandchild->clicks.empty());
}

TEST_F(Clicks, aPressOutsideTheTreeBelongsToNobody) {
    EXPECT_EQ(press({200, 200}, 1), EventResult::ignored);
    EXPECT_EQ(press({200, 200}, 2), EventResult::ignored);
}

}  // namespace
}  // namespace vantrel
