#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

#include "model/FileItem.h"
#include "model/SortOrder.h"

namespace vantrel {

using ItemList = std::vector<std::shared_ptr<FileItem>>;

/// Puts the rows in their order of display: ".." first (only the first of several survives), folders before
/// files in both directions, then by the field. Ascending runs A to Z, largest and newest first, and keeps
/// the relative order of equal rows. Descending runs the other way and reverses that order, so it mirrors the
/// list down to its equal rows, and sorting a second time turns those round again: how often a list is sorted
/// can be seen. Main thread only.
void sortItems(ItemList& items, SortField field, SortDirection direction);

/// The rows whose size has changed since a list was sorted by size, as long as they are few; then only that
/// they are many. Rows are known by their address and never looked into, so they may be gone.
class ChangedRows {
public:
    void add(const FileItem& item);
    void clear() { rows_.clear(); }
    bool areFew() const { return rows_.size() <= most; }
    std::size_t count() const { return rows_.size(); }
    bool contains(const FileItem& item) const { return std::ranges::find(rows_, &item) != rows_.end(); }

private:
    static constexpr std::size_t most = 8;

    std::vector<const FileItem*> rows_;
};

/// Does what `sortItems` by size would do with a list that it left, and of which only the rows in `changed`
/// have changed since. Where they are few it looks into hardly any other row (ascending), or into each one
/// once (descending), so that a total can arrive in each of thousands of rows.
void sortChangedSizes(ItemList& items, const ChangedRows& changed, SortDirection direction);

}  // namespace vantrel
