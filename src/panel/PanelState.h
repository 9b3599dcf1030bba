#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "model/SizeDisplayMode.h"
#include "model/SortOrder.h"
#include "panel/ItemOrder.h"
#include "panel/PanelCursor.h"

namespace vantrel {

/// All that a front end needs to know in order to paint a panel, whatever it paints with. Borrowed from the
/// panel and good until that changes. Main thread only.
struct PanelState {
    const std::string& path;  ///< bytes, as all names in the rows are
    const ItemList& items;
    const PanelCursor& cursor;
    SortField sortField = SortField::name;
    SortDirection sortDirection = SortDirection::ascending;
    SizeDisplayMode sizeDisplayMode = SizeDisplayMode::humanReadable;
    bool isActive = false;                                 ///< has the keyboard
    std::int64_t spinnerFrame = 0;                         ///< ticks
    std::optional<std::int64_t> freeBytes = std::nullopt;  ///< of the volume, where it is known

    const FileItem& item(std::int64_t row) const { return *items[static_cast<std::size_t>(row)]; }
};

}  // namespace vantrel
