#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "support/PanelFixture.h"
#include "support/RecordingCanvas.h"
#include "support/ScopedEnvironment.h"
#include "theme/OvPalette.h"

namespace vantrel {
namespace {

using test::bold;
using test::fileEntry;
using test::FillStroke;
using test::LineStroke;
using test::OutlineStroke;
using test::RecordingCanvas;
using test::regular;
using test::TextStroke;

struct CellColors {
    std::optional<Color> size;
    std::optional<Color> date;
    std::optional<Color> time;
    bool operator==(const CellColors&) const = default;
};

// The panel is 549 x 648: the fixed columns start at x0 = 304, the separators stand at 310, 395 and 490.
// The recording canvas measures 8 points a character.
class OvPanelViewDrawing : public test::PanelTest {
protected:
    RecordingCanvas drawn() {
        RecordingCanvas canvas;
        panel->draw(canvas);
        return canvas;
    }

    // A list with one row of each kind, in the order ".." (y 52), folder (72), then the files.
    void showOneOfEachKind() {
        DirectoryEntry script = fileEntry("b-script");
        script.attributes->posixPermissions = 0755;
        desktop.files.addFolder("/d", "folder");
        desktop.files.addFile("/d", "a-plain", 2048);
        desktop.files.add("/d", script);
        desktop.files.addFile("/d", ".c-hidden");
        panel->setShowHiddenFiles(true);
        panel->setCurrentPath("/d");
        panel->home();
    }

    void selectRow(const std::string& name) {
        panel->loadDirectory(name);
        desktop.mainQueue.runAll();
    }

    Color nameColor(const RecordingCanvas& canvas, const std::string& text) {
        return canvas.theText(text).color;
    }

