#include "panel/OvPanelView.h"

#include <algorithm>

#include "base/Paths.h"
#include "panel/PanelGeometry.h"
#include "text/Text.h"

namespace vantrel {

namespace {

constexpr std::int64_t wheelStep = 2;  // rows
constexpr double sizeZoneEnd = 85;     // points from the start of the fixed columns
constexpr double dateZoneEnd = 180;
constexpr double listTop = OvPanelView::topBarHeight + OvPanelView::headerHeight;
constexpr double barsHeight = listTop + OvPanelView::bottomBarHeight;

}  // namespace

void OvPanelView::frameDidChange() {
    const auto rows = static_cast<std::int64_t>((bounds().height - barsHeight) / rowHeight);
    cursor_.setRowsInSight(std::max<std::int64_t>(1, rows));
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
    if (place.y >= topBarHeight && place.y < listTop) {
        clickHeader(place.x);
        return EventResult::handled;
    }
    const double depth = place.y - listTop;
    if (depth < 0 || depth >= bounds().height - barsHeight) return EventResult::handled;
    const std::int64_t row = static_cast<std::int64_t>(depth / rowHeight) + cursor_.offset();
    if (!cursor_.hasRow(row)) return EventResult::handled;
    cursor_.pointAt(row);
    setNeedsDisplay();
    if (event.clickCount == 2) activateCurrentItem();
    return EventResult::handled;
}

void OvPanelView::clickHeader(double x) {
    const double fixedColumns = panel::Columns(bounds().width).start;
    SortField field = SortField::ext;
    if (x < fixedColumns) {
        field = SortField::name;
    } else if (x < fixedColumns + sizeZoneEnd) {
        field = SortField::size;
    } else if (x < fixedColumns + dateZoneEnd) {
        field = SortField::date;
    }
    sortOrToggle(field);
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
