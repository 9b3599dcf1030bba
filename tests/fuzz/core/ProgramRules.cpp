#include "fuzz/core/ProgramRules.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "base/Paths.h"
#include "fuzz/Target.h"
#include "fuzz/Utf8.h"
#include "fuzz/core/CheckingCanvas.h"

namespace vantrel::fuzz {

namespace {

std::int64_t rowsOf(const OvPanelView& panel) {
    return static_cast<std::int64_t>(panel.items().size());
}

void checkCursor(const OvPanelView& panel) {
    const std::int64_t rows = rowsOf(panel);
    if (rows == 0) {
        require(panel.selectedIndex() == 0 || panel.selectedIndex() == -1,
                "without rows the cursor is nowhere");
    } else {
        require(panel.selectedIndex() >= 0 && panel.selectedIndex() < rows, "the cursor stands on a row");
    }
    const std::int64_t last = std::max<std::int64_t>(0, rows - panel.visibleRowCount());
    require(panel.scrollOffset() >= 0 && panel.scrollOffset() <= last,
            "the list is scrolled within its ends");
}

void checkRow(const FileItem& item, const std::string& folder) {
    if (item.isParentDir) {
        require(item.name == ".." && item.isDirectory, "the way up is a folder named ..");
        require(item.path == paths::deletingLastComponent(folder), "it leads one folder up");
        require(std::holds_alternative<state::Parent>(item.vantrelState), "and has no size");
        return;
    }
    require(item.path == paths::appending(folder, item.name), "a row stands in its folder");
    require(item.isHidden == item.name.starts_with('.'), "a dot hides");
    require(bytes(item.vantrelState) >= 0, "no size is negative");
    if (item.isDirectory) {
        require(isCalculating(item.vantrelState) || isCalculated(item.vantrelState),
                "a folder has its size or awaits it");
    } else {
        require(std::holds_alternative<state::Parent>(item.vantrelState), "a file awaits no size");
    }
}

void checkRows(const OvPanelView& panel) {
    const ItemList& items = panel.items();
    std::set<std::string_view> names;
    bool isAnyCalculating = false;
    for (const auto& item : items) {
        require(names.insert(item->name).second, "no file is listed twice");
        require(panel.showHiddenFiles() || item->isParentDir || !item->isHidden, "hidden files are hidden");
        checkRow(*item, panel.currentPath());
        isAnyCalculating = isAnyCalculating || isCalculating(item->vantrelState);
    }
    const bool hasWayUp = !items.empty() && items.front()->isParentDir;
    require(hasWayUp == (panel.currentPath() != "/"), "the way up comes first, but at the root");
    require(panel.isCalculatingSizes() == isAnyCalculating, "the spinner turns while a size is awaited");
}

// Running totals do not move rows, so the order by size may lag behind.
void checkOrder(const OvPanelView& panel) {
    const ItemList& items = panel.items();
    const auto isMisplaced = [](const auto& a, const auto& b) {
        return !a->isParentDir && !a->isDirectory && b->isDirectory;
    };
    require(std::ranges::adjacent_find(items, isMisplaced) == items.end(), "folders come before files");
    if (panel.sortField() != SortField::name) return;
    const auto isInOrder = [&](const auto& a, const auto& b) {
        if (a->isParentDir || a->isDirectory != b->isDirectory) return true;
        const bool isAscending = panel.sortDirection() == SortDirection::ascending;
        return isAscending ? a->naturalSortKey() < b->naturalSortKey()
                           : b->naturalSortKey() < a->naturalSortKey();
    };
    for (std::size_t row = 1; row < items.size(); ++row) {
        require(isInOrder(items[row - 1], items[row]), "names stand in their order");
    }
}

bool hasField(const DialogType& type) {
    return std::holds_alternative<dialog::Copy>(type) || std::holds_alternative<dialog::Move>(type) ||
           std::holds_alternative<dialog::Mkdir>(type);
}

}  // namespace

void checkPanel(const OvPanelView& panel) {
    checkCursor(panel);
    checkRows(panel);
    checkOrder(panel);
    require(panel.spinnerFrame() >= 0, "the spinner counts upwards");
}

void checkDialog(const OvCommanderView& commander, const test::FakeDesktop& desktop) {
    const auto& dialog = commander.dialogOverlay();
    require(commander.subviews().size() == (dialog ? 3U : 2U), "there are two panels and at most one dialog");
    require(&commander.activePanel() != &commander.otherPanel(), "one panel is active and the other is not");
    require(commander.activePanel().isActivePanel() && !commander.otherPanel().isActivePanel(),
            "both know it");
    const std::size_t fields = dialog && hasField(dialog->dialogType()) ? 1 : 0;
    require(desktop.textFields.alive.size() == fields, "a field lives as long as its dialog");
    if (!dialog) return;
    require(commander.subviews().back() == dialog, "a dialog is on top");
    require(!desktop.preview.visible, "no preview stands over a dialog");
    require(dialog->frame() == commander.bounds(), "a dialog covers the window");
    require(dialog->selectedButtonIndex() >= 0 &&
                dialog->selectedButtonIndex() < static_cast<int>(dialog->buttons().size()),
            "a button is highlighted");
}

void checkPreview(const OvCommanderView& commander) {
    const int count = commander.numberOfPreviewItems();
    require(count == (commander.activePanel().selectedItem() ? 1 : 0), "the preview is of the cursor's row");
    const auto item = commander.previewItemAt(0);
    require(!item || (isDrawable(item->name) && isDrawable(item->detail)), "its words can be drawn");
}

void checkWalks(const OvCommanderView& commander, const VantrelEngine& engine,
                const test::ManualWalkQueue& walks) {
    std::set<std::string_view> wanted;
    for (const auto& walk : walks.walks) {
        if (!walk.observer || walk.isCancelled()) continue;
        require(wanted.insert(walk.root).second, "a folder is walked once at a time");
        require(engine.isCalculating(walk.root), "the engine knows of each walk");
        const std::string folder = paths::deletingLastComponent(walk.root);
        require(
            folder == commander.leftPanel().currentPath() || folder == commander.rightPanel().currentPath(),
            "walks below a folder that was left are cancelled");
    }
}

void checkDrawing(OvCommanderView& commander) {
    CheckingCanvas canvas;
    commander.drawTree(canvas);
}

bool isCursorVisible(const OvPanelView& panel) {
    const std::int64_t row = panel.selectedIndex() - panel.scrollOffset();
    return row >= 0 && row < panel.visibleRowCount();
}

}  // namespace vantrel::fuzz
