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

std::int64_t OvPanelView::visibleRowCount() const {
    return std::max<std::int64_t>(1, static_cast<std::int64_t>((bounds().height - barsHeight) / rowHeight));
}

std::shared_ptr<FileItem> OvPanelView::selectedItem() const {
    if (selectedIndex_ < 0 || selectedIndex_ >= itemCount()) return nullptr;
    return items_[static_cast<std::size_t>(selectedIndex_)];
}

void OvPanelView::moveCursor(std::int64_t index) {
    selectedIndex_ = index;
    adjustScroll();
    setNeedsDisplay();
}

void OvPanelView::moveUp() {
    if (selectedIndex_ > 0) moveCursor(selectedIndex_ - 1);
}

void OvPanelView::moveDown() {
    if (selectedIndex_ < itemCount() - 1) moveCursor(selectedIndex_ + 1);
}

void OvPanelView::pageUp() {
    moveCursor(std::max<std::int64_t>(0, selectedIndex_ - visibleRowCount()));
}

void OvPanelView::pageDown() {
    moveCursor(std::min(selectedIndex_ + visibleRowCount(), itemCount() - 1));
}

void OvPanelView::home() {
    moveCursor(0);
}

void OvPanelView::end() {
    moveCursor(std::max<std::int64_t>(0, itemCount() - 1));
}

void OvPanelView::adjustScroll() {
    if (selectedIndex_ < scrollOffset_) {
        scrollOffset_ = selectedIndex_;
    } else if (selectedIndex_ >= scrollOffset_ + visibleRowCount()) {
        scrollOffset_ = selectedIndex_ - visibleRowCount() + 1;
    }
    clampScroll();
}

void OvPanelView::clampScroll() {
    const std::int64_t last = std::max<std::int64_t>(0, itemCount() - visibleRowCount());
    scrollOffset_ = std::clamp<std::int64_t>(scrollOffset_, 0, last);
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
    if (found != items_.end()) moveCursor(found - items_.begin());
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
    const std::int64_t row = static_cast<std::int64_t>(depth / rowHeight) + scrollOffset_;
    if (row < 0 || row >= itemCount()) return EventResult::handled;
    selectedIndex_ = row;
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
    if (row >= 0 && row < itemCount()) moveCursor(row);
}

void OvPanelView::clickTitle(SortField field) {
    if (const auto owner = delegate.lock()) owner->panelDidSelect(*this);
    sortOrToggle(field);
}

EventResult OvPanelView::scrollWheel(const ScrollEvent& event) {
    if (event.deltaY > 0) scrollOffset_ -= wheelStep;
    if (event.deltaY < 0) scrollOffset_ += wheelStep;
    clampScroll();
    setNeedsDisplay();
    return EventResult::handled;
}

}  // namespace vantrel
