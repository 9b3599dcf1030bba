#include "panel/PanelPainter.h"

#include <gtest/gtest.h>

#include "panel/PanelGeometry.h"
#include "support/RecordingCanvas.h"
#include "theme/OvPalette.h"

namespace vantrel {
namespace {

using test::bold;
using test::FillStroke;
using test::RecordingCanvas;
using test::regular;

std::shared_ptr<FileItem> sized(const std::string& name, std::int64_t size) {
    return std::make_shared<FileItem>(
        FileItemFields{.name = name, .path = "/d/" + name, .size = size, .vantrelState = state::Parent{}});
}

// A state that no panel holds: whoever paints needs nothing else.
class PanelPainter : public testing::Test {
protected:
    PanelPainter() {
        cursor.setRowsInSight(2);
        cursor.reset(3, 2);
    }

    RecordingCanvas painted(const PanelState& state) const {
        RecordingCanvas canvas;
        paintPanel(canvas, {549, 112}, {regular, bold}, state);
        return canvas;
    }

    const std::string path = "/d";
    const ItemList items{sized("a", 1024), sized("b", 2048), sized("c", 3072)};
    PanelCursor cursor;
};

TEST_F(PanelPainter, paintsTheRowsInSightWithTheCursorAmongThem) {
    const RecordingCanvas canvas =
        painted({.path = path, .items = items, .cursor = cursor, .isActive = true, .freeBytes = 1024});
    EXPECT_TRUE(canvas.hasText("╒══ /d ══╕"));
    EXPECT_FALSE(canvas.hasText("  a"));
    EXPECT_EQ(canvas.theText("  b").color, OvPalette::dosWhite);
    EXPECT_EQ(canvas.theText("  c").color, OvPalette::activeSelectionText);
    EXPECT_NE(canvas.orderOf(FillStroke{{6, 72, 537, 20}, OvPalette::activeSelectionBg}), -1);
    EXPECT_TRUE(canvas.hasText("📄 c:    3.0 K"));
    EXPECT_TRUE(canvas.hasText("3 items |    1.0 K free"));
}

TEST_F(PanelPainter, withoutARowUnderTheCursorNoneIsMarkedNorDescribed) {
    cursor.reset(0, 0);
    const RecordingCanvas canvas = painted({.path = path, .items = {}, .cursor = cursor});
    EXPECT_EQ(canvas.all<FillStroke>().size(), 2U) << "the ground and the patch behind the title";
    EXPECT_EQ(canvas.textAt({10, 89}), "");
    EXPECT_TRUE(canvas.hasText("0 items"));
}

TEST(PanelGeometry, aClickOnTheLastFourPointsOfAPaintedRowTakesTheRowBelow) {
    EXPECT_EQ(panel::rowTop(2), 92);
    EXPECT_EQ(panel::placeHitBy(107.9, 648), 2);
    EXPECT_EQ(panel::placeHitBy(108, 648), 3);
}

TEST(PanelGeometry, aPanelHasOneRowMoreForEvery20PointsBetweenItsBars) {
    EXPECT_EQ(panel::rowsThatFit(0), 1);
    EXPECT_EQ(panel::rowsThatFit(111.9), 1);
    EXPECT_EQ(panel::rowsThatFit(112), 2);
}

}  // namespace
}  // namespace vantrel
