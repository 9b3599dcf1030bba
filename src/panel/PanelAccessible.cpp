#include "panel/PanelAccessible.h"

#include <algorithm>
#include <numeric>

#include "panel/OvPanelView.h"
#include "panel/PanelGeometry.h"
#include "panel/PanelLook.h"
#include "text/Text.h"

namespace vantrel {

namespace {

using panel::Columns;
using panel::columnTitles;

/// Elements are the titles and then the cells, row by row.
std::int64_t rowOf(std::size_t element) {
    return static_cast<std::int64_t>(element / Columns::count) - 1;
}
std::size_t columnOf(std::size_t element) {
    return element % Columns::count;
}
std::size_t elementOf(std::int64_t row, std::size_t column) {
    return static_cast<std::size_t>(row + 1) * Columns::count + column;
}

std::string kindOf(const FileItem& item) {
    if (item.isParentDir) return "parent folder";
    const std::string link = item.isSymlink ? "link to a " : "";
    if (item.isDirectory) return link + "folder";
    return link + (item.isExecutable ? "program" : "file");
}

std::string withoutLeadingBlanks(std::string text) {
    text.erase(0, text.find_first_not_of(' '));
    return text;
}

Rect columnArea(double panelWidth, std::size_t column, double top, double height) {
    const Columns columns(panelWidth);
    return {columns.left(column), top, columns.right(column) - columns.left(column), height};
}

}  // namespace

std::string PanelAccessible::name() const {
    const std::string path = text::shownText(panel_.currentPath());
    return panel_.accessibleTitle.empty() ? path : panel_.accessibleTitle + ": " + path;
}

Rect PanelAccessible::frame() const {
    return panel_.bounds();
}

std::size_t PanelAccessible::columnCount() const {
    return Columns::count;
}

std::int64_t PanelAccessible::rowCount() const {
    return static_cast<std::int64_t>(panel_.items().size());
}

std::size_t PanelAccessible::elementCount() const {
    return (panel_.items().size() + 1) * Columns::count;
}

std::uint64_t PanelAccessible::revision() const {
    return panel_.orderRevision();
}

AccessibleElement PanelAccessible::element(std::size_t index) const {
    const std::int64_t row = rowOf(index);
    return row < 0 ? headerElement(columnOf(index)) : cellElement(row, columnOf(index));
}

AccessibleElement PanelAccessible::headerElement(std::size_t column) const {
    const bool isSorted = panel::isSortedBy(column, panel_.sortField());
    const bool isAscending = panel_.sortDirection() == SortDirection::ascending;
    return {.role = AccessibleRole::columnHeader,
            .name = std::string(columnTitles[column].text),
            .description = !isSorted     ? ""
                           : isAscending ? "sorted ascending"
                                         : "sorted descending",
            .keyBinding = "",
            .frame = columnArea(panel_.bounds().width, column, panel::headerTop,
                                panel::headerRuleY - panel::headerTop),
            .isPressable = true};
}

AccessibleElement PanelAccessible::cellElement(std::int64_t row, std::size_t column) const {
    const FileItem& item = *panel_.items()[static_cast<std::size_t>(row)];
    const std::int64_t place = row - panel_.scrollOffset();
    const bool isOnShow = place >= 0 && place < panel_.visibleRowCount();
    return {.role = AccessibleRole::cell,
            .name = cellText(item, column),
            .description = column == panel::nameColumn ? kindOf(item) : "",
            .keyBinding = "",
            .frame = isOnShow ? columnArea(panel_.bounds().width, column, panel::rowTop(place),
                                           OvPanelView::rowHeight)
                              : Rect{},
            .isPressable = true,
            .isSelectable = true,
            .isSelected = row == panel_.selectedIndex()};
}

std::string PanelAccessible::cellText(const FileItem& item, std::size_t column) const {
    switch (column) {
        case panel::sizeColumn:
            return sizeText(item);
        case panel::dateColumn:
            return item.formattedDate();
        case panel::timeColumn:
            return item.formattedTime();
        default:
            return text::shownText(item.name);
    }
}

// The blanks, the spinner's signs and the brackets of the painted column are nothing to listen to.
std::string PanelAccessible::sizeText(const FileItem& item) const {
    if (item.isParentDir) return "";
    if (!item.isDirectory || isCalculated(item.vantrelState)) {
        return withoutLeadingBlanks(item.formattedSize(panel_.sizeDisplayMode()));
    }
    if (!isCalculating(item.vantrelState)) return "unknown";
    const std::int64_t found = bytes(item.vantrelState);
    if (found == 0) return "calculating";
    return "calculating, " + withoutLeadingBlanks(FileItem::formatBytes(found, panel_.sizeDisplayMode()));
}

std::optional<std::size_t> PanelAccessible::elementAt(Point place) const {
    const Columns columns(panel_.bounds().width);
    if (!panel_.bounds().contains(place)) return std::nullopt;
    std::size_t column = 0;
    while (place.x >= columns.right(column)) ++column;
    if (place.y >= panel::headerTop && place.y < panel::headerRuleY) return column;
    if (place.y < panel::rowsTop) return std::nullopt;
    const auto line = static_cast<std::int64_t>((place.y - panel::rowsTop) / OvPanelView::rowHeight);
    const std::int64_t row = line + panel_.scrollOffset();
    if (line >= panel_.visibleRowCount() || row >= rowCount()) return std::nullopt;
    return elementOf(row, column);
}

std::vector<std::size_t> PanelAccessible::shownElements() const {
    std::vector<std::size_t> shown(Columns::count);
    std::iota(shown.begin(), shown.end(), std::size_t{0});
    const std::int64_t end = std::min(panel_.scrollOffset() + panel_.visibleRowCount(), rowCount());
    for (std::int64_t row = panel_.scrollOffset(); row < end; ++row) {
        for (std::size_t column = 0; column < Columns::count; ++column)
            shown.push_back(elementOf(row, column));
    }
    return shown;
}

std::optional<std::size_t> PanelAccessible::selectedElement() const {
    if (!panel_.selectedItem()) return std::nullopt;
    return elementOf(panel_.selectedIndex(), panel::nameColumn);
}

std::optional<std::size_t> PanelAccessible::focusedElement() const {
    return panel_.isActivePanel() ? selectedElement() : std::nullopt;
}

void PanelAccessible::press(std::size_t index) {
    const std::int64_t row = rowOf(index);
    if (row < 0) {
        panel_.clickTitle(columnTitles[columnOf(index)].clickSortsBy);
        return;
    }
    panel_.selectRow(row);
    panel_.activateCurrentItem();
}

void PanelAccessible::select(std::size_t index) {
    if (const std::int64_t row = rowOf(index); row >= 0) panel_.selectRow(row);
}

}  // namespace vantrel
