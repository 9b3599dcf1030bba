#include "panel/ItemOrder.h"

#include <algorithm>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <optional>
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
    std::int64_t nameBeginning = 0;
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

Row makeRow(std::shared_ptr<FileItem> item, SortField field, std::size_t place) {
    const bool isFile = !item->isDirectory;
    Row row{.isFile = isFile, .place = place, .item = std::move(item)};
    switch (field) {
        case SortField::size:
            row.number = largestFirst(row.item->effectiveSize());
            break;
        case SortField::date:
            row.number = largestFirst(row.item->modDate.time_since_epoch().count());
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
// sort turns their relative order round at every sort. No standard algorithm may be given such a comparison,
// so the turn is made here. The list was read back to front once; turning each run of equal rows and then the
// whole leaves exactly those runs turned.
template <class Rows, class Equal>
void turnRound(Rows& rows, Equal areEqual) {
    for (auto run = rows.begin(); run != rows.end();) {
        const auto end = std::find_if(run, rows.end(), [&](const auto& row) { return !areEqual(*run, row); });
        std::reverse(run, end);
        run = end;
    }
    std::ranges::reverse(rows);
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

// What a row of a list by size is sorted by, in the order in which `RowOrder` sorts.
struct SizeKey {
    bool isInSecondGroup;
    std::int64_t number;
    std::size_t place;  // before the sort; not compared

    bool operator==(const SizeKey& other) const {
        return isInSecondGroup == other.isInSecondGroup && number == other.number;
    }
    bool operator<(const SizeKey& other) const {
        if (isInSecondGroup != other.isInSecondGroup) return other.isInSecondGroup;
        return number < other.number;
    }
};

// The keys of rows by size, sorted. Nothing when more than a few rows stand too far back.
std::optional<std::vector<SizeKey>> keysOfNearlySorted(std::span<const std::shared_ptr<FileItem>> rows,
                                                       SortDirection direction) {
    constexpr int mostStrays = 8;
    int strays = 0;
    std::vector<SizeKey> keys;
    keys.reserve(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::size_t place = direction == SortDirection::ascending ? i : rows.size() - 1 - i;
        const FileItem& row = *rows[place];
        const bool isInSecondGroup = row.isDirectory != (direction == SortDirection::ascending);
        const SizeKey key{isInSecondGroup, largestFirst(row.effectiveSize()), place};
        if (keys.empty() || !(key < keys.back())) {
            keys.push_back(key);
        } else {
            if (++strays > mostStrays) return std::nullopt;
            keys.insert(std::ranges::upper_bound(keys, key, std::less<>()), key);
        }
    }
    return keys;
}

// The usual case of a list by size: it was in order, then the total of one folder arrived and few others
// grew. Does what the sort below does, without gathering all that a sort may need. False, and nothing
// changed, when it is another case.
bool sortAfterFewGrew(ItemList& items, SortDirection direction) {
    const bool hasParent = !items.empty() && items.front()->isParentDir;
    const std::span rows = std::span(items).subspan(hasParent ? 1 : 0);
    if (std::ranges::any_of(rows, [](const auto& row) { return row->isParentDir; })) return false;
    auto keys = keysOfNearlySorted(rows, direction);
    if (!keys) return false;
    if (direction == SortDirection::descending) turnRound(*keys, std::equal_to<>());
    ItemList sorted;
    sorted.reserve(rows.size());
    for (const SizeKey& key : *keys) sorted.push_back(std::move(rows[key.place]));
    std::ranges::move(sorted, rows.begin());
    return true;
}

}  // namespace

void sortItems(ItemList& items, SortField field, SortDirection direction) {
    if (field == SortField::size && sortAfterFewGrew(items, direction)) return;
    const auto parent = std::ranges::find_if(items, [](const auto& item) { return item->isParentDir; });
    ItemList sorted;
    sorted.reserve(items.size());
    if (parent != items.end()) sorted.push_back(*parent);

    std::vector<Row> rows = makeRows(items, field, direction);
    const RowOrder order{direction};
    sortNearlySorted(rows, order);
    if (direction == SortDirection::descending) {
        turnRound(rows, [&order](const Row& a, const Row& b) { return std::is_eq(order.compare(a, b)); });
    }
    std::ranges::transform(rows, std::back_inserter(sorted), [](Row& row) { return std::move(row.item); });
    items = std::move(sorted);
}

}  // namespace vantrel
