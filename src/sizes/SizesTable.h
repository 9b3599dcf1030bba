#pragma once

#include <string>
#include <vector>

#include "sizes/SizesOptions.h"
#include "walk/Walk.h"

namespace vantrel::sizes {

// Values and pure functions; any thread.

/// One line of the output.
struct Row {
    std::string path;  ///< raw bytes
    WalkTotals totals;
    bool operator==(const Row&) const = default;
};

/// Whether control characters in paths may reach whoever reads the output.
enum class PathStyle : std::uint8_t {
    raw,       ///< the bytes themselves, for files and pipes
    harmless,  ///< one line of valid text, for terminals
};

/// Largest first and equal sizes by name, or all by name. Names are compared bytewise, in every locale alike.
void sortRows(std::vector<Row>& rows, RowOrder order);

/// Size, item count and path, with a newline. Exact counts are separated by tabs; sizes for people are padded
/// into columns.
std::string lineOf(const Row& row, NumberStyle numbers, PathStyle paths);

/// What a terminal shows while counting goes on, without a newline, at most `columns` characters.
std::string liveLine(std::size_t finished, std::size_t folders, WalkTotals soFar, std::size_t columns);

}  // namespace vantrel::sizes
