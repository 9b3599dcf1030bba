#include "panel/ItemOrder.h"

#include <algorithm>
#include <chrono>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <string>
#include <utility>

namespace vantrel {

namespace {

// What one row is compared by, gathered once: a sort looks at each row many times. In this order; what a
// field does not use is equal in all rows.
struct Row {
    bool isFile;  // folders first
    std::int64_t number = 0;
    const std::string* extension = nullptr;
    std::int64_t nameBeginning = 0;  // or what further number the field needs
    const std::string* naturalName = nullptr;
    std::size_t place = 0;  // before the sort
    std::shared_ptr<FileItem> item;
};

// Reverses the order of numbers without the overflow that negating the smallest one would have.
std::int64_t largestFirst(std::int64_t number) {
    return ~number;
}

// The first eight bytes of a text as a number in the same order: most comparisons then end without touching
// the text itself, which lies somewhere else in memory.
std::int64_t leadingBytes(const std::string& text) {
    std::uint64_t bytes = 0;
    for (std::size_t i = 0; i < sizeof bytes; ++i) {
        bytes = bytes << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
    }
    constexpr std::uint64_t signBit = std::uint64_t{1} << 63;
    return static_cast<std::int64_t>(bytes ^ signBit);
}

void compareByName(Row& row) {
    row.naturalName = &row.item->naturalSortKey();
    row.nameBeginning = leadingBytes(*row.naturalName);
}

void compareByExtension(Row& row) {
    const std::string& extension = row.item->fileExtension;
    row.number = leadingBytes(extension);
    // A shorter one is all in the number: no name holds the zero byte that fills it up.
    if (extension.size() >= sizeof row.number) row.extension = &extension;
    compareByName(row);
}

// Newest first. The nanoseconds of a far date do not fit into one number.
void compareByDate(Row& row) {
    const auto second = std::chrono::floor<std::chrono::seconds>(row.item->modDate);
    row.number = largestFirst(static_cast<std::int64_t>(second.time_since_epoch().count()));
    row.nameBeginning = largestFirst(static_cast<std::int64_t>((row.item->modDate - second).count()));
}

Row makeRow(std::shared_ptr<FileItem> item, SortField field, std::size_t place) {
    const bool isFile = !item->isDirectory;
    Row row{.isFile = isFile, .place = place, .item = std::move(item)};
    switch (field) {
        case SortField::size:
            row.number = largestFirst(row.item->effectiveSize());
            break;
        case SortField::date:
            compareByDate(row);
            break;
        case SortField::ext:
            compareByExtension(row);
            break;
        case SortField::name:
            compareByName(row);
            break;
    }
    return row;
}

std::strong_ordering compareTexts(const std::string* a, const std::string* b) {
    if (a == nullptr || b == nullptr) return std::strong_ordering::equal;
    return a->compare(*b) <=> 0;
}

// By the field alone, in ascending direction.
std::strong_ordering compareFields(const Row& a, const Row& b) {
    if (const auto order = a.number <=> b.number; std::is_neq(order)) return order;
    if (const auto order = compareTexts(a.extension, b.extension); std::is_neq(order)) return order;
    if (const auto order = a.nameBeginning <=> b.nameBeginning; std::is_neq(order)) return order;
    return compareTexts(a.naturalName, b.naturalName);
}

// The order in which rows are sorted. A descending list is sorted back to front: growing sizes then move rows
// towards the start of the list in both directions, which is the way that a nearly sorted list is mended
// fast.
struct RowOrder {
    SortDirection direction;

    std::strong_ordering compare(const Row& a, const Row& b) const {
        const bool foldersFirst = direction == SortDirection::ascending;
        if (a.isFile != b.isFile) {
            return a.isFile == foldersFirst ? std::strong_ordering::greater : std::strong_ordering::less;
        }
        return compareFields(a, b);
    }

