#pragma once

#include <cstdint>

namespace vantrel {

/// The cursor of a list and how far the list is scrolled, counted in rows from 0. A plain value that knows
/// nothing of the rows but how many there are and how many of them are in sight. Any thread.
class PanelCursor {
public:
    std::int64_t index() const { return index_; }    ///< of the cursor; on no row in an empty list
    std::int64_t offset() const { return offset_; }  ///< the first row in sight
    std::int64_t rowCount() const { return rowCount_; }
    std::int64_t rowsInSight() const { return rowsInSight_; }  ///< as many as fit, at least 1
    std::int64_t endInSight() const;                           ///< behind the last row in sight

    bool hasRow(std::int64_t row) const { return row >= 0 && row < rowCount_; }
    bool isOnRow() const { return hasRow(index_); }

    /// Another list: the cursor goes to `index`, which is scrolled into sight.
    void reset(std::int64_t rowCount, std::int64_t index);

    /// Leaves the cursor where it is, in sight or not.
    void setRowsInSight(std::int64_t rows);

    /// Moves by one row; false at the ends, where nothing changes.
    bool moveUp();
    bool moveDown();

    /// These scroll the cursor into sight even where it does not move.
    void pageUp();
    void pageDown();
    void home();
    void end();
    void moveTo(std::int64_t index);

    /// Puts the cursor on a row without scrolling.
    void pointAt(std::int64_t index) { index_ = index; }

    /// Scrolls by so many rows, downwards when positive. The cursor stays, and may get out of sight.
    void scrollBy(std::int64_t rows);

private:
    void clampOffset();

    std::int64_t index_ = 0;
    std::int64_t offset_ = 0;
    std::int64_t rowCount_ = 0;
    std::int64_t rowsInSight_ = 1;
};

}  // namespace vantrel
