#include "commander/BarsPainter.h"

#include "commander/CommanderGeometry.h"
#include "theme/OvPalette.h"

namespace vantrel::commander {

namespace {

// Returns how wide the words are.
double paintWords(Canvas& canvas, std::string_view words, Point at, const Font& font, const Color& color) {
    const Size size = canvas.textSize(words, font);
    canvas.text(words, {at.x, at.y, size.width, size.height}, font, color);
    return size.width;
}

// In a narrow window the labels run under the title; they are decoration, and nothing is cut for them.
void paintMenuBar(Canvas& canvas, const Rect& view, const Font& font) {
    canvas.fill(menuBar(view), OvPalette::dosMenuBarBg);
    double x = menuMargin;
    for (const std::string_view label : menuLabels) {
        x += paintWords(canvas, label.substr(0, 1), {x, menuTextTop}, font, OvPalette::dosRed);
        x += paintWords(canvas, label.substr(1), {x, menuTextTop}, font, OvPalette::dosBlack);
        x += menuItemGap;
    }
    const double titleX = view.width - canvas.textSize(menuTitle, font).width - menuMargin;
    paintWords(canvas, menuTitle, {titleX, menuTextTop}, font, OvPalette::dosDarkBlue);
}

void paintPromptBar(Canvas& canvas, const Rect& view, const std::string& prompt, const Font& font) {
    canvas.fill(promptBar(view), OvPalette::dosBlue);
    canvas.text(prompt + std::string(promptCursor), promptText(view), font, OvPalette::dosBrightWhite);
}

void paintCentred(Canvas& canvas, const std::string& words, const Rect& box, const Font& font,
                  const Color& color) {
    const Size size = canvas.textSize(words, font);
    canvas.text(words,
                {box.x + (box.width - size.width) / 2, box.y + (box.height - size.height) / 2, size.width,
                 size.height},
                font, color);
}

void paintFnCell(Canvas& canvas, const FnButton& button, const Font& font) {
    const Rect numberBox = fnNumberBox(button.rect, button.num.size());
    const Rect labelBox = fnLabelBox(button.rect, numberBox);
    canvas.fill(numberBox, OvPalette::fnKeyNumBg);
    canvas.fill(labelBox, OvPalette::fnKeyLblBg);
    paintCentred(canvas, button.num, numberBox, font, OvPalette::fnKeyNumText);
    paintCentred(canvas, button.label, labelBox, font, OvPalette::fnKeyLblText);
}

}  // namespace

void paintBars(Canvas& canvas, const Rect& view, const BarsState& state, const Font& font) {
    canvas.fill(view, OvPalette::dosBlue);
    paintMenuBar(canvas, view, font);
    paintPromptBar(canvas, view, state.prompt, font);
    for (const FnButton& button : state.fnButtons) {
        if (button.rect.width > 0) paintFnCell(canvas, button, font);
    }
}

}  // namespace vantrel::commander