    // A strict total order: rows that are equal stay in the order in which they were.
    bool operator()(const Row& a, const Row& b) const {
        const auto order = compare(a, b);
        return std::is_neq(order) ? std::is_lt(order) : a.place < b.place;
    }
};

// Sorts rows of which most stand in order already: those that break it are taken out, sorted by themselves
// and merged back in. Where many break it, this is an ordinary sort.
void sortNearlySorted(std::vector<Row>& rows, const RowOrder& before) {
    std::vector<Row> strays;
    std::size_t kept = 0;
    for (std::size_t next = 0; next < rows.size(); ++next) {
        if (kept > 0 && before(rows[next], rows[kept - 1])) {
            // One of the two neighbours is out of place. When the one before the last kept row gets along
            // with the new row, the last kept row is the stray.
            if (kept == 1 || !before(rows[next], rows[kept - 2])) {
                strays.push_back(std::exchange(rows[kept - 1], std::move(rows[next])));
            } else {
                strays.push_back(std::move(rows[next]));
            }
            continue;
        }
        if (kept != next) rows[kept] = std::move(rows[next]);
        ++kept;
    }
    if (strays.empty()) return;
    std::ranges::sort(strays, before);
    rows.resize(kept);
    std::vector<Row> merged;
    merged.reserve(kept + strays.size());
    std::ranges::merge(std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()),
                       std::make_move_iterator(strays.begin()), std::make_move_iterator(strays.end()),
                       std::back_inserter(merged), before);
    rows = std::move(merged);
}

// Descending is the negation of ascending, under which equal rows count as in order both ways: a stable merge
// sort turns their relative order round at every sort, and so it is meant to be; a list that kept it would
// not be the mirror image of the ascending one. No standard algorithm may be given such a comparison, so rows
// are sorted by a strict order, and the turn is made here.
template <class Iterator, class Equal>
void turnEqualRuns(Iterator begin, Iterator end, Equal areEqual) {
    for (Iterator run = begin; run != end;) {
        const Iterator runEnd = std::find_if(run, end, [&](const auto& row) { return !areEqual(*run, row); });
        std::reverse(run, runEnd);
        run = runEnd;
    }
}

std::vector<Row> makeRows(ItemList& items, SortField field, SortDirection direction) {
    if (direction == SortDirection::descending) std::ranges::reverse(items);
    std::vector<Row> rows;
    rows.reserve(items.size());
    for (auto& item : items) {
        if (!item->isParentDir) rows.push_back(makeRow(std::move(item), field, rows.size()));
    }
    return rows;
}

// The order of a list by size: whether `a` stands above `b`.
struct SizeOrder {
    SortDirection direction;

    bool operator()(const std::shared_ptr<FileItem>& a, const std::shared_ptr<FileItem>& b) const {
        if (a->isDirectory != b->isDirectory) return a->isDirectory;
        return direction == SortDirection::ascending ? a->effectiveSize() > b->effectiveSize()
                                                     : a->effectiveSize() < b->effectiveSize();
    }
};

// Moves each changed row to its place among those before it, where a stable sort would put it. False when one
// belongs further back instead; then the rows are not in order, but equal ones still stand as they stood.
template <class Iterator, class Before>
bool moveForward(Iterator begin, Iterator end, const ChangedRows& changed, Before before) {
    std::size_t left = changed.count();
    for (Iterator row = begin; row != end && left > 0; ++row) {
        if (!changed.contains(**row)) continue;
        --left;
        const Iterator next = std::next(row);
        std::rotate(std::upper_bound(begin, row, *row, before), row, next);
        if (next != end && before(*next, *row) && !changed.contains(**next)) return false;
    }
    return true;
}

// As rows of a list by size grow, they move towards its start, or towards the end of a descending list.
bool moveGrownRows(std::span<std::shared_ptr<FileItem>> rows, const ChangedRows& changed, SizeOrder before) {
    if (before.direction == SortDirection::ascending) {
        return moveForward(rows.begin(), rows.end(), changed, before);
    }
    const auto after = [&before](const auto& a, const auto& b) { return before(b, a); };
    return moveForward(rows.rbegin(), rows.rend(), changed, after);
}

}  // namespace

void sortItems(ItemList& items, SortField field, SortDirection direction) {
    const auto parent = std::ranges::find_if(items, [](const auto& item) { return item->isParentDir; });
    ItemList sorted;
    sorted.reserve(items.size());
    if (parent != items.end()) sorted.push_back(*parent);

    std::vector<Row> rows = makeRows(items, field, direction);
    const RowOrder order{direction};
    sortNearlySorted(rows, order);
    if (direction == SortDirection::descending) {
        turnEqualRuns(rows.begin(), rows.end(),
                      [&order](const Row& a, const Row& b) { return std::is_eq(order.compare(a, b)); });
        std::ranges::reverse(rows);  // they were read back to front
    }
    std::ranges::transform(rows, std::back_inserter(sorted), [](Row& row) { return std::move(row.item); });
    items = std::move(sorted);
}

void ChangedRows::add(const FileItem& item) {
    if (areFew() && !contains(item)) rows_.push_back(&item);
}

void sortChangedSizes(ItemList& items, const ChangedRows& changed, SortDirection direction) {
    const bool hasParent = !items.empty() && items.front()->isParentDir;
    const std::span rows = std::span(items).subspan(hasParent ? 1 : 0);
    const SizeOrder before{direction};
    if (!changed.areFew() || !moveGrownRows(rows, changed, before)) {
        sortItems(items, SortField::size, direction);
    } else if (direction == SortDirection::descending) {
        turnEqualRuns(rows.begin(), rows.end(), [&](const auto& a, const auto& b) { return !before(a, b); });
    }
}

}  // namespace vantrel