    // Of the row at y.
    CellColors cellColors(const RecordingCanvas& canvas, double y) {
        CellColors colors;
        for (const TextStroke& text : canvas.all<TextStroke>()) {
            if (text.area.y != y + 2) continue;
            if (text.area.width == 77) colors.size = text.color;
            if (text.area.x == 401) colors.date = text.color;
            if (text.area.x == 496) colors.time = text.color;
        }
        return colors;
    }
};

TEST_F(OvPanelViewDrawing, theGroundIsBlueAndPaintedFirst) {
    desktop.files.addFile("/d", "x");
    panel->setCurrentPath("/d");
    const RecordingCanvas canvas = drawn();
    EXPECT_EQ(canvas.orderOf(FillStroke{{0, 0, 549, 648}, OvPalette::dosBlue}), 0);
}

TEST_F(OvPanelViewDrawing, theDoubleFrameIsOneStrokeOfTwoRectanglesInTheFocusColour) {
    panel->setIsActivePanel(true);
    EXPECT_EQ(
        drawn().orderOf(OutlineStroke{{{2, 2, 545, 644}, {4, 4, 541, 640}}, 1.5, OvPalette::dosBrightCyan}),
        1);
    panel->setIsActivePanel(false);
    EXPECT_EQ(drawn().orderOf(OutlineStroke{{{2, 2, 545, 644}, {4, 4, 541, 640}}, 1.5, OvPalette::dosCyan}),
              1);
}

TEST_F(OvPanelViewDrawing, theTitleIsCentredOverAPatchThatErasesTheFrame) {
    desktop.files.addFile("/data", "x");
    panel->setCurrentPath("/data");
    panel->setIsActivePanel(true);
    const RecordingCanvas canvas = drawn();
    // 13 characters = 104 points; (549 - 104) / 2 = 222.5
    EXPECT_EQ(canvas.orderOf(FillStroke{{216.5, 0, 116, 24}, OvPalette::dosBlue}), 2);
    EXPECT_EQ(canvas.orderOf(TextStroke{"╒══ /data ══╕", {222.5, 4, 104, 24}, bold, OvPalette::dosYellow}),
              3);
}

TEST_F(OvPanelViewDrawing, theTitleOfAnInactivePanelIsLightGray) {
    desktop.files.addFile("/data", "x");
    panel->setCurrentPath("/data");
    EXPECT_EQ(drawn().theText("╒══ /data ══╕").color, OvPalette::dosLightGray);
}

TEST_F(OvPanelViewDrawing, aPathOf45CharactersIsShownWholeAndOneOf46AsDotsAndItsLast42) {
    const std::string path45 = "/" + std::string(2, 'a') + std::string(42, 'b');
    desktop.files.addFile(path45, "x");
    panel->setCurrentPath(path45);
    EXPECT_TRUE(drawn().hasText("╒══ /aa" + std::string(42, 'b') + " ══╕"));

    const std::string path46 = "/" + std::string(3, 'a') + std::string(42, 'b');
    desktop.files.addFile(path46, "x");
    panel->setCurrentPath(path46);
    EXPECT_TRUE(drawn().hasText("╒══ ..." + std::string(42, 'b') + " ══╕"));
}

TEST_F(OvPanelViewDrawing, thePathsLengthIsCountedInCharactersAsPeopleSeeThem) {
    // 44 times e + combining acute: 45 characters with the slash, 133 bytes.
    std::string path = "/";
    for (int i = 0; i < 44; ++i) path += "e\xCC\x81";
    desktop.files.addFile(path, "x");
    panel->setCurrentPath(path);
    EXPECT_TRUE(drawn().hasText("╒══ " + path + " ══╕"));
    std::string last42;
    for (int i = 0; i < 42; ++i) last42 += "e\xCC\x81";
    panel->setCurrentPath(path + "e\xCC\x81");
    EXPECT_TRUE(drawn().hasText("╒══ ..." + last42 + " ══╕"));
}

TEST_F(OvPanelViewDrawing, inAVeryNarrowPanelTheTitleStartsAt10AndIsCutToTheWidthLess20) {
    desktop.files.addFile("/data", "x");
    panel->setFrame({0, 0, 60, 648});
    panel->setCurrentPath("/data");
    const RecordingCanvas canvas = drawn();
    EXPECT_EQ(canvas.theText("╒══ /data ══╕").area, (Rect{10, 4, 40, 24}));
    EXPECT_NE(canvas.orderOf(FillStroke{{4, 0, 52, 24}, OvPalette::dosBlue}), -1);
}

TEST_F(OvPanelViewDrawing, theHeaderHasItsRuleAndItsSeparatorsInTheFocusColour) {
    panel->setIsActivePanel(true);
    const RecordingCanvas canvas = drawn();
    const int rule = canvas.orderOf(LineStroke{{4, 50}, {545, 50}, 1, OvPalette::dosBrightCyan});
    EXPECT_EQ(rule, 4);
    EXPECT_EQ(canvas.orderOf(LineStroke{{310, 26}, {310, 50}, 1, OvPalette::dosBrightCyan}), 5);
    EXPECT_EQ(canvas.orderOf(LineStroke{{395, 26}, {395, 50}, 1, OvPalette::dosBrightCyan}), 6);
    EXPECT_EQ(canvas.orderOf(LineStroke{{490, 26}, {490, 50}, 1, OvPalette::dosBrightCyan}), 7);
}

TEST_F(OvPanelViewDrawing, theColumnTitlesStandInTheirRectanglesAndTheSortedOneIsWhiteWithAnArrow) {
    const RecordingCanvas canvas = drawn();
    EXPECT_EQ(canvas.orderOf(TextStroke{" Name ▲", {10, 29, 294, 24}, bold, OvPalette::dosBrightWhite}), 8);
    EXPECT_EQ(canvas.orderOf(TextStroke{"Size", {315, 29, 77, 24}, bold, OvPalette::dosYellow}), 9);
    EXPECT_EQ(canvas.orderOf(TextStroke{"Date", {400, 29, 87, 24}, bold, OvPalette::dosYellow}), 10);
    EXPECT_EQ(canvas.orderOf(TextStroke{"Time", {495, 29, 37, 24}, bold, OvPalette::dosYellow}), 11);
}

TEST_F(OvPanelViewDrawing, theArrowFollowsTheFieldAndTheDirection) {
    panel->setSortField(SortField::size);
    EXPECT_EQ(drawn().theText("Size ▲").color, OvPalette::dosBrightWhite);
    EXPECT_EQ(drawn().theText(" Name").color, OvPalette::dosYellow);
    panel->setSortDirection(SortDirection::descending);
    EXPECT_EQ(drawn().theText("Size ▼").color, OvPalette::dosBrightWhite);
    panel->setSortField(SortField::date);
    EXPECT_TRUE(drawn().hasText("Date ▼"));
}

TEST_F(OvPanelViewDrawing, sortedByExtensionNoTitleHasAnArrow) {
    panel->setSortField(SortField::ext);
    const RecordingCanvas canvas = drawn();
    for (const char* title : {" Name", "Size", "Date", "Time"}) {
        EXPECT_EQ(canvas.theText(title).color, OvPalette::dosYellow) << title;
    }
}

TEST_F(OvPanelViewDrawing, theNameCellSaysWhatKindOfEntryItIs) {
    showOneOfEachKind();
    const RecordingCanvas canvas = drawn();
    EXPECT_EQ(canvas.theText("▲ ..").area, (Rect{10, 54, 290, 20}));
    EXPECT_EQ(canvas.theText("▲ ..").font, bold);
    EXPECT_EQ(canvas.theText("/ folder").area, (Rect{10, 74, 290, 20}));
    EXPECT_EQ(canvas.theText("/ folder").font, bold);
    EXPECT_EQ(canvas.theText("  .c-hidden").area, (Rect{10, 94, 290, 20}));
    EXPECT_EQ(canvas.theText("  a-plain").font, regular);
    EXPECT_EQ(canvas.theText("  b-script").font, regular);
}

TEST_F(OvPanelViewDrawing, rowsAreColouredByKind) {
    showOneOfEachKind();
    selectRow("a-plain");  // y 112
    const RecordingCanvas canvas = drawn();
    const Color gray = OvPalette::dosLightGray;
    EXPECT_EQ(nameColor(canvas, "▲ .."), OvPalette::dosYellow);
    EXPECT_EQ(cellColors(canvas, 52), (CellColors{OvPalette::dosYellow, gray, gray}));
    EXPECT_EQ(nameColor(canvas, "/ folder"), OvPalette::dosYellow);
    EXPECT_EQ(cellColors(canvas, 72), (CellColors{gray, gray, gray}));
    EXPECT_EQ(nameColor(canvas, "  .c-hidden"), OvPalette::dosDarkGray);
    EXPECT_EQ(cellColors(canvas, 92), (CellColors{OvPalette::dosDarkGray, gray, gray}));
    EXPECT_EQ(nameColor(canvas, "  b-script"), OvPalette::dosGreen);
    EXPECT_EQ(cellColors(canvas, 132), (CellColors{OvPalette::dosWhite, gray, gray}));

    panel->home();
    const RecordingCanvas again = drawn();
    EXPECT_EQ(nameColor(again, "  a-plain"), OvPalette::dosWhite);
    EXPECT_EQ(cellColors(again, 112), (CellColors{gray, gray, gray}));
}

TEST_F(OvPanelViewDrawing, aHiddenFileThatIsExecutableIsGreenAndAHiddenFolderYellow) {
    DirectoryEntry script = fileEntry(".script");
    script.attributes->posixPermissions = 0700;
    desktop.files.add("/d", script);
    desktop.files.addFolder("/d", ".folder");
    panel->setShowHiddenFiles(true);
    panel->setCurrentPath("/d");
    panel->home();
    EXPECT_EQ(nameColor(drawn(), "  .script"), OvPalette::dosGreen);
    EXPECT_EQ(nameColor(drawn(), "/ .folder"), OvPalette::dosYellow);
}

TEST_F(OvPanelViewDrawing, aFoldersSizeTurnsFromGrayToBrightCyanWhenItsCalculationCompletes) {
    desktop.files.addFolder("/d", "sub");
    panel->setCurrentPath("/d");
    panel->home();
    desktop.walks.walkOf("/d/sub").progress({1572864, 2});
    desktop.mainQueue.runAll();
    EXPECT_EQ(drawn().theText("[|]    1.5 M").color, OvPalette::dosLightGray);
    finishWalk("/d/sub", 1572864);
    EXPECT_EQ(drawn().theText("   1.5 M").color, OvPalette::dosBrightCyan);
}

TEST_F(OvPanelViewDrawing, theSelectedRowHasABarAndOneTextColourByFocus) {
    showOneOfEachKind();
    panel->setIsActivePanel(true);
    panel->moveDown();
    const RecordingCanvas active = drawn();
    EXPECT_NE(active.orderOf(FillStroke{{6, 72, 537, 20}, OvPalette::activeSelectionBg}), -1);
    EXPECT_EQ(nameColor(active, "/ folder"), OvPalette::activeSelectionText);
    const Color bright = OvPalette::activeSelectionText;
    EXPECT_EQ(cellColors(active, 72), (CellColors{bright, bright, bright}));

    panel->setIsActivePanel(false);
    const RecordingCanvas inactive = drawn();
    EXPECT_NE(inactive.orderOf(FillStroke{{6, 72, 537, 20}, OvPalette::inactiveSelectionBg}), -1);
    EXPECT_EQ(nameColor(inactive, "/ folder"), OvPalette::inactiveSelectionText);
    const Color dim = OvPalette::inactiveSelectionText;
    EXPECT_EQ(cellColors(inactive, 72), (CellColors{dim, dim, dim}));
}

TEST_F(OvPanelViewDrawing, sizesAreRightAlignedEightPointsBeforeTheDateSeparator) {
    showOneOfEachKind();
    panel->moveDown();
    // "   2.0 K" is 8 characters = 64 points: 395 - 64 - 8 = 323
    EXPECT_EQ(drawn().theText("   2.0 K").area, (Rect{323, 114, 77, 20}));
}

TEST_F(OvPanelViewDrawing, aSizeTooWideForItsColumnStartsAtItsLeftEdge) {
    const test::ScopedLocale locale("en_US.UTF-8");
    desktop.files.addFile("/d", "huge", 1'234'567'890'123);
    panel->setSizeDisplayMode(SizeDisplayMode::rawBytes);
    panel->setCurrentPath("/d");
    // 19 characters = 152 points: wider than the column.
    EXPECT_EQ(drawn().theText("1,234,567,890,123 B").area, (Rect{314, 74, 77, 20}));
}

TEST_F(OvPanelViewDrawing, theSpinnersGlyphFollowsTheFrame) {
    desktop.files.addFolder("/d", "sub");
    panel->setCurrentPath("/d");
    EXPECT_TRUE(drawn().hasText("[| calc] "));
    desktop.timers.tickAll();
    EXPECT_TRUE(drawn().hasText("[/ calc] "));
}

TEST_F(OvPanelViewDrawing, dateAndTimeStandInTheirCells) {
    const test::ScopedLocale locale("en_US.UTF-8");
    const test::ScopedEnvironment timeZone("TZ", "UTC0");
    using namespace std::chrono;
    DirectoryEntry entry = fileEntry("letter");
    entry.attributes->modificationDate = sys_days(2024y / February / 29) + 13h + 5min;
    desktop.files.add("/d", entry);
    panel->setCurrentPath("/d");
    const RecordingCanvas canvas = drawn();
    EXPECT_EQ(canvas.theText("2024-02-29").area, (Rect{401, 74, 87, 20}));
    EXPECT_EQ(canvas.theText("2024-02-29").font, regular);
    EXPECT_EQ(canvas.theText("13:05").area, (Rect{496, 74, 45, 20}));
    EXPECT_EQ(canvas.textAt({401, 54}), "");
    EXPECT_EQ(canvas.textAt({496, 54}), "");
}

TEST_F(OvPanelViewDrawing, onlyTheVisibleRowsAreDrawnFromTheScrollOffsetOn) {
    setRows(3);
    addNumberedFiles(10);
    panel->setCurrentPath("/d");
    panel->end();
    const RecordingCanvas canvas = drawn();
    EXPECT_FALSE(canvas.hasText("  f006"));
    EXPECT_EQ(canvas.theText("  f007").area.y, 54);
    EXPECT_EQ(canvas.theText("  f009").area.y, 94);
}

TEST_F(OvPanelViewDrawing, theListSeparatorsCrossTheRowsInTransparentCyan) {
    showOneOfEachKind();
    const RecordingCanvas canvas = drawn();
    const Color faint{0.0, 0.67, 0.67, 0.4};
    const int first = canvas.orderOf(LineStroke{{310, 52}, {310, 620}, 1, faint});
    EXPECT_EQ(canvas.orderOf(LineStroke{{395, 52}, {395, 620}, 1, faint}), first + 1);
    EXPECT_EQ(canvas.orderOf(LineStroke{{490, 52}, {490, 620}, 1, faint}), first + 2);
    EXPECT_GT(first, canvas.orderOf(FillStroke{{6, 52, 537, 20}, OvPalette::inactiveSelectionBg}));
    EXPECT_GT(first, canvas.orderOf(canvas.theText("  b-script")));
}

TEST_F(OvPanelViewDrawing, theFooterRuleFollowsTheSeparatorsAndTheStatusLineIsLast) {
    showOneOfEachKind();
    const RecordingCanvas canvas = drawn();
    const int rule = canvas.orderOf(LineStroke{{4, 622}, {545, 622}, 1, OvPalette::dosCyan});
    EXPECT_EQ(rule, static_cast<int>(canvas.strokes.size()) - 3);
    EXPECT_EQ(canvas.orderOf(canvas.theText("Parent directory")), rule + 1);
    EXPECT_EQ(canvas.orderOf(canvas.theText("5 items")), rule + 2);
}

TEST_F(OvPanelViewDrawing, theStatusLineDescribesTheCursorRow) {
    showOneOfEachKind();
    EXPECT_EQ(drawn().theText("Parent directory"),
              (TextStroke{"Parent directory", {10, 625, 549 * 0.6, 24}, regular, OvPalette::dosBrightWhite}));
    panel->moveDown();
    desktop.timers.tickAll();
    EXPECT_TRUE(drawn().hasText("📁 folder: [/ calc] "));
    finishWalk("/d/folder", 1024);
    EXPECT_TRUE(drawn().hasText("📁 folder:    1.0 K"));
    selectRow("a-plain");
    EXPECT_TRUE(drawn().hasText("📄 a-plain:    2.0 K"));
    panel->setSizeDisplayMode(SizeDisplayMode::rawBytes);
    EXPECT_TRUE(drawn().hasText("📄 a-plain: 2,048 B"));
}

TEST_F(OvPanelViewDrawing, theRightStatusTextCountsTheParentRowTooAndNamesTheFreeSpace) {
    desktop.files.addFile("/d", "x");
    desktop.files.capacity = VolumeCapacity{.freeBytes = 1'610'612'736, .totalBytes = 9'000'000'000};
    panel->setCurrentPath("/d");
    panel->setSizeDisplayMode(SizeDisplayMode::rawBytes);
    // 23 characters = 184 points: 549 - 184 - 14 = 351
    EXPECT_EQ(
        drawn().theText("2 items |   1.50 G free"),
        (TextStroke{"2 items |   1.50 G free", {351, 625, 189, 24}, regular, OvPalette::dosBrightWhite}));
}

TEST_F(OvPanelViewDrawing, withoutAKnownCapacityOnlyTheCountIsShown) {
    desktop.files.addFile("/d", "x");
    panel->setCurrentPath("/d");
    EXPECT_EQ(drawn().theText("2 items").area, (Rect{479, 625, 61, 24}));
}

TEST_F(OvPanelViewDrawing, theRightStatusTextNeverStartsBefore10) {
    desktop.files.addFile("/d", "x");
    panel->setFrame({0, 0, 50, 648});
    panel->setCurrentPath("/d");
    EXPECT_EQ(drawn().theText("2 items").area, (Rect{10, 625, 61, 24}));
}

TEST_F(OvPanelViewDrawing, anEmptyListHasAnEmptyLeftStatusTextAndZeroItems) {
    desktop.files.makeUnreadable("/");
    desktop.files.capacity = VolumeCapacity{.freeBytes = 1024, .totalBytes = 2048};
    panel->setCurrentPath("/");
    const RecordingCanvas canvas = drawn();
    EXPECT_EQ(canvas.textAt({10, 625}), "");
    EXPECT_TRUE(canvas.hasText("0 items |    1.0 K free"));
}

TEST_F(OvPanelViewDrawing, whatIsMeasuredIsMeasuredInTheFontThatItIsDrawnIn) {
    showOneOfEachKind();
    drawn().expectMeasuredAsDrawn();
}

TEST_F(OvPanelViewDrawing, namesAreMadeHarmlessForDrawingOnly) {
    desktop.files.addFile("/d\xFF", "two\nlines");
    desktop.files.addFile("/d\xFF", "caf\xE9");
    panel->setCurrentPath("/d\xFF");
    const RecordingCanvas canvas = drawn();
    EXPECT_TRUE(canvas.hasText("╒══ /d\uFFFD ══╕"));
    EXPECT_TRUE(canvas.hasText("  caf\uFFFD"));
    EXPECT_TRUE(canvas.hasText("  two\uFFFDlines"));
    EXPECT_TRUE(canvas.hasText("📄 caf\uFFFD:    0 B "));
}

TEST_F(OvPanelViewDrawing, aRightToLeftNameIsIsolatedSoThatItsSizeStaysBehindIt) {
    desktop.files.addFile("/d", "\u05E9\u05DC\u05D5\u05DD");
    panel->setCurrentPath("/d");
    EXPECT_TRUE(drawn().hasText("📄 \u2068\u05E9\u05DC\u05D5\u05DD\u2069:    0 B "));
}

TEST_F(OvPanelViewDrawing, nothingIsKeptBetweenTwoDraws) {
    desktop.files.addFile("/d", "x");
    panel->setCurrentPath("/d");
    desktop.files.capacity = VolumeCapacity{.freeBytes = 1024, .totalBytes = 2048};
    EXPECT_TRUE(drawn().hasText("2 items |    1.0 K free"));
    desktop.files.capacity = VolumeCapacity{.freeBytes = 2048, .totalBytes = 2048};
    EXPECT_TRUE(drawn().hasText("2 items |    2.0 K free"));
}

}  // namespace
}  // namespace vantrel
