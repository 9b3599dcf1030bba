#include "dialog/OvDialogOverlayView.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "dialog/ViewerLines.h"
#include "text/Text.h"
#include "theme/OvPalette.h"

namespace vantrel {

namespace {

// Points, from the box's edges.
constexpr double dimming = 0.4;
constexpr double shadowOffset = 12;
constexpr double shadowOpacity = 0.8;
constexpr double outerFrameInset = 3;
constexpr double innerFrameInset = 5;
constexpr double frameLineWidth = 1.5;
constexpr double titleTop = 2;
constexpr double titleMargin = 4;
constexpr double titleHeight = 22;
constexpr double textMargin = 30;
constexpr double promptTop = 50;
constexpr double lineHeight = 24;
constexpr double itemNameTop = 76;
constexpr double trashNoteTop = 104;
constexpr Size paintedButton{100, 26};
constexpr double buttonLineWidth = 1;

constexpr double viewerFontSize = 11;
constexpr std::size_t viewerLineLimit = 80;
constexpr double viewerSideMargin = 15;
constexpr double viewerTop = 30;
constexpr double viewerEndMargins = 85;
constexpr double viewerTextMargin = 8;
constexpr double viewerTextTop = 6;
constexpr double viewerLineHeight = 16;
constexpr double viewerLinePitch = 15;
constexpr double viewerBytesPerPoint = 8;

constexpr double helpTop = 32;
constexpr double helpPitch = 19;
constexpr double helpLineHeight = 18;
constexpr double helpKeyX = 25;
constexpr double helpKeyWidth = 120;
constexpr double helpDescriptionX = 150;
constexpr double helpDescriptionMargins = 170;
constexpr std::size_t helpKeyCharacters = 12;

constexpr double sortX = 50;
constexpr double sortMargins = 80;
constexpr double sortTop = 50;
constexpr double sortPitch = 32;
constexpr double sortLineHeight = 26;

struct KeyDescription {
    std::string_view key;
    std::string_view description;
};

constexpr std::array<KeyDescription, 20> keyboardReference = {{
    {"TAB", "Switch Active Panel (Left <-> Right)"},
    {"ENTER", "Open Folder / Launch File"},
    {"BACKSPACE", "Navigate to Parent Directory"},
    {"SPACE", "macOS QuickLook Preview"},
    {"UP / DOWN", "Navigate items in list"},
    {"PGUP / PGDN", "Scroll page up / page down"},
    {"HOME / END", "Jump to top / bottom of list"},
    {"F1", "Show this Help dialog"},
    {"F2", "Toggle Size format (Human-Readable <-> Bytes)"},
    {"F3", "View File contents (ASCII / Code viewer)"},
    {"F4", "Open File in default system Editor"},
    {"F5", "Copy file/folder to opposite panel"},
    {"F6", "Rename or Move file/folder"},
    {"F7", "Create new Directory (Mkdir)"},
    {"F8", "Delete item (Safely moves to macOS Trash)"},
    {"F9", "Change Sort Order (Size, Name, Date, Ext)"},
    {"F10 / CMD+Q", "Quit application"},
    {"CMD+O", "Reveal current folder in Finder"},
    {"CMD+T", "Open current directory in macOS Terminal"},
    {"TYPE CHARS", "Quick-search & jump to matching item"},
}};

constexpr std::array<std::string_view, 4> sortLines = {
    "1.  Name       (Alphabetical)",
    "2.  Size       (Largest Folders & Files first)",
    "3.  Date       (Most recently modified first)",
    "4.  Extension  (By file type)",
};

struct TitleOf {
    std::string operator()(const dialog::Copy&) const { return " COPY "; }
    std::string operator()(const dialog::Move&) const { return " RENAME / MOVE "; }
    std::string operator()(const dialog::Mkdir&) const { return " MAKE DIRECTORY "; }
    std::string operator()(const dialog::Delete&) const { return " DELETE (Move to Trash) "; }
    std::string operator()(const dialog::Viewer& viewer) const {
        return " VIEW: " + text::shownText(viewer.fileName) + " ";
    }
    std::string operator()(const dialog::Help&) const { return " HELP (Keyboard Reference) "; }
    std::string operator()(const dialog::Sort&) const { return " SORT ORDER "; }
};

std::string padded(std::string_view label, std::size_t width) {
    std::string text(label);
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

std::string quoted(const std::string& name) {
    return '"' + text::shownText(name) + '"';
}

}  // namespace

void OvDialogOverlayView::draw(Canvas& canvas) {
    canvas.fill(bounds(), OvPalette::dosBlack.withAlpha(dimming));
    const Rect box = dialogRect();
    drawBox(canvas, box);
    drawTitle(canvas, box);
    drawBody(canvas);
    drawButtons(canvas);
}

void OvDialogOverlayView::drawBox(Canvas& canvas, const Rect& box) const {
    canvas.fill(box.movedBy(shadowOffset, shadowOffset), OvPalette::dosBlack.withAlpha(shadowOpacity));
    canvas.fill(box, OvPalette::dosCyan);
    const std::array frame = {box.inset(outerFrameInset), box.inset(innerFrameInset)};
    canvas.stroke(frame, frameLineWidth, OvPalette::dosBrightWhite);
}

std::string OvDialogOverlayView::title() const {
    return std::visit(TitleOf{}, dialogType_);
}

void OvDialogOverlayView::drawTitle(Canvas& canvas, const Rect& box) const {
    const std::string words = "╒══" + title() + "══╕";
    const double width = canvas.textSize(words, boldRetroFont_).width;
    const Rect area{box.minX() + (box.width - width) * 0.5, box.minY() + titleTop, width, titleHeight};
    canvas.fill({area.x - titleMargin, area.y, area.width + 2 * titleMargin, area.height},
                OvPalette::dosCyan);
    canvas.text(words, area, boldRetroFont_, OvPalette::dosYellow);
}

void OvDialogOverlayView::drawBody(Canvas& canvas) const {
    if (isViewer(dialogType_)) canvas.fill(viewerArea(), OvPalette::dosBlue);
    for (const BodyText& line : bodyTexts()) canvas.text(line.text, line.area, line.font, line.color);
}

std::vector<OvDialogOverlayView::BodyText> OvDialogOverlayView::bodyTexts() const {
    return std::visit([this](const auto& type) { return bodyTexts(type); }, dialogType_);
}

OvDialogOverlayView::BodyText OvDialogOverlayView::prompt(std::string text) const {
    const Rect box = dialogRect();
    return {std::move(text),
            {box.minX() + textMargin, box.minY() + promptTop, box.width - 2 * textMargin, lineHeight},
            retroFont_,
            OvPalette::dosBlack};
}

std::vector<OvDialogOverlayView::BodyText> OvDialogOverlayView::bodyTexts(const dialog::Copy& copy) const {
    return {prompt("Copy " + quoted(copy.sourceName) + " to destination:")};
}

std::vector<OvDialogOverlayView::BodyText> OvDialogOverlayView::bodyTexts(const dialog::Move& move) const {
    return {prompt("Rename / Move " + quoted(move.sourceName) + " to:")};
}

std::vector<OvDialogOverlayView::BodyText> OvDialogOverlayView::bodyTexts(const dialog::Mkdir&) const {
    return {prompt("Enter new directory name:")};
}

std::vector<OvDialogOverlayView::BodyText> OvDialogOverlayView::bodyTexts(
    const dialog::Delete& deletion) const {
    const Rect box = dialogRect();
    const Rect line{box.minX() + textMargin, box.minY(), box.width - 2 * textMargin, lineHeight};
    return {prompt("Do you really wish to delete:"),
            {text::shownText(deletion.itemName), line.movedBy(0, itemNameTop), boldRetroFont_,
             OvPalette::dosYellow},
            {"(Item will be safely placed in macOS Trash)", line.movedBy(0, trashNoteTop), retroFont_,
             OvPalette::dosBlack}};
}

Rect OvDialogOverlayView::viewerArea() const {
    const Rect box = dialogRect();
    return {box.minX() + viewerSideMargin, box.minY() + viewerTop, box.width - 2 * viewerSideMargin,
            box.height - viewerEndMargins};
}

std::vector<OvDialogOverlayView::BodyText> OvDialogOverlayView::bodyTexts(
    const dialog::Viewer& viewer) const {
    const Rect area = viewerArea();
    const Font font = OvPalette::retroFont(fonts_, viewerFontSize, FontWeight::regular);
    Rect line{area.minX() + viewerTextMargin, area.minY() + viewerTextTop, area.width - 2 * viewerTextMargin,
              viewerLineHeight};
    // A line of a hundred thousand characters would be laid out at every redraw, though all but its start
    // lies beyond the edge.
    const auto byteLimit = static_cast<std::size_t>(line.width * viewerBytesPerPoint);
    std::vector<BodyText> texts;
    for (std::string& text : viewerLines(viewer.content, viewerLineLimit, byteLimit)) {
        if (area.maxY() - viewerLineHeight < line.y) break;
        texts.push_back({std::move(text), line, font, OvPalette::dosBrightWhite});
        line.y += viewerLinePitch;
    }
    return texts;
}

std::vector<OvDialogOverlayView::BodyText> OvDialogOverlayView::bodyTexts(const dialog::Help&) const {
    const Rect box = dialogRect();
    std::vector<BodyText> texts;
    double y = box.minY() + helpTop;
    for (const auto& [key, description] : keyboardReference) {
        texts.push_back({padded(key, helpKeyCharacters),
                         {box.minX() + helpKeyX, y, helpKeyWidth, helpLineHeight},
                         boldRetroFont_,
                         OvPalette::dosBlack});
        texts.push_back(
            {std::string(description),
             {box.minX() + helpDescriptionX, y, box.width - helpDescriptionMargins, helpLineHeight},
             retroFont_,
             OvPalette::dosBlack});
        y += helpPitch;
    }
    return texts;
}

std::vector<OvDialogOverlayView::BodyText> OvDialogOverlayView::bodyTexts(const dialog::Sort&) const {
    const Rect box = dialogRect();
    Rect line{box.minX() + sortX, box.minY() + sortTop, box.width - sortMargins, sortLineHeight};
    std::vector<BodyText> texts;
    for (const std::string_view text : sortLines) {
        texts.push_back({std::string(text), line, retroFont_, OvPalette::dosBlack});
        line.y += sortPitch;
    }
    return texts;
}

Rect OvDialogOverlayView::buttonRect(std::size_t index) const {
    const Point corner = buttonCorner(index);
    return {corner.x, corner.y, paintedButton.width, paintedButton.height};
}

void OvDialogOverlayView::drawButtons(Canvas& canvas) const {
    for (std::size_t index = 0; index < buttons_.size(); ++index) {
        const Rect button = buttonRect(index);
        const bool isSelected = static_cast<int>(index) == selectedButtonIndex_;
        canvas.fill(button, isSelected ? OvPalette::dosYellow : OvPalette::dosDarkBlue);
        canvas.stroke(std::array{button}, buttonLineWidth, OvPalette::dosBlack);
        const Size label = canvas.textSize(buttons_[index], boldRetroFont_);
        canvas.text(buttons_[index],
                    {button.x + (button.width - label.width) * 0.5,
                     button.y + (button.height - label.height) * 0.5, label.width, label.height},
                    boldRetroFont_, OvPalette::dosBrightWhite);
    }
}

}  // namespace vantrel
