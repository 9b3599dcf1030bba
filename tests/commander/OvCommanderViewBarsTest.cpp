#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/CommanderFixture.h"
#include "support/RecordingCanvas.h"
#include "theme/OvPalette.h"

namespace vantrel {
namespace {

using test::bold;
using test::FillStroke;
using test::RecordingCanvas;
using test::TextStroke;

class OvCommanderViewBars : public test::CommanderTest {
protected:
    RecordingCanvas drawn() {
        RecordingCanvas canvas;
        commander->draw(canvas);
        return canvas;
    }

    std::string promptFor(const std::string& path) {
        desktop.files.addFile(path, "x");
        left().setCurrentPath(path);
        return drawn().textAt({8, 674});
    }
};

TEST_F(OvCommanderViewBars, whatNoBandPaintsShowsBlue) {
    EXPECT_EQ(drawn().orderOf(FillStroke{{0, 0, 1100, 720}, OvPalette::dosBlue}), 0);
}

TEST_F(OvCommanderViewBars, theMenuBarIsABandOf24PointsAcrossTheTop) {
    EXPECT_EQ(drawn().orderOf(FillStroke{{0, 0, 1100, 24}, OvPalette::dosMenuBarBg}), 1);
}

TEST_F(OvCommanderViewBars, theMenuItemsRunFrom16With32PointsBetweenThemAndRedInitials) {
    const RecordingCanvas canvas = drawn();
    // 8 points a character: "Left" 16..48, "Files" 80..120, "Commands" 152..216, "Options" 248..304, "Right"
    // 336
    EXPECT_EQ(canvas.orderOf(TextStroke{"L", {16, 3, 8, 15}, bold, OvPalette::dosRed}), 2);
    EXPECT_EQ(canvas.orderOf(TextStroke{"eft", {24, 3, 24, 15}, bold, OvPalette::dosBlack}), 3);
    EXPECT_EQ(canvas.orderOf(TextStroke{"F", {80, 3, 8, 15}, bold, OvPalette::dosRed}), 4);
    EXPECT_EQ(canvas.orderOf(TextStroke{"iles", {88, 3, 32, 15}, bold, OvPalette::dosBlack}), 5);
    EXPECT_EQ(canvas.orderOf(TextStroke{"C", {152, 3, 8, 15}, bold, OvPalette::dosRed}), 6);
    EXPECT_EQ(canvas.orderOf(TextStroke{"ommands", {160, 3, 56, 15}, bold, OvPalette::dosBlack}), 7);
    EXPECT_EQ(canvas.orderOf(TextStroke{"O", {248, 3, 8, 15}, bold, OvPalette::dosRed}), 8);
    EXPECT_EQ(canvas.orderOf(TextStroke{"ptions", {256, 3, 48, 15}, bold, OvPalette::dosBlack}), 9);
    EXPECT_EQ(canvas.orderOf(TextStroke{"R", {336, 3, 8, 15}, bold, OvPalette::dosRed}), 10);
    EXPECT_EQ(canvas.orderOf(TextStroke{"ight", {344, 3, 32, 15}, bold, OvPalette::dosBlack}), 11);
}

TEST_F(OvCommanderViewBars, theTitleEnds16PointsBeforeTheRightEdge) {
    // 17 characters = 136 points: 1100 - 136 - 16 = 948
    EXPECT_EQ(drawn().theText("Vantrel Commander"),
              (TextStroke{"Vantrel Commander", {948, 3, 136, 15}, bold, OvPalette::dosDarkBlue}));
}

TEST_F(OvCommanderViewBars, inANarrowWindowTheMenuItemsRunUnderTheTitle) {
    commander->setFrame({0, 0, 400, 500});
    const RecordingCanvas canvas = drawn();
    EXPECT_EQ(canvas.theText("Vantrel Commander").area.x, 248);
    EXPECT_EQ(canvas.theText("ptions").area.x, 256);
}

TEST_F(OvCommanderViewBars, whatIsMeasuredIsMeasuredInTheFontThatItIsDrawnIn) {
    drawn().expectMeasuredAsDrawn();
}

TEST_F(OvCommanderViewBars, thePromptLineIsABlueBandAboveTheFunctionKeys) {
    const RecordingCanvas canvas = drawn();
    EXPECT_NE(canvas.orderOf(FillStroke{{0, 672, 1100, 22}, OvPalette::dosBlue}), -1);
    EXPECT_EQ(canvas.theText("ann@Mac:/start$ █"),
              (TextStroke{"ann@Mac:/start$ █", {8, 674, 1084, 22}, bold, OvPalette::dosBrightWhite}));
}

TEST_F(OvCommanderViewBars, theHomeFolderIsATildeByAPlainTestOfThePrefix) {
    EXPECT_EQ(promptFor("/Users/ann/Documents"), "ann@Mac:~/Documents$ █");
    EXPECT_EQ(promptFor("/Users/ann"), "ann@Mac:~$ █");
    EXPECT_EQ(promptFor("/Users/anna"), "ann@Mac:~a$ █");
    EXPECT_EQ(promptFor("/Users/an"), "ann@Mac:/Users/an$ █");
}

TEST_F(OvCommanderViewBars, thePromptFollowsTheActivePanel) {
    commander->toggleActivePanel();
    EXPECT_EQ(drawn().textAt({8, 674}), "ann@Mac:~$ █");
}

TEST_F(OvCommanderViewBars, aPathThatIsNotTextIsMadeHarmlessInThePrompt) {
    EXPECT_EQ(promptFor("/x\n\xFF"), "ann@Mac:/x\uFFFD\uFFFD$ █");
}

// 1100 points wide: pitch 109, cells 105 wide and 22 high from y 696.
TEST_F(OvCommanderViewBars, aCellIsANumberBoxOf16PointsAndALabelBox) {
    const RecordingCanvas canvas = drawn();
    const int number = canvas.orderOf(FillStroke{{5, 696, 16, 22}, OvPalette::fnKeyNumBg});
    EXPECT_NE(number, -1);
    EXPECT_EQ(canvas.orderOf(FillStroke{{21, 696, 89, 22}, OvPalette::fnKeyLblBg}), number + 1);
    // Centred: "1" is 8 x 15 in 16 x 22, "Help" 32 x 15 in 89 x 22.
    EXPECT_EQ(canvas.orderOf(TextStroke{"1", {9, 699.5, 8, 15}, bold, OvPalette::fnKeyNumText}), number + 2);
    EXPECT_EQ(canvas.orderOf(TextStroke{"Help", {49.5, 699.5, 32, 15}, bold, OvPalette::fnKeyLblText}),
              number + 3);
}

TEST_F(OvCommanderViewBars, theNumberBoxOfTwoDigitsIs22PointsWide) {
    const RecordingCanvas canvas = drawn();
    EXPECT_NE(canvas.orderOf(FillStroke{{986, 696, 22, 22}, OvPalette::fnKeyNumBg}), -1);
    EXPECT_NE(canvas.orderOf(FillStroke{{1008, 696, 83, 22}, OvPalette::fnKeyLblBg}), -1);
    EXPECT_EQ(canvas.theText("10").area, (Rect{989, 699.5, 16, 15}));
}

TEST_F(OvCommanderViewBars, cellsWithoutAWidthAreNotDrawn) {
    for (const double width : {50.0, 40.0}) {  // cells of no width, and of less than none
        commander->setFrame({0, 0, width, 500});
        EXPECT_FALSE(drawn().hasText("Help"));
    }
}

TEST_F(OvCommanderViewBars, thePanelsAreDrawnOnTopInTheirOwnAreas) {
    RecordingCanvas canvas;
    commander->drawTree(canvas);
    const int leftGround = canvas.orderOf(FillStroke{{0, 24, 549, 648}, OvPalette::dosBlue});
    const int rightGround = canvas.orderOf(FillStroke{{551, 24, 549, 648}, OvPalette::dosBlue});
    EXPECT_GT(leftGround, canvas.orderOf(canvas.theText("10")));
    EXPECT_GT(rightGround, leftGround);
}

}  // namespace
}  // namespace vantrel
