#include "panel/PanelCursor.h"

#include <algorithm>

namespace vantrel {

std::int64_t PanelCursor::endInSight() const {
    return std::min(offset_ + rowsInSight_, rowCount_);
}

void PanelCursor::reset(std::int64_t rowCount, std::int64_t index) {
    rowCount_ = rowCount;
    moveTo(index);
}

void PanelCursor::setRowsInSight(std::int64_t rows) {
    rowsInSight_ = rows;
    clampOffset();
}

bool PanelCursor::moveUp() {
    if (index_ <= 0) return false;
    moveTo(index_ - 1);
    return true;
}

bool PanelCursor::moveDown() {
    if (index_ >= rowCount_ - 1) return false;
    moveTo(index_ + 1);
    return true;
}

void PanelCursor::pageUp() {
    moveTo(std::max<std::int64_t>(0, index_ - rowsInSight_));
}

// In an empty list this leaves the cursor at -1: on no row, just as 0 is there, so nobody needs to care.
void PanelCursor::pageDown() {
    moveTo(std::min(index_ + rowsInSight_, rowCount_ - 1));
}

void PanelCursor::home() {
    moveTo(0);
}

void PanelCursor::end() {
    moveTo(std::max<std::int64_t>(0, rowCount_ - 1));
}

void PanelCursor::moveTo(std::int64_t index) {
    index_ = index;
    if (index_ < offset_) {
        offset_ = index_;
    } else if (index_ >= offset_ + rowsInSight_) {
        offset_ = index_ - rowsInSight_ + 1;
    }
    clampOffset();
}

void PanelCursor::scrollBy(std::int64_t rows) {
    offset_ += rows;
    clampOffset();
}

void PanelCursor::clampOffset() {
    const std::int64_t last = std::max<std::int64_t>(0, rowCount_ - rowsInSight_);
    offset_ = std::clamp<std::int64_t>(offset_, 0, last);
}

}  // namespace vantrel
