#include "dialog/DialogGeometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace vantrel::dialog {

namespace {

struct HeightOf {
    double viewHeight;

    double operator()(const Viewer&) const {
        return std::min(viewHeight - reportedViewerMargins, largestReportedViewerHeight);
    }
    double operator()(const Help&) const { return reportedHelpHeight; }
    double operator()(const Sort&) const { return sortHeight; }
    double operator()(const Mkdir&) const { return shortHeight; }
    double operator()(const Delete&) const { return shortHeight; }
    double operator()(const auto&) const { return inputHeight; }
};

struct BoxSizeOf {
    double height;
    const Rect& view;

    Size operator()(const Viewer&) const {
        return {std::max(view.width - viewerSideMargins, smallestViewerWidth),
                std::max(view.height - viewerEndMargins, smallestViewerHeight)};
    }
    Size operator()(const Help&) const { return {helpWidth, helpHeight}; }
    Size operator()(const auto&) const { return {boxWidth, height}; }
};

/// The area of one text of the body.
struct AreaOf {
    const Rect& box;
    std::size_t row;
    std::size_t column;

    double down(double top, double pitch) const {
        return box.minY() + top + static_cast<double>(row) * pitch;
    }

    Rect operator()(const Viewer&) const {
        const Rect area = viewerArea(box);
        return {area.minX() + viewerTextMargin, down(viewerTop + viewerTextTop, viewerLinePitch),
                area.width - 2 * viewerTextMargin, viewerLineHeight};
    }
    Rect operator()(const Help&) const {
        const double y = down(helpTop, helpPitch);
        if (column == 0) return {box.minX() + helpKeyX, y, helpKeyWidth, helpLineHeight};
        return {box.minX() + helpDescriptionX, y, box.width - helpDescriptionMargins, helpLineHeight};
    }
    Rect operator()(const Sort&) const {
        return {box.minX() + sortX, down(sortTop, sortPitch), box.width - sortMargins, sortLineHeight};
    }
    Rect operator()(const auto&) const {
        constexpr std::array tops{promptTop, itemNameTop, trashNoteTop};
        return {box.minX() + textMargin, box.minY() + tops[row], box.width - 2 * textMargin, lineHeight};
    }
};

// No line whose area would end below the viewer's. A line of a hundred thousand characters would be laid out
// at every redraw, though all but its start lies beyond the edge.
ViewerRoom viewerRoom(const Rect& box) {
    const Rect area = viewerArea(box);
    const double below = area.height - viewerTextTop - viewerLineHeight;
    const auto lines = static_cast<std::size_t>(std::floor(below / viewerLinePitch)) + 1;
    return {std::min(lines, viewerLineLimit),
            static_cast<std::size_t>((area.width - 2 * viewerTextMargin) * viewerBytesPerPoint)};
}

Point buttonCorner(const Rect& box, std::size_t index, std::size_t count) {
    return {
        box.midX() - static_cast<double>(count) * buttonPitch / 2 + static_cast<double>(index) * buttonPitch,
        box.maxY() - buttonsTop};
}

}  // namespace

double reportedHeight(const DialogType& type, const Rect& view) {
    return std::visit(HeightOf{view.height}, type);
}

Rect boxOf(const DialogState& state, const Rect& view) {
    const Size size = std::visit(BoxSizeOf{state.height, view}, state.type);
    return {std::max((view.width - size.width) * 0.5, smallestMargin),
            std::max((view.height - size.height) * 0.5, smallestMargin), size.width, size.height};
}

Rect fieldArea(const Rect& box) {
    return {box.minX() + textMargin, box.minY() + fieldTop, box.width - 2 * textMargin, fieldHeight};
}

Rect paintedButton(const Rect& box, std::size_t index, std::size_t count) {
    const Point corner = buttonCorner(box, index, count);
    return {corner.x, corner.y, paintedButtonSize.width, paintedButtonSize.height};
}

Rect clickableButton(const Rect& box, std::size_t index, std::size_t count) {
    const Point corner = buttonCorner(box, index, count);
    return {corner.x, corner.y, clickableButtonSize.width, clickableButtonSize.height};
}

Rect viewerArea(const Rect& box) {
    return {box.minX() + viewerSideMargin, box.minY() + viewerTop, box.width - 2 * viewerSideMargin,
            box.height - viewerHeightMargins};
}

std::vector<BodyText> bodyTexts(const DialogType& type, const Rect& box) {
    std::vector<BodyText> texts;
    std::size_t row = 0;
    for (BodyRow& words : bodyRows(type, viewerRoom(box))) {
        for (std::size_t column = 0; column < words.size(); ++column) {
            texts.push_back({std::move(words[column].text), words[column].style,
                             std::visit(AreaOf{box, row, column}, type)});
        }
        ++row;
    }
    return texts;
}

}  // namespace vantrel::dialog
