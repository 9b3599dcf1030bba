#include "panel/PanelPainter.h"

#include <algorithm>
#include <array>

#include "panel/PanelGeometry.h"
#include "panel/PanelLook.h"
#include "theme/OvPalette.h"

namespace vantrel {

using namespace panel;

namespace {

constexpr double listSeparatorOpacity = 0.4;

class PanelPainter {
public:
    PanelPainter(Canvas& canvas, Size size, const PanelFonts& fonts, const PanelState& state)
        : canvas_(canvas), w_(size.width), h_(size.height), columns_(w_), fonts_(fonts), state_(state) {}

    void paint() const {
        canvas_.fill({0, 0, w_, h_}, OvPalette::dosBlue);
        paintFrame();
        paintTitle();
        paintHeader();
        for (std::int64_t row = state_.cursor.offset(); row < state_.cursor.endInSight(); ++row)
            paintRow(row);
        paintListSeparators();
        paintRule(h_ - footerRuleFromBottom);
        paintStatusLine();
    }

private:
    void paintFrame() const {
        const Rect area{0, 0, w_, h_};
        const std::array frame{area.inset(outerFrameInset), area.inset(innerFrameInset)};
        canvas_.stroke(frame, frameLineWidth, frameColor(state_.isActive));
    }

    // The patch erases the frame behind the text.
    void paintTitle() const {
        const std::string title = titleText(state_);
        const double measured = canvas_.textSize(title, fonts_.bold).width;
        const double x = std::max(textMargin, (w_ - measured) / 2);
        const double width = std::min(measured, w_ - 2 * textMargin);
        canvas_.fill({x - titlePatchMargin, 0, width + 2 * titlePatchMargin, titlePatchHeight},
                     OvPalette::dosBlue);
        canvas_.text(title, {x, titleTop, width, textHeight}, fonts_.bold, titleColor(state_.isActive));
    }

    void paintHeader() const {
        paintRule(headerRuleY);
        for (const double x : columns_.separators()) {
            canvas_.line({x, headerTop}, {x, headerRuleY}, ruleWidth, frameColor(state_.isActive));
        }
        paintColumnTitle(nameColumn, textMargin, columns_.start - textMargin);
        paintColumnTitle(sizeColumn, columns_.size + titleInset, sizeTitleWidth);
        paintColumnTitle(dateColumn, columns_.date + titleInset, dateTitleWidth);
        paintColumnTitle(timeColumn, columns_.time + titleInset, timeTitleWidth);
    }

    void paintColumnTitle(std::size_t column, double x, double width) const {
        canvas_.text(columnTitleText(state_, column), {x, headerTextTop, width, textHeight}, fonts_.bold,
                     columnTitleColor(state_, column));
    }

    void paintRow(std::int64_t row) const {
        const FileItem& item = state_.item(row);
        const double y = rowTop(row - state_.cursor.offset());
        if (row == state_.cursor.index()) {
            canvas_.fill({selectionInset, y, w_ - 2 * selectionInset, rowHeight},
                         selectionGround(state_.isActive));
        }
        const RowColors colors = rowColors(state_, row);
        const double textY = y + rowTextInset;
        canvas_.text(nameText(item), {textMargin, textY, columns_.start - (textMargin + nameGap), rowHeight},
                     item.isDirectory ? fonts_.bold : fonts_.regular, colors.name);
        paintSize(item, textY, colors.size);
        canvas_.text(item.formattedDate(), {columns_.date + dateInset, textY, dateTextWidth, rowHeight},
                     fonts_.regular, colors.date);
        canvas_.text(item.formattedTime(), {columns_.time + dateInset, textY, timeTextWidth, rowHeight},
                     fonts_.regular, colors.date);
    }

    // Right-aligned; too wide, it loses its end.
    void paintSize(const FileItem& item, double textY, const Color& color) const {
        const std::string size = sizeText(state_, item);
        const double width = canvas_.textSize(size, fonts_.regular).width;
        canvas_.text(size,
                     {std::max(columns_.size + sizeInset, columns_.date - width - sizeGap), textY,
                      columns_.date - columns_.size - sizeGap, rowHeight},
                     fonts_.regular, color);
    }

    // After the rows, so that they cross the bar of the cursor.
    void paintListSeparators() const {
        const Color color = OvPalette::dosCyan.withAlpha(listSeparatorOpacity);
        for (const double x : columns_.separators())
            canvas_.line({x, rowsTop}, {x, h_ - listEndFromBottom}, ruleWidth, color);
    }

    void paintRule(double y) const {
        canvas_.line({innerFrameInset, y}, {w_ - innerFrameInset, y}, ruleWidth, frameColor(state_.isActive));
    }

    void paintStatusLine() const {
        const double y = h_ - statusFromBottom;
        canvas_.text(statusText(state_), {textMargin, y, w_ * statusShare, textHeight}, fonts_.regular,
                     OvPalette::dosBrightWhite);
        const std::string count = countText(state_);
        const double width = canvas_.textSize(count, fonts_.regular).width;
        canvas_.text(count,
                     {std::max(textMargin, w_ - width - countMargin), y, width + countSlack, textHeight},
                     fonts_.regular, OvPalette::dosBrightWhite);
    }

    Canvas& canvas_;
    const double w_;
    const double h_;
    const Columns columns_;
    const PanelFonts& fonts_;
    const PanelState& state_;
};

}  // namespace

void paintPanel(Canvas& canvas, Size size, const PanelFonts& fonts, const PanelState& state) {
    PanelPainter(canvas, size, fonts, state).paint();
}

}  // namespace vantrel
