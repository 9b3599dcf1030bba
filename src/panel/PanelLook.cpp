#include "panel/PanelLook.h"

#include "text/Text.h"
#include "theme/OvPalette.h"

namespace vantrel::panel {

namespace {

using P = OvPalette;

constexpr std::size_t longestTitlePath = 45;  // characters
constexpr std::size_t keptTitleCharacters = 42;

RowColors kindColors(const FileItem& item) {
    if (item.isParentDir) return {P::dosYellow, P::dosYellow, P::dosLightGray};
    if (item.isDirectory) {
        return {P::dosYellow, isCalculated(item.vantrelState) ? P::dosBrightCyan : P::dosLightGray,
                P::dosLightGray};
    }
    if (item.isExecutable) return {P::dosGreen, P::dosWhite, P::dosLightGray};
    if (item.isHidden) return {P::dosDarkGray, P::dosDarkGray, P::dosLightGray};
    return {P::dosWhite, P::dosLightGray, P::dosLightGray};
}

}  // namespace

bool isSortedBy(std::size_t column, SortField field) {
    return columnTitles[column].tellsOrder && columnTitles[column].clickSortsBy == field;
}

std::string titlePath(const std::string& path) {
    if (text::characterCount(path) <= longestTitlePath) return text::shownText(path);
    return "..." + text::shownText(text::lastCharacters(path, keptTitleCharacters));
}

std::string titleText(const PanelState& state) {
    return "╒══ " + titlePath(state.path) + " ══╕";
}

std::string columnTitleText(const PanelState& state, std::size_t column) {
    std::string title = (column == nameColumn ? " " : "") + std::string(columnTitles[column].text);
    if (!isSortedBy(column, state.sortField)) return title;
    return title + (state.sortDirection == SortDirection::ascending ? " ▲" : " ▼");
}

std::string nameText(const FileItem& item) {
    const std::string name = text::shownText(item.name);
    if (item.isParentDir) return "▲ " + name;
    return (item.isDirectory ? "/ " : "  ") + name;
}

std::string sizeText(const PanelState& state, const FileItem& item) {
    return item.formattedSize(state.sizeDisplayMode, state.spinnerFrame);
}

std::string statusText(const PanelState& state) {
    if (!state.cursor.isOnRow()) return "";
    const FileItem& item = state.item(state.cursor.index());
    if (item.isParentDir) return "Parent directory";
    return (item.isDirectory ? "📁 " : "📄 ") + text::shownText(item.name) + ": " + sizeText(state, item);
}

std::string countText(const PanelState& state) {
    std::string count = std::to_string(state.items.size()) + " items";
    if (!state.freeBytes) return count;
    return count + " | " + FileItem::formatBytes(*state.freeBytes, SizeDisplayMode::humanReadable) + " free";
}

RowColors rowColors(const PanelState& state, std::int64_t row) {
    if (row != state.cursor.index()) return kindColors(state.item(row));
    const Color& text = state.isActive ? P::activeSelectionText : P::inactiveSelectionText;
    return {text, text, text};
}

const Color& selectionGround(bool isActive) {
    return isActive ? P::activeSelectionBg : P::inactiveSelectionBg;
}

const Color& frameColor(bool isActive) {
    return isActive ? P::dosBrightCyan : P::dosCyan;
}

const Color& titleColor(bool isActive) {
    return isActive ? P::dosYellow : P::dosLightGray;
}

const Color& columnTitleColor(const PanelState& state, std::size_t column) {
    return isSortedBy(column, state.sortField) ? P::dosBrightWhite : P::dosYellow;
}

}  // namespace vantrel::panel
