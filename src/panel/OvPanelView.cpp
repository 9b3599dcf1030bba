#include "panel/OvPanelView.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "base/Paths.h"
#include "model/engine/VantrelEngine.h"
#include "panel/DirectoryListing.h"
#include "panel/PanelLook.h"
#include "panel/PanelPainter.h"
#include "text/Text.h"
#include "theme/OvPalette.h"

namespace vantrel {

namespace {

constexpr double fontSize = 13;  // points
constexpr std::chrono::milliseconds spinnerInterval{150};
constexpr std::int64_t wheelStep = 2;  // rows

}  // namespace

OvPanelView::OvPanelView(const Desktop& desktop, VantrelEngine& engine)
    : desktop_(desktop),
      engine_(engine),
      retroFont_(OvPalette::retroFont(desktop.fonts, fontSize, FontWeight::regular)),
      boldRetroFont_(OvPalette::retroFont(desktop.fonts, fontSize, FontWeight::bold)),
      sizes_(engine) {}

std::shared_ptr<OvPanelView> OvPanelView::make(const Desktop& desktop, VantrelEngine& engine) {
    std::shared_ptr<OvPanelView> panel(new OvPanelView(desktop, engine));
    panel->sizes_.delegate = panel;
    panel->startSpinnerTimer();
    return panel;
}

PanelState OvPanelView::state() const {
    const auto capacity = VantrelEngine::getVolumeCapacity(desktop_.files, currentPath_);
    return {.path = currentPath_,
            .items = items_,
            .cursor = cursor_,
            .sortField = sortField_,
            .sortDirection = sortDirection_,
            .sizeDisplayMode = sizeDisplayMode_,
            .isActive = isActivePanel_,
            .spinnerFrame = spinnerFrame_,
            .freeBytes = capacity ? std::optional(capacity->freeBytes) : std::nullopt};
}

void OvPanelView::draw(Canvas& canvas) {
    paintPanel(canvas, {bounds().width, bounds().height}, {retroFont_, boldRetroFont_}, state());
}

// The prefix is one of bytes and reaches too far, on purpose: leaving /home/ann also ends walks of
// /home/ann2, and those of the other panel. One comparison finds all that is not looked at here any more, and
// a row that is still on show elsewhere is asked for again at its panel's next tick (SizeRequests::askAgain).
void OvPanelView::setCurrentPath(const std::string& path) {
    if (path == currentPath_) return;
    const std::string oldPath = std::exchange(currentPath_, path);
    if (!oldPath.empty()) engine_.cancelForPrefix(oldPath);
    loadDirectory();
    if (const auto owner = delegate.lock()) owner->panelPathDidChange(*this, currentPath_);
}

void OvPanelView::setIsActivePanel(bool isActive) {
    isActivePanel_ = isActive;
    setNeedsDisplay();
}

void OvPanelView::setSortField(SortField field) {
    sortField_ = field;
    sortItems();
    setNeedsDisplay();
}

void OvPanelView::setSortDirection(SortDirection direction) {
    sortDirection_ = direction;
    sortItems();
    setNeedsDisplay();
}

void OvPanelView::setSizeDisplayMode(SizeDisplayMode mode) {
    sizeDisplayMode_ = mode;
    setNeedsDisplay();
}

void OvPanelView::setShowHiddenFiles(bool show) {
    showHiddenFiles_ = show;
    loadDirectory();
}

void OvPanelView::loadDirectory(const std::optional<std::string>& keepSelection) {
    items_ = listDirectory(desktop_.files, desktop_.output, currentPath_,
                           showHiddenFiles_ ? HiddenFiles::show : HiddenFiles::leaveOut);
    sortItems();
    cursor_.reset(static_cast<std::int64_t>(items_.size()), rowAfterLoading(keepSelection));
    setNeedsDisplay();
    sizes_.askFor(items_);
}

std::int64_t OvPanelView::rowAfterLoading(const std::optional<std::string>& keepSelection) const {
    if (keepSelection) {
        const auto kept =
            std::ranges::find_if(items_, [&](const auto& item) { return item->name == *keepSelection; });
        if (kept != items_.end()) return kept - items_.begin();
    }
    return items_.size() >= 2 && items_.front()->isParentDir ? 1 : 0;
}

void OvPanelView::sortItems() {
    vantrel::sortItems(items_, sortField_, sortDirection_);
    orderDidChange();
}

void OvPanelView::orderDidChange() {
    changedSinceSort_.clear();
    ++orderRevision_;
}

void OvPanelView::sizeDidChange(FileItem& row) {
    changedSinceSort_.add(row);
    if (isCalculated(row.vantrelState) && sortField_ == SortField::size) {
        sortChangedSizes(items_, changedSinceSort_, sortDirection_);
        orderDidChange();
    }
    setNeedsDisplay(Redraw::inPassing);
}

void OvPanelView::contentsDidChange(const ContentsChange& change) {
    if (sizes_.askAfterChange(items_, change)) setNeedsDisplay(Redraw::inPassing);
}

void OvPanelView::startSpinnerTimer() {
    spinnerTimer_ = desktop_.timers.startRepeating(spinnerInterval, [weakThis = weak_from_this()] {
        if (const auto view = weakThis.lock()) static_cast<OvPanelView&>(*view).spinnerTick();
    });
}

void OvPanelView::spinnerTick() {
    if (!isCalculatingSizes()) return;
    sizes_.askAgain();
    engine_.catchUp();
    ++spinnerFrame_;
    setNeedsDisplay(Redraw::inPassing);
}

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

void OvPanelView::selectItemByPrefix(std::string_view prefix) {
    const auto found = std::ranges::find_if(items_, [&](const auto& item) {
        return !item->isParentDir && text::hasPrefixIgnoringCase(item->name, prefix);
    });
    if (found == items_.end()) return;
    cursor_.moveTo(found - items_.begin());
    setNeedsDisplay();
}

void OvPanelView::activateCurrentItem() {
    const std::shared_ptr<FileItem> item = selectedItem();
    if (!item) return;
    if (item->isParentDir) {
        navigateUp();
    } else if (item->isDirectory) {
        goTo(item->path);
    } else if (const auto owner = delegate.lock()) {
        owner->panelDidActivateItem(*this, *item);
    }
}

void OvPanelView::navigateUp() {
    if (currentPath_ != "/") goTo(paths::deletingLastComponent(currentPath_));
}

// Loads twice, on purpose. Setting a path is a whole change by itself, of which the delegate hears with the
// rows in place; it knows nothing of where one comes from. Loading with a name to keep then puts the cursor
// on the folder that was left, as any other reload does. Going down does the same as going up: as a rule no
// entry has that name, but on the way from /usr into /usr/lib the cursor goes to /usr/lib/usr.
void OvPanelView::goTo(const std::string& path) {
    const std::string folderLeft = paths::lastComponent(currentPath_);
    setCurrentPath(path);
    loadDirectory(folderLeft);
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
    // Without scrolling: under the second press of a double click there has to be the same row.
    cursor_.pointAt(cursor_.offset() + *line);
    setNeedsDisplay();
    if (event.clickCount == 2) activateCurrentItem();
    return EventResult::handled;
}

EventResult OvPanelView::scrollWheel(const ScrollEvent& event) {
    if (event.deltaY > 0) cursor_.scrollBy(-wheelStep);
    if (event.deltaY < 0) cursor_.scrollBy(wheelStep);
    setNeedsDisplay();
    return EventResult::handled;
}

// A new field sorts twice, at first in the old direction, as two assignments do. It can be seen: where that
// direction was descending, equal rows have been turned round once.
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

}  // namespace vantrel
