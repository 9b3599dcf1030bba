#include "dialog/DialogPainter.h"

#include <array>
#include <string>

#include "dialog/DialogGeometry.h"
#include "dialog/DialogTexts.h"
#include "theme/OvPalette.h"

namespace vantrel::dialog {

namespace {

constexpr double fontSize = 13;  // points
constexpr double fileContentFontSize = 11;
constexpr double dimming = 0.4;
constexpr double shadowOpacity = 0.8;

// Ends of a title that lies on a double line; the palette's box characters have no such corners.
constexpr std::string_view titleStart = "╒══";
constexpr std::string_view titleEnd = "══╕";

void paintBox(Canvas& canvas, const Rect& box) {
    canvas.fill(box.movedBy(shadowOffset, shadowOffset), OvPalette::dosBlack.withAlpha(shadowOpacity));
    canvas.fill(box, OvPalette::dosCyan);
    const std::array frame = {box.inset(outerFrameInset), box.inset(innerFrameInset)};
    canvas.stroke(frame, frameLineWidth, OvPalette::dosBrightWhite);
}

// A title longer than the box stays in its middle and runs over the frame.
void paintTitle(Canvas& canvas, const Rect& box, const std::string& title, const Font& font) {
    const std::string words = std::string(titleStart) + title + std::string(titleEnd);
    const double width = canvas.textSize(words, font).width;
    const Rect area{box.minX() + (box.width - width) * 0.5, box.minY() + titleTop, width, titleHeight};
    canvas.fill({area.x - titleMargin, area.y, area.width + 2 * titleMargin, area.height},
                OvPalette::dosCyan);
    canvas.text(words, area, font, OvPalette::dosYellow);
}

void paintBodyText(Canvas& canvas, const BodyText& text, const Fonts& fonts) {
    switch (text.style) {
        case TextStyle::plain:
            return canvas.text(text.text, text.area, fonts.regular, OvPalette::dosBlack);
        case TextStyle::strong:
            return canvas.text(text.text, text.area, fonts.bold, OvPalette::dosBlack);
        case TextStyle::emphasised:
            return canvas.text(text.text, text.area, fonts.bold, OvPalette::dosYellow);
        case TextStyle::fileContent:
            return canvas.text(text.text, text.area, fonts.fileContent, OvPalette::dosBrightWhite);
    }
}

void paintButton(Canvas& canvas, const Rect& button, const std::string& label, const Color& ground,
                 const Font& font) {
    canvas.fill(button, ground);
    canvas.stroke(std::array{button}, buttonLineWidth, OvPalette::dosBlack);
    const Size size = canvas.textSize(label, font);
    canvas.text(label,
                {button.x + (button.width - size.width) * 0.5, button.y + (button.height - size.height) * 0.5,
                 size.width, size.height},
                font, OvPalette::dosBrightWhite);
}

}  // namespace

Fonts retroFonts(const FontCatalog& catalog) {
    return {OvPalette::retroFont(catalog, fontSize, FontWeight::regular),
            OvPalette::retroFont(catalog, fontSize, FontWeight::bold),
            OvPalette::retroFont(catalog, fileContentFontSize, FontWeight::regular)};
}

TextFieldStyle fieldStyle(const Fonts& fonts) {
    return {
        .font = fonts.regular, .textColor = OvPalette::dosBrightWhite, .background = OvPalette::dosDarkBlue};
}

void paintDialog(Canvas& canvas, const Rect& view, const DialogState& state, const Fonts& fonts) {
    canvas.fill(view, OvPalette::dosBlack.withAlpha(dimming));
    const Rect box = boxOf(state, view);
    paintBox(canvas, box);
    paintTitle(canvas, box, title(state.type), fonts.bold);
    if (isViewer(state.type)) canvas.fill(viewerArea(box), OvPalette::dosBlue);
    for (const BodyText& text : bodyTexts(state.type, box)) paintBodyText(canvas, text, fonts);
    for (std::size_t index = 0; index < state.buttons.size(); ++index) {
        const bool isSelected = static_cast<int>(index) == state.selectedButton;
        paintButton(canvas, paintedButton(box, index, state.buttons.size()), state.buttons[index],
                    isSelected ? OvPalette::dosYellow : OvPalette::dosDarkBlue, fonts.bold);
    }
}

}  // namespace vantrel::dialog
