#include "panel/OvPanelView.h"

#include <algorithm>

#include "base/Paths.h"
#include "panel/PanelLook.h"
#include "text/Text.h"

namespace vantrel {

namespace {

constexpr std::int64_t wheelStep = 2;  // rows
}  // namespace

void OvPanelView::frameDidChange() {
    cursor_.setRowsInSight(panel::rowsThatFit(bounds().height));
}

std::shared_ptr<FileItem> OvPanelView::selectedItem() const {
    return cursor_.isOnRow() ? items_[static_cast<std::size_t>(cursor_.index())] : nullptr;
}

void OvPanelView::moveUp() {
    if (cursor_.moveUp()) setNeedsDisplay();
}

void OvPanelView::moveDown() {
    if (cursor_.moveDown()) setNeedsDisplay();
}

void OvPanelView::pageUp() {
    cursor_.pageUp();
    setNeedsDisplay();
}

void OvPanelView::pageDown() {
    cursor_.pageDown();
    setNeedsDisplay();
}

void OvPanelView::home() {
    cursor_.home();
    setNeedsDisplay();
}

void OvPanelView::end() {
    cursor_.end();
    setNeedsDisplay();
}

void OvPanelView::activateCurrentItem() {
    const std::shared_ptr<FileItem> item = selectedItem();
    if (!item) return;
    if (item->isParentDir) {
        navigateUp();
    } else if (item->isDirectory) {
        const std::string folderLeft = paths::lastComponent(currentPath_);
        setCurrentPath(item->path);
        loadDirectory(folderLeft);
    } else if (const auto owner = delegate.lock()) {
        owner->panelDidActivateItem(*this, *item);
    }
}

void OvPanelView::navigateUp() {
    if (currentPath_ == "/") return;
    const std::string folderLeft = paths::lastComponent(currentPath_);
    setCurrentPath(paths::deletingLastComponent(currentPath_));
    loadDirectory(folderLeft);
}

void OvPanelView::selectItemByPrefix(std::string_view prefix) {
    const auto found = std::ranges::find_if(items_, [&](const auto& item) {
        return !item->isParentDir && text::hasPrefixIgnoringCase(item->name, prefix);
    });
    if (found == items_.end()) return;
    cursor_.moveTo(found - items_.begin());
    setNeedsDisplay();
}

EventResult OvPanelView::mouseDown(const MouseEvent& event) {
    if (const auto owner = delegate.lock()) owner->panelDidSelect(*this);
    const Point place = convertFromWindow(event.locationInWindow);
    if (panel::isInHeader(place.y)) {
        sortOrToggle(panel::columnTitles[panel::Columns(bounds().width).hitBy(place.x)].clickSortsBy);
        return EventResult::handled;
    }
    const auto line = panel::placeHitBy(place.y, bounds().height);
    if (!line || !cursor_.hasRow(cursor_.offset() + *line)) return EventResult::handled;
    cursor_.pointAt(cursor_.offset() + *line);
    setNeedsDisplay();
    if (event.clickCount == 2) activateCurrentItem();
    return EventResult::handled;
}

void OvPanelView::sortOrToggle(SortField field) {
    if (field == sortField_) {
        SortDirection direction = sortDirection_;
        toggle(direction);
        setSortDirection(direction);
    } else {
        setSortField(field);
        setSortDirection(SortDirection::ascending);
    }
}

void OvPanelView::selectRow(std::int64_t row) {
    if (const auto owner = delegate.lock()) owner->panelDidSelect(*this);
    if (!cursor_.hasRow(row)) return;
    cursor_.moveTo(row);
    setNeedsDisplay();
}

void OvPanelView::clickTitle(SortField field) {
    if (const auto owner = delegate.lock()) owner->panelDidSelect(*this);
    sortOrToggle(field);
}

EventResult OvPanelView::scrollWheel(const ScrollEvent& event) {
    if (event.deltaY > 0) cursor_.scrollBy(-wheelStep);
    if (event.deltaY < 0) cursor_.scrollBy(wheelStep);
    setNeedsDisplay();
    return EventResult::handled;
}

}  // namespace vantrel
