#pragma once

#include <memory>
#include <vector>

#include "model/FileItem.h"
#include "model/SortOrder.h"

namespace vantrel {

using ItemList = std::vector<std::shared_ptr<FileItem>>;

/// Puts the rows in their order of display: ".." first (only the first of several survives), folders before
/// files in both directions, then by the field. Ascending runs A to Z, largest and newest first, and keeps
/// the relative order of equal rows; descending runs the other way and reverses the relative order of equal
/// rows. A list that is nearly in order, as after one folder's total has arrived, costs a few passes over it.
void sortItems(ItemList& items, SortField field, SortDirection direction);

}  // namespace vantrel
