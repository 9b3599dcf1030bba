#include "commander/OvCommanderView.h"

#include <array>

#include "platform/ProcessInfo.h"
#include "text/Text.h"
#include "theme/OvPalette.h"

namespace vantrel {

namespace {

constexpr double menuMargin = 16;  // points, as are all below
constexpr double menuTextTop = 3;
constexpr double menuItemGap = 32;
constexpr double promptTextX = 8;
constexpr double promptTextTop = 2;
constexpr double numberBoxWidth = 16;
constexpr double wideNumberBoxWidth = 22;  // for two digits

constexpr std::array<std::string_view, 5> menuLabels{"Left", "Files", "Commands", "Options", "Right"};
constexpr std::string_view menuTitle = "Vantrel Commander";

}  // namespace

void OvCommanderView::draw(Canvas& canvas) {
    canvas.fill(bounds(), OvPalette::dosBlue);
    drawTopMenuBar(canvas, bounds().width);
    drawPromptBar(canvas);
    drawBottomFnBar(canvas);
}

void OvCommanderView::drawTopMenuBar(Canvas& canvas, double width) const {
    canvas.fill({0, 0, width, topMenuBarHeight}, OvPalette::dosMenuBarBg);
    const auto drawAt = [&](std::string_view words, double x, const Color& color) {
        const Size size = canvas.textSize(words, boldRetroFont_);
        canvas.text(words, {x, menuTextTop, size.width, size.height}, boldRetroFont_, color);
        return size.width;
    };
    double x = menuMargin;
    for (const std::string_view label : menuLabels) {
        x += drawAt(label.substr(0, 1), x, OvPalette::dosRed);
        x += drawAt(label.substr(1), x, OvPalette::dosBlack);
        x += menuItemGap;
    }
    const double titleWidth = canvas.textSize(menuTitle, boldRetroFont_).width;
    drawAt(menuTitle, width - titleWidth - menuMargin, OvPalette::dosDarkBlue);
}

std::string OvCommanderView::promptLine() const {
    std::string path = activePanel().currentPath();
    const std::string home = desktop_.process.homeDirectory();
    if (path.starts_with(home)) path.replace(0, home.size(), "~");
    return text::shownText(desktop_.process.userName()) + "@Mac:" + text::shownText(path) + "$ ";
}

Rect OvCommanderView::promptBar() const {
    return {0, bounds().height - bottomFnBarHeight - promptBarHeight, bounds().width, promptBarHeight};
}

void OvCommanderView::drawPromptBar(Canvas& canvas) const {
    const Rect bar = promptBar();
    canvas.fill(bar, OvPalette::dosBlue);
    canvas.text(promptLine() + "█",
                {promptTextX, bar.y + promptTextTop, bar.width - 2 * promptTextX, promptBarHeight},
                boldRetroFont_, OvPalette::dosBrightWhite);
}

void OvCommanderView::drawBottomFnBar(Canvas& canvas) const {
    for (const FnButton& button : fnButtons_) {
        if (button.rect.width > 0) drawFnCell(canvas, button);
    }
}

void OvCommanderView::drawFnCell(Canvas& canvas, const FnButton& button) const {
    const Rect& cell = button.rect;
    const double numberWidth = button.num.size() >= 2 ? wideNumberBoxWidth : numberBoxWidth;
    const Rect numberBox{cell.x, cell.y, numberWidth, cell.height};
    const Rect labelBox{cell.x + numberWidth, cell.y, cell.width - numberWidth, cell.height};
    canvas.fill(numberBox, OvPalette::fnKeyNumBg);
    canvas.fill(labelBox, OvPalette::fnKeyLblBg);

    const auto drawCentred = [&](const std::string& words, const Rect& box, const Color& color) {
        const Size size = canvas.textSize(words, boldRetroFont_);
        canvas.text(words,
                    {box.x + (box.width - size.width) / 2, box.y + (box.height - size.height) / 2, size.width,
                     size.height},
                    boldRetroFont_, color);
    };
    drawCentred(button.num, numberBox, OvPalette::fnKeyNumText);
    drawCentred(button.label, labelBox, OvPalette::fnKeyLblText);
}

}  // namespace vantrel
