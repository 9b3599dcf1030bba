#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <ranges>
#include <utility>
#include <vector>

#include "fuzz/Input.h"
#include "fuzz/core/Targets.h"
#include "model/FileItem.h"
#include "panel/ItemOrder.h"

namespace vantrel::fuzz {

namespace {

using Item = std::shared_ptr<FileItem>;

Item madeItem(Input& input) {
    static constexpr std::array extensions{"", ".a", ".A", ".txt", ".longext", ".longexte", ".longexter"};
    FileItemFields fields{.name = input.name(2) + input.oneOf(extensions),
                          .path = "/somewhere",
                          .isDirectory = input.flag(),
                          .size = input.flag() ? input.size() : input.byte() % 3,
                          .modDate = FileTime(std::chrono::nanoseconds(input.flag() ? input.size() : 0))};
    if (fields.isDirectory) fields.vantrelState = state::Calculating{};
    return std::make_shared<FileItem>(std::move(fields));
}

bool goesBefore(const FileItem& a, const FileItem& b, SortField field) {
    const auto byName = [&] { return a.naturalSortKey() < b.naturalSortKey(); };
    switch (field) {
        case SortField::size:
            return a.effectiveSize() > b.effectiveSize();
        case SortField::date:
            return a.modDate > b.modDate;
        case SortField::ext:
            return a.fileExtension != b.fileExtension ? a.fileExtension < b.fileExtension : byName();
        case SortField::name:
            return byName();
    }
    throw Violation("there are four fields");
}

/// The slow and plain way to the same order.
ItemList expectedOrder(const ItemList& items, SortField field, SortDirection direction) {
    ItemList rows;
    std::ranges::copy_if(items, std::back_inserter(rows),
                         [](const Item& item) { return !item->isParentDir; });
    const bool isDescending = direction == SortDirection::descending;
    if (isDescending) std::ranges::reverse(rows);
    std::ranges::stable_sort(rows, [&](const Item& a, const Item& b) {
        if (a->isDirectory != b->isDirectory) return a->isDirectory;
        return isDescending ? goesBefore(*b, *a, field) : goesBefore(*a, *b, field);
    });
    const auto parent = std::ranges::find_if(items, &FileItem::isParentDir, &Item::operator*);
    if (parent != items.end()) rows.insert(rows.begin(), *parent);
    return rows;
}

void changeSomething(Input& input, ItemList& items) {
    if (items.empty()) return;
    FileItem& item = *items[input.below(items.size())];
    if (item.isParentDir) return;
    if (!item.isDirectory) {
        item.size = input.size();
    } else if (input.flag()) {
        item.vantrelState = state::Calculating{input.size(), 1};
    } else {
        item.vantrelState = state::Calculated{input.byte() % 4, 1};
    }
}

}  // namespace

void tryItemOrder(std::span<const std::uint8_t> bytes) {
    Input input(bytes);
    ItemList items;
    for (std::size_t count = input.below(40); count > 0; --count) items.push_back(madeItem(input));
    if (input.flag()) {
        const auto place = items.begin() + static_cast<std::ptrdiff_t>(input.below(items.size() + 1));
        items.insert(place, std::make_shared<FileItem>(FileItem::parentDirectory("/a/b")));
    }
    while (!input.isEmpty()) {
        for (std::size_t count = input.below(4); count > 0; --count) changeSomething(input, items);
        const SortField field = input.oneOf(allSortFields);
        const SortDirection direction = input.flag() ? SortDirection::descending : SortDirection::ascending;
        const ItemList expected = expectedOrder(items, field, direction);
        sortItems(items, field, direction);
        require(items == expected, "rows stand in the order of their field");
    }
}

}  // namespace vantrel::fuzz
