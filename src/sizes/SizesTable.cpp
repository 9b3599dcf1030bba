#include "sizes/SizesTable.h"

#include <algorithm>

#include "model/engine/HumanReadableBytes.h"
#include "sizes/TerminalText.h"

namespace vantrel::sizes {

namespace {

std::string rightAligned(const std::string& text, std::size_t width) {
    return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

std::string sizeText(std::int64_t bytes) {
    const std::string padded = humanReadableBytes(bytes);
    const auto begin = padded.find_first_not_of(' ');
    return padded.substr(begin, padded.find_last_not_of(' ') + 1 - begin);
}

}  // namespace

void sortRows(std::vector<Row>& rows, RowOrder order) {
    std::sort(rows.begin(), rows.end(), [order](const Row& left, const Row& right) {
        if (order == RowOrder::largestFirst && left.totals.bytes != right.totals.bytes)
            return left.totals.bytes > right.totals.bytes;
        return left.path < right.path;
    });
}

std::string lineOf(const Row& row, NumberStyle numbers, PathStyle paths) {
    const std::string path = paths == PathStyle::raw ? row.path : terminalText(row.path);
    const std::string items = std::to_string(row.totals.items);
    if (numbers == NumberStyle::bytes)
        return std::to_string(row.totals.bytes) + '\t' + items + '\t' + path + '\n';
    constexpr std::size_t sizeWidth = 10;
    constexpr std::size_t itemsWidth = 12;
    return rightAligned(sizeText(row.totals.bytes), sizeWidth) + rightAligned(items, itemsWidth) + "  " +
           path + '\n';
}

std::string liveLine(std::size_t finished, std::size_t folders, WalkTotals soFar, std::size_t columns) {
    std::string line = std::to_string(finished) + " of " + std::to_string(folders) + " folders, " +
                       sizeText(soFar.bytes) + ", " + std::to_string(soFar.items) + " items";
    if (line.size() > columns) line.resize(columns);
    return line;
}

}  // namespace vantrel::sizes
