#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dialog/DialogFixture.h"
#include "dialog/OvDialogOverlayView.h"
#include "theme/OvPalette.h"

namespace vantrel {
namespace {

using test::bold;
using test::FillStroke;
using test::OutlineStroke;
using test::RecordingCanvas;
using test::regular;
using test::TextStroke;

const Font small{"Menlo", 11, FontWeight::regular};

/// The canvas measures 8 points for each character and 15 for a line.
class DialogDrawing : public test::DialogFixture {
protected:
    RecordingCanvas drawn(const DialogType& type, Size window = {1100, 720}) {
        open(type, window);
        return test::DialogFixture::drawn();
    }

    void expectTitle(const DialogType& type, const std::string& title) {
        EXPECT_TRUE(drawn(type).hasText(title)) << title;
    }

    static TextStroke body(const std::string& text, const Rect& area) {
        return {text, area, regular, OvPalette::dosBlack};
    }
};

TEST_F(DialogDrawing, dimsEverythingThenPaintsShadowBoxFrameAndTitleInThisOrder) {
    const RecordingCanvas canvas = drawn(copy);
    ASSERT_GE(canvas.strokes.size(), 6U);
    EXPECT_EQ(canvas.strokes[0], test::Stroke(FillStroke{{0, 0, 1100, 720}, {0, 0, 0, 0.4}}));
    EXPECT_EQ(canvas.strokes[1], test::Stroke(FillStroke{{282, 262, 560, 220}, {0, 0, 0, 0.8}}));
    EXPECT_EQ(canvas.strokes[2], test::Stroke(FillStroke{{270, 250, 560, 220}, OvPalette::dosCyan}));
    EXPECT_EQ(canvas.strokes[3],
              test::Stroke(OutlineStroke{
                  {{273, 253, 554, 214}, {275, 255, 550, 210}}, 1.5, OvPalette::dosBrightWhite}));
    EXPECT_EQ(canvas.strokes[4], test::Stroke(FillStroke{{498, 252, 104, 22}, OvPalette::dosCyan}));
    EXPECT_EQ(canvas.strokes[5],
              test::Stroke(TextStroke{"╒══ COPY ══╕", {502, 252, 96, 22}, bold, OvPalette::dosYellow}));
}

TEST_F(DialogDrawing, givesEachKindItsTitle) {
    expectTitle(copy, "╒══ COPY ══╕");
    expectTitle(move, "╒══ RENAME / MOVE ══╕");
    expectTitle(mkdir, "╒══ MAKE DIRECTORY ══╕");
    expectTitle(deletion, "╒══ DELETE (Move to Trash) ══╕");
    expectTitle(viewer, "╒══ VIEW: a.txt ══╕");
    expectTitle(help, "╒══ HELP (Keyboard Reference) ══╕");
    expectTitle(sort, "╒══ SORT ORDER ══╕");
}

TEST_F(DialogDrawing, centresATitleThatIsLongerThanTheBox) {
    // 110 characters of name, 8 of " VIEW: " and the blank behind, 6 of decoration: 124 of 8 points each.
    const RecordingCanvas canvas = drawn(dialog::Viewer{std::string(110, 'n'), ""}, {640, 400});
    const TextStroke title = canvas.theText("╒══ VIEW: " + std::string(110, 'n') + " ══╕");
    EXPECT_EQ(title.area, (Rect{-176, 32, 992, 22}));  // box (40, 30, 560, 340)
    EXPECT_NE(canvas.orderOf(FillStroke{{-180, 32, 1000, 22}, OvPalette::dosCyan}), -1);
}

TEST_F(DialogDrawing, asksWhereToCopyTo) {
    const std::string prompt = "Copy \"a.txt\" to destination:";
    EXPECT_EQ(drawn(copy).theText(prompt), body(prompt, {300, 300, 500, 24}));
}

TEST_F(DialogDrawing, asksForTheNewName) {
    const std::string prompt = "Rename / Move \"a.txt\" to:";
    EXPECT_EQ(drawn(move).theText(prompt), body(prompt, {300, 300, 500, 24}));
}

TEST_F(DialogDrawing, asksForTheDirectorysName) {
    const std::string prompt = "Enter new directory name:";
    EXPECT_EQ(drawn(mkdir).theText(prompt), body(prompt, {300, 310, 500, 24}));
}

TEST_F(DialogDrawing, asksWhetherToDeleteWithTheNameEmphasised) {
    const RecordingCanvas canvas = drawn(deletion);
    EXPECT_EQ(canvas.theText("Do you really wish to delete:"),
              body("Do you really wish to delete:", {300, 310, 500, 24}));
    EXPECT_EQ(canvas.theText("a.txt"),
              (TextStroke{"a.txt", {300, 336, 500, 24}, bold, OvPalette::dosYellow}));
    EXPECT_EQ(canvas.theText("(Item will be safely placed in macOS Trash)"),
              body("(Item will be safely placed in macOS Trash)", {300, 364, 500, 24}));
}

TEST_F(DialogDrawing, cutsNothingFromALongName) {
    const std::string name(255, 'n');
    EXPECT_EQ(
        drawn(dialog::Copy{name, "/" + name, "/"}).theText("Copy \"" + name + "\" to destination:").area,
        (Rect{300, 300, 500, 24}));
}

TEST_F(DialogDrawing, makesNamesHarmless) {
    const std::string name = "a\nb\xFF";
    EXPECT_TRUE(drawn(dialog::Copy{name, "", ""}).hasText("Copy \"a\uFFFDb\uFFFD\" to destination:"));
    EXPECT_TRUE(drawn(dialog::Move{name, "", ""}).hasText("Rename / Move \"a\uFFFDb\uFFFD\" to:"));
    EXPECT_TRUE(drawn(dialog::Delete{name, ""}).hasText("a\uFFFDb\uFFFD"));
    EXPECT_TRUE(drawn(dialog::Viewer{name, ""}).hasText("╒══ VIEW: a\uFFFDb\uFFFD ══╕"));
}

TEST_F(DialogDrawing, showsAFilesLinesFifteenPointsApart) {
    const RecordingCanvas canvas = drawn(viewer);
    EXPECT_NE(canvas.orderOf(FillStroke{{55, 60, 990, 575}, OvPalette::dosBlue}), -1);
    EXPECT_EQ(canvas.theText("first"),
              (TextStroke{"first", {63, 66, 974, 16}, small, OvPalette::dosBrightWhite}));
    EXPECT_EQ(canvas.theText("second"),
              (TextStroke{"second", {63, 81, 974, 16}, small, OvPalette::dosBrightWhite}));
}

TEST_F(DialogDrawing, showsTheLinesOfAFileThatFit) {
    std::string content;
    for (int line = 0; line < 100; ++line) content += "line" + std::to_string(line) + "\n";
    const RecordingCanvas canvas = drawn(dialog::Viewer{"f", content});
    EXPECT_EQ(canvas.theText("line36").area.y, 606) << "the last y of 66 + 15 k that is not below 635 - 16";
    EXPECT_FALSE(canvas.hasText("line37"));
}

TEST_F(DialogDrawing, drawsALineThatJustFits) {
    // Box (40, 30, 560, 300 + k), area from 60 to 275 + k; the lines stand at 66, 81, ... 261, 276.
    const DialogType lines = dialog::Viewer{"f", std::string(20, '\n')};
    const auto count = [&](double windowHeight) {
        int found = 0;
        for (const TextStroke& text : drawn(lines, {640, windowHeight}).all<TextStroke>())
            found += text.font == small;
        return found;
    };
    EXPECT_EQ(count(377), 15) << "area ends at 292, and 292 - 16 is not less than 276";
    EXPECT_EQ(count(376), 14);
}

TEST_F(DialogDrawing, showsNoMoreThanEightyLinesInATallWindow) {
    std::string content;
    for (int line = 0; line < 100; ++line) content += "line" + std::to_string(line) + "\n";
    const RecordingCanvas canvas = drawn(dialog::Viewer{"f", content}, {1100, 3000});
    EXPECT_TRUE(canvas.hasText("line79"));
    EXPECT_FALSE(canvas.hasText("line80"));
}

TEST_F(DialogDrawing, showsTheStartOfALineOfAnyLength) {
    const RecordingCanvas canvas = drawn(dialog::Viewer{"f", std::string(200'000, 'x')});
    for (const TextStroke& text : canvas.all<TextStroke>()) {
        if (text.font == small) {
            EXPECT_GT(text.text.size(), 974U / 4) << "more than the box has room for";
            EXPECT_LT(text.text.size(), 10'000U) << "not all of it, which would cost at every redraw";
        }
    }
}

TEST_F(DialogDrawing, listsTheTwentyKeysInTheirOrder) {
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"TAB         ", "Switch Active Panel (Left <-> Right)"},
        {"ENTER       ", "Open Folder / Launch File"},
        {"BACKSPACE   ", "Navigate to Parent Directory"},
        {"SPACE       ", "macOS QuickLook Preview"},
        {"UP / DOWN   ", "Navigate items in list"},
        {"PGUP / PGDN ", "Scroll page up / page down"},
        {"HOME / END  ", "Jump to top / bottom of list"},
        {"F1          ", "Show this Help dialog"},
        {"F2          ", "Toggle Size format (Human-Readable <-> Bytes)"},
        {"F3          ", "View File contents (ASCII / Code viewer)"},
        {"F4          ", "Open File in default system Editor"},
        {"F5          ", "Copy file/folder to opposite panel"},
        {"F6          ", "Rename or Move file/folder"},
        {"F7          ", "Create new Directory (Mkdir)"},
        {"F8          ", "Delete item (Safely moves to macOS Trash)"},
        {"F9          ", "Change Sort Order (Size, Name, Date, Ext)"},
        {"F10 / CMD+Q ", "Quit application"},
        {"CMD+O       ", "Reveal current folder in Finder"},
        {"CMD+T       ", "Open current directory in macOS Terminal"},
        {"TYPE CHARS  ", "Quick-search & jump to matching item"},
    };
    std::vector<TextStroke> expected;
    double y = 147;
    for (const auto& [key, description] : rows) {
        expected.push_back({key, {255, y, 120, 18}, bold, OvPalette::dosBlack});
        expected.push_back({description, {380, y, 470, 18}, regular, OvPalette::dosBlack});
        y += 19;
    }
    EXPECT_EQ(expected.back().area.y, 508);
    std::vector<TextStroke> texts = drawn(help).all<TextStroke>();
    ASSERT_EQ(texts.size(), 42U) << "title, forty cells, button";
    EXPECT_EQ(std::vector(texts.begin() + 1, texts.end() - 1), expected);
}

TEST_F(DialogDrawing, listsTheFourSortOrders) {
    const RecordingCanvas canvas = drawn(sort);
    const std::vector<std::string> lines = {
        "1.  Name       (Alphabetical)",
        "2.  Size       (Largest Folders & Files first)",
        "3.  Date       (Most recently modified first)",
        "4.  Extension  (By file type)",
    };
    double y = 280;
    for (const std::string& line : lines) {
        EXPECT_EQ(canvas.theText(line), body(line, {320, y, 480, 26}));
        y += 32;
    }
}

TEST_F(DialogDrawing, paintsTheButtonsTwentySixHighWithTheirLabelsCentred) {
    const RecordingCanvas canvas = drawn(copy);
    const std::vector<test::Stroke> buttons(canvas.strokes.end() - 6, canvas.strokes.end());
    EXPECT_EQ(buttons[0], test::Stroke(FillStroke{{430, 425, 100, 26}, OvPalette::dosYellow}));
    EXPECT_EQ(buttons[1], test::Stroke(OutlineStroke{{{430, 425, 100, 26}}, 1, OvPalette::dosBlack}));
    EXPECT_EQ(buttons[2],
              test::Stroke(TextStroke{" Copy ", {456, 430.5, 48, 15}, bold, OvPalette::dosBrightWhite}));
    EXPECT_EQ(buttons[3], test::Stroke(FillStroke{{550, 425, 100, 26}, OvPalette::dosDarkBlue}));
    EXPECT_EQ(buttons[4], test::Stroke(OutlineStroke{{{550, 425, 100, 26}}, 1, OvPalette::dosBlack}));
    EXPECT_EQ(buttons[5],
              test::Stroke(TextStroke{"Cancel", {576, 430.5, 48, 15}, bold, OvPalette::dosBrightWhite}));
}

TEST_F(DialogDrawing, measuresItsTextsInTheFontThatTheyAreDrawnIn) {
    drawn(copy).expectMeasuredAsDrawn();
}

TEST_F(DialogDrawing, highlightsTheSelectedButtonOnly) {
    open(copy);
    press(Key::tab);
    const RecordingCanvas canvas = test::DialogFixture::drawn();
    EXPECT_NE(canvas.orderOf(FillStroke{{430, 425, 100, 26}, OvPalette::dosDarkBlue}), -1);
    EXPECT_NE(canvas.orderOf(FillStroke{{550, 425, 100, 26}, OvPalette::dosYellow}), -1);
    EXPECT_EQ(canvas.theText(" Copy ").color, OvPalette::dosBrightWhite);
    EXPECT_EQ(canvas.theText("Cancel").color, OvPalette::dosBrightWhite);
}

TEST_F(DialogDrawing, putsTheOnlyButtonLeftOfTheMiddle) {
    EXPECT_NE(drawn(help).orderOf(FillStroke{{490, 560, 100, 26}, OvPalette::dosYellow}), -1);
    EXPECT_NE(drawn(viewer).orderOf(FillStroke{{490, 645, 100, 26}, OvPalette::dosYellow}), -1);
}

TEST_F(DialogDrawing, usesTheFontsOfTheDesktop) {
    desktop.fonts = test::FakeFontCatalog(std::set<std::string, std::less<>>{});
    const RecordingCanvas canvas = drawn(viewer);
    EXPECT_EQ(canvas.theText("first").font, (Font{"System Mono", 11, FontWeight::regular}));
    EXPECT_EQ(canvas.theText(" Close ").font, (Font{"System Mono", 13, FontWeight::bold}));
}

}  // namespace
}  // namespace vantrel
