#include "panel/OvPanelView.h"

#include <algorithm>
#include <array>

#include "model/engine/VantrelEngine.h"
#include "panel/PanelGeometry.h"
#include "text/Text.h"
#include "theme/OvPalette.h"

namespace vantrel {

using namespace panel;

namespace {

constexpr double listSeparatorOpacity = 0.4;

constexpr std::size_t longestTitlePath = 45;  // characters
constexpr std::size_t keptTitleCharacters = 42;

struct RowColors {
    const Color& name;
    const Color& size;
    const Color& date;
};

RowColors colorsOf(const FileItem& item) {
    using P = OvPalette;
    if (item.isParentDir) return {P::dosYellow, P::dosYellow, P::dosLightGray};
    if (item.isDirectory) {
        return {P::dosYellow, isCalculated(item.vantrelState) ? P::dosBrightCyan : P::dosLightGray,
                P::dosLightGray};
    }
    if (item.isExecutable) return {P::dosGreen, P::dosWhite, P::dosLightGray};
    if (item.isHidden) return {P::dosDarkGray, P::dosDarkGray, P::dosLightGray};
    return {P::dosWhite, P::dosLightGray, P::dosLightGray};
}

RowColors selectionColors(bool isActivePanel) {
    const Color& text = isActivePanel ? OvPalette::activeSelectionText : OvPalette::inactiveSelectionText;
    return {text, text, text};
}

std::string nameText(const FileItem& item) {
    const std::string name = text::shownText(item.name);
    if (item.isParentDir) return "▲ " + name;
    return (item.isDirectory ? "/ " : "  ") + name;
}

std::string titlePath(const std::string& path) {
    if (text::characterCount(path) <= longestTitlePath) return text::shownText(path);
    return "..." + text::shownText(text::lastCharacters(path, keptTitleCharacters));
}

}  // namespace

const Color& OvPanelView::frameColor() const {
    return isActivePanel_ ? OvPalette::dosBrightCyan : OvPalette::dosCyan;
}

void OvPanelView::draw(Canvas& canvas) {
    const double w = bounds().width;
    const double h = bounds().height;
    canvas.fill(bounds(), OvPalette::dosBlue);
    drawFrameAndTitle(canvas);
    drawColumnHeaders(canvas);
    drawRows(canvas);
    drawListSeparators(canvas);
    canvas.line({innerFrameInset, h - footerRuleFromBottom}, {w - innerFrameInset, h - footerRuleFromBottom},
                ruleWidth, frameColor());
    drawStatusLine(canvas);
}

void OvPanelView::drawFrameAndTitle(Canvas& canvas) const {
    const double w = bounds().width;
    const std::array frame{bounds().inset(outerFrameInset), bounds().inset(innerFrameInset)};
    canvas.stroke(frame, frameLineWidth, frameColor());

    const std::string title = "╒══ " + titlePath(currentPath_) + " ══╕";
    const double measured = canvas.textSize(title, boldRetroFont_).width;
    const double x = std::max(textMargin, (w - measured) / 2);
    const double width = std::min(measured, w - 2 * textMargin);
    canvas.fill({x - titlePatchMargin, 0, width + 2 * titlePatchMargin, titlePatchHeight},
                OvPalette::dosBlue);
    canvas.text(title, {x, titleTop, width, textHeight}, boldRetroFont_,
                isActivePanel_ ? OvPalette::dosYellow : OvPalette::dosLightGray);
}

void OvPanelView::drawColumnHeaders(Canvas& canvas) const {
    const double w = bounds().width;
    const Columns columns(w);
    canvas.line({innerFrameInset, headerRuleY}, {w - innerFrameInset, headerRuleY}, ruleWidth, frameColor());
    for (const double x : columns.separators()) {
        canvas.line({x, headerTop}, {x, headerRuleY}, ruleWidth, frameColor());
    }

    const auto drawTitle = [&](const std::string& title, double x, double width,
                               std::optional<SortField> field) {
        const bool isSorted = field == sortField_;
        const char* arrow = sortDirection_ == SortDirection::ascending ? " ▲" : " ▼";
        canvas.text(isSorted ? title + arrow : title, {x, headerTextTop, width, textHeight}, boldRetroFont_,
                    isSorted ? OvPalette::dosBrightWhite : OvPalette::dosYellow);
    };
    drawTitle(" Name", textMargin, columns.start - textMargin, SortField::name);
    drawTitle("Size", columns.size + titleInset, sizeTitleWidth, SortField::size);
    drawTitle("Date", columns.date + titleInset, dateTitleWidth, SortField::date);
    drawTitle("Time", columns.time + titleInset, timeTitleWidth, std::nullopt);
}

void OvPanelView::drawRows(Canvas& canvas) const {
    for (std::int64_t row = cursor_.offset(); row < cursor_.endInSight(); ++row) drawRow(canvas, row);
}

void OvPanelView::drawRow(Canvas& canvas, std::int64_t index) const {
    const FileItem& item = *items_[static_cast<std::size_t>(index)];
    const double w = bounds().width;
    const double y = rowTop(index - cursor_.offset());
    const double textY = y + rowTextInset;
    const Columns columns(w);
    const bool isSelected = index == cursor_.index();
    if (isSelected) {
        canvas.fill({selectionInset, y, w - 2 * selectionInset, rowHeight},
                    isActivePanel_ ? OvPalette::activeSelectionBg : OvPalette::inactiveSelectionBg);
    }
    const RowColors colors = isSelected ? selectionColors(isActivePanel_) : colorsOf(item);

    canvas.text(nameText(item), {textMargin, textY, columns.start - (textMargin + nameGap), rowHeight},
                item.isDirectory ? boldRetroFont_ : retroFont_, colors.name);

    const std::string size = item.formattedSize(sizeDisplayMode_, spinnerFrame_);
    const double sizeWidth = canvas.textSize(size, retroFont_).width;
    canvas.text(size,
                {std::max(columns.size + sizeInset, columns.date - sizeWidth - sizeGap), textY,
                 columns.date - columns.size - sizeGap, rowHeight},
                retroFont_, colors.size);

    canvas.text(item.formattedDate(), {columns.date + dateInset, textY, dateTextWidth, rowHeight}, retroFont_,
                colors.date);
    canvas.text(item.formattedTime(), {columns.time + dateInset, textY, timeTextWidth, rowHeight}, retroFont_,
                colors.date);
}

void OvPanelView::drawListSeparators(Canvas& canvas) const {
    const Color color = OvPalette::dosCyan.withAlpha(listSeparatorOpacity);
    for (const double x : Columns(bounds().width).separators()) {
        canvas.line({x, rowsTop}, {x, bounds().height - listEndFromBottom}, ruleWidth, color);
    }
}

void OvPanelView::drawStatusLine(Canvas& canvas) const {
    const double w = bounds().width;
    const double y = bounds().height - statusFromBottom;
    canvas.text(statusText(), {textMargin, y, w * statusShare, textHeight}, retroFont_,
                OvPalette::dosBrightWhite);

    const std::string right = countAndFreeSpaceText();
    const double width = canvas.textSize(right, retroFont_).width;
    canvas.text(right, {std::max(textMargin, w - width - countMargin), y, width + countSlack, textHeight},
                retroFont_, OvPalette::dosBrightWhite);
}

std::string OvPanelView::statusText() const {
    const std::shared_ptr<FileItem> item = selectedItem();
    if (!item) return "";
    if (item->isParentDir) return "Parent directory";
    const std::string name = text::shownText(item->name) + ": ";
    if (item->isDirectory) return "📁 " + name + item->formattedSize(sizeDisplayMode_, spinnerFrame_);
    return "📄 " + name + item->formattedSize(sizeDisplayMode_);
}

std::string OvPanelView::countAndFreeSpaceText() const {
    std::string text = std::to_string(items_.size()) + " items";
    if (const auto capacity = VantrelEngine::getVolumeCapacity(desktop_.files, currentPath_)) {
        text += " | " + FileItem::formatBytes(capacity->freeBytes, SizeDisplayMode::humanReadable) + " free";
    }
    return text;
}

}  // namespace vantrel
