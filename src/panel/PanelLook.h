#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "panel/PanelState.h"
#include "platform/Color.h"

/// What a panel says and in which colours, without a word about places: for every front end alike. Texts are
/// valid UTF-8 without control characters. Pure functions; main thread only, as rows are.
namespace vantrel::panel {

enum Column : std::size_t { nameColumn, sizeColumn, dateColumn, timeColumn };

struct ColumnTitle {
    std::string_view text;
    SortField clickSortsBy;
    bool tellsOrder;  ///< whether it is marked when rows are in that order
};

/// In the order of the columns. A time is part of its date, so the last title is free for the one order
/// without a column of its own. It does not tell of that order: it would be read as one by time.
inline constexpr std::array columnTitles{
    ColumnTitle{"Name", SortField::name, true}, ColumnTitle{"Size", SortField::size, true},
    ColumnTitle{"Date", SortField::date, true}, ColumnTitle{"Time", SortField::ext, false}};

/// Whether the rows are in the order that the title of that column tells.
bool isSortedBy(std::size_t column, SortField field);

/// The folder; of a long path only the end.
std::string titlePath(const std::string& path);
/// The same between the two ends of a frame.
std::string titleText(const PanelState& state);
std::string columnTitleText(const PanelState& state, std::size_t column);

// The cells of a row.
std::string nameText(const FileItem& item);
std::string sizeText(const PanelState& state, const FileItem& item);

std::string statusText(const PanelState& state);  ///< the row of the cursor; empty without one
std::string countText(const PanelState& state);   ///< the number of rows and the free space

struct RowColors {
    const Color& name;
    const Color& size;
    const Color& date;  ///< and time
};

/// By kind; of the row under the cursor by who has the keyboard.
RowColors rowColors(const PanelState& state, std::int64_t row);
const Color& selectionGround(bool isActive);
const Color& frameColor(bool isActive);
const Color& titleColor(bool isActive);
const Color& columnTitleColor(const PanelState& state, std::size_t column);

}  // namespace vantrel::panel
