#include "panel/OvPanelView.h"

#include <chrono>

#include "model/engine/VantrelEngine.h"
#include "panel/PanelPainter.h"
#include "theme/OvPalette.h"

namespace vantrel {

namespace {

constexpr double fontSize = 13;  // points
constexpr std::chrono::milliseconds spinnerInterval{150};

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

}  // namespace vantrel
