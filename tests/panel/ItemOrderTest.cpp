#include "panel/ItemOrder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <string>

#include "support/ScopedEnvironment.h"

namespace vantrel {
namespace {

using testing::ElementsAre;
using enum SortField;
using enum SortDirection;

std::shared_ptr<FileItem> file(const std::string& name, std::int64_t size = 0, FileTime date = {}) {
    return std::make_shared<FileItem>(
        FileItemFields{.name = name, .path = "/" + name, .size = size, .modDate = date});
}

std::shared_ptr<FileItem> folder(const std::string& name, VantrelState state = state::NotCalculated{}) {
    return std::make_shared<FileItem>(FileItemFields{
        .name = name, .path = "/" + name, .isDirectory = true, .vantrelState = std::move(state)});
}

std::shared_ptr<FileItem> parent() {
    return std::make_shared<FileItem>(FileItem::parentDirectory("/a/b"));
}

std::vector<std::string> namesOf(const ItemList& items) {
    std::vector<std::string> names;
    for (const auto& item : items) names.push_back(item->name);
    return names;
}

std::vector<std::string> sorted(ItemList items, SortField field, SortDirection direction) {
    sortItems(items, field, direction);
    return namesOf(items);
}

FileTime day(int number) {
    return FileTime(FileTime::duration(std::chrono::days(number)));
}

TEST(ItemOrder, theParentRowIsFirstWhateverTheFieldAndDirection) {
    for (const SortField field : allSortFields) {
        for (const SortDirection direction : {ascending, descending}) {
            EXPECT_EQ(sorted({file("a"), folder("b"), parent()}, field, direction).front(), "..");
        }
    }
}

TEST(ItemOrder, ofSeveralParentRowsOnlyTheFirstSurvives) {
    ItemList items{file("a"), parent(), parent()};
    const auto first = items[1];
    sortItems(items, name, ascending);
    ASSERT_THAT(namesOf(items), ElementsAre("..", "a"));
    EXPECT_EQ(items[0], first);
}

TEST(ItemOrder, foldersStayAboveFilesInBothDirections) {
    const ItemList items{file("a"), folder("m"), file("z"), folder("b")};
    EXPECT_THAT(sorted(items, name, ascending), ElementsAre("b", "m", "a", "z"));
    EXPECT_THAT(sorted(items, name, descending), ElementsAre("m", "b", "z", "a"));
}

TEST(ItemOrder, namesRunNaturallyWithNumbersByValueAndLetterCaseAside) {
    const test::ScopedLocale locale("en_US.UTF-8");
    const ItemList items{file("file10"), file("File2"), file("file1"), file("apple"), file("Banana")};
    EXPECT_THAT(sorted(items, name, ascending), ElementsAre("apple", "Banana", "file1", "File2", "file10"));
    EXPECT_THAT(sorted(items, name, descending), ElementsAre("file10", "File2", "file1", "Banana", "apple"));
}

TEST(ItemOrder, ascendingSizesRunLargestFirstAndDescendingSmallestFirst) {
    const ItemList items{file("mid", 5), file("large", 9), file("small", 1)};
    EXPECT_THAT(sorted(items, size, ascending), ElementsAre("large", "mid", "small"));
    EXPECT_THAT(sorted(items, size, descending), ElementsAre("small", "mid", "large"));
}

TEST(ItemOrder, aFolderIsSortedByItsRunningOrFinalTotalAndByZeroBeforeThat) {
    const ItemList items{folder("waiting"), folder("running", state::Calculating{50, 1}),
                         folder("done", state::Calculated{70, 2}), folder("failed", state::Error{"x"})};
    EXPECT_THAT(sorted(items, size, ascending), ElementsAre("done", "running", "waiting", "failed"));
}

TEST(ItemOrder, theSmallestAndTheLargestNumberFindTheirPlaces) {
    const ItemList items{file("zero", 0), file("max", std::numeric_limits<std::int64_t>::max()),
                         file("min", std::numeric_limits<std::int64_t>::min())};
    EXPECT_THAT(sorted(items, size, ascending), ElementsAre("max", "zero", "min"));
    EXPECT_THAT(sorted(items, size, descending), ElementsAre("min", "zero", "max"));
}

TEST(ItemOrder, ascendingDatesRunNewestFirst) {
    const ItemList items{file("old", 0, day(1)), file("new", 0, day(3)), file("mid", 0, day(2))};
    EXPECT_THAT(sorted(items, date, ascending), ElementsAre("new", "mid", "old"));
    EXPECT_THAT(sorted(items, date, descending), ElementsAre("old", "mid", "new"));
}

TEST(ItemOrder, datesAreComparedToTheNanosecondHoweverFarAway) {
    const auto later = [](FileTime date) { return date + std::chrono::nanoseconds(1); };
    const FileTime ancient = day(-700'000);  // the year 53
    const FileTime far = day(2'900'000);     // the year 9909
    const ItemList items{file("ancient", 0, ancient), file("far", 0, far), file("today", 0, day(20'000)),
                         file("later", 0, later(far)), file("younger", 0, later(ancient))};
    EXPECT_THAT(sorted(items, date, ascending), ElementsAre("later", "far", "today", "younger", "ancient"));
    EXPECT_THAT(sorted(items, date, descending), ElementsAre("ancient", "younger", "today", "far", "later"));
}

TEST(ItemOrder, extensionsRunByCodePointAndEqualOnesByName) {
    const ItemList items{file("b.txt"), file("z.c"), file("a.txt"), file("plain"), file("x.\xC3\xA9")};
    EXPECT_THAT(sorted(items, ext, ascending), ElementsAre("plain", "z.c", "a.txt", "b.txt", "x.\xC3\xA9"));
    EXPECT_THAT(sorted(items, ext, descending), ElementsAre("x.\xC3\xA9", "b.txt", "a.txt", "z.c", "plain"));
}

TEST(ItemOrder, extensionsAreComparedByCodePointAndNotByLanguage) {
    // "_" (U+005F) stands before "a" (U+0061); a collator would ignore or reorder it.
    const ItemList items{file("1.a"), file("2._"), file("3.Z")};
    EXPECT_THAT(sorted(items, ext, ascending), ElementsAre("2._", "1.a", "3.Z"));
}

TEST(ItemOrder, longExtensionsThatBeginAlikeAreToldApart) {
    const ItemList items{file("1.abcdefghi"), file("2.abcdefgh"), file("3.abcdefghij"), file("4.abcdefg")};
    EXPECT_THAT(sorted(items, ext, ascending),
                ElementsAre("4.abcdefg", "2.abcdefgh", "1.abcdefghi", "3.abcdefghij"));
}

TEST(ItemOrder, ascendingKeepsTheOrderOfEqualRows) {
    const ItemList items{file("c", 5), file("a", 5), file("b", 5), file("x", 9)};
    EXPECT_THAT(sorted(items, size, ascending), ElementsAre("x", "c", "a", "b"));
}

TEST(ItemOrder, descendingReversesTheOrderOfEqualRowsAtEverySort) {
    ItemList items{file("c", 5), file("a", 5), file("b", 5), file("x", 9), file("w", 1)};
    sortItems(items, size, descending);
    EXPECT_THAT(namesOf(items), ElementsAre("w", "b", "a", "c", "x"));
    sortItems(items, size, descending);
    EXPECT_THAT(namesOf(items), ElementsAre("w", "c", "a", "b", "x"));
}

TEST(ItemOrder, descendingReversesEqualFoldersAndEqualFilesApart) {
    const ItemList items{folder("d1"), folder("d2"), file("f1", 3), file("f2", 3)};
    EXPECT_THAT(sorted(items, size, descending), ElementsAre("d2", "d1", "f2", "f1"));
}

// The rule itself, spelt out: a stable merge sort that is given the negated comparison takes the right-hand
// one of two equal rows first.
ItemList mergeSortedByTheRule(const ItemList& items, SortDirection direction) {
    const auto goesBefore = [&](const auto& a, const auto& b) {
        if (a->isDirectory != b->isDirectory) return a->isDirectory;
        const bool isLess = a->effectiveSize() > b->effectiveSize();
        return direction == ascending ? isLess : !isLess;
    };
    if (items.size() < 2) return items;
    const auto middle = items.begin() + static_cast<std::ptrdiff_t>(items.size() / 2);
    const ItemList left = mergeSortedByTheRule({items.begin(), middle}, direction);
    const ItemList right = mergeSortedByTheRule({middle, items.end()}, direction);
    ItemList merged;
    auto l = left.begin();
    auto r = right.begin();
    while (l != left.end() && r != right.end()) merged.push_back(goesBefore(*r, *l) ? *r++ : *l++);
    merged.insert(merged.end(), l, left.end());
    merged.insert(merged.end(), r, right.end());
    return merged;
}

TEST(ItemOrder, anyListIsOrderedAsAStableMergeSortWithTheRulesComparisonWould) {
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        ItemList items;
        const auto count = random() % 40;
        for (unsigned i = 0; i < count; ++i) {
            const std::int64_t figure = static_cast<std::int64_t>(random() % 6);
            const std::string label = "n" + std::to_string(i);
            items.push_back(random() % 2 == 0 ? file(label, figure)
                                              : folder(label, state::Calculated{figure, 1}));
        }
        for (const SortDirection direction : {ascending, descending, descending, ascending}) {
            const ItemList expected = mergeSortedByTheRule(items, direction);
            sortItems(items, size, direction);
            ASSERT_EQ(namesOf(items), namesOf(expected)) << "round " << round;
        }
    }
}

TEST(ItemOrder, aNearlySortedListWithAFewChangedTotalsIsOrderedInFull) {
    std::mt19937 random(11);
    ItemList items;
    for (int i = 0; i < 500; ++i) items.push_back(folder("d" + std::to_string(i), state::Calculating{0, 0}));
    for (int arrival = 0; arrival < 500; ++arrival) {
        for (int grown = 0; grown < arrival % 4; ++grown) {
            auto& row = *items[random() % items.size()];
            row.vantrelState = state::Calculating{row.effectiveSize() + static_cast<int>(random() % 4), 1};
        }
        const SortDirection direction = arrival % 100 < 50 ? ascending : descending;
        const ItemList expected = mergeSortedByTheRule(items, direction);
        sortItems(items, size, direction);
        ASSERT_EQ(namesOf(items), namesOf(expected)) << "arrival " << arrival;
    }
}

// Rows change as walks report: none, a few or many between two sorts, some twice, some to what they were.
void changeSomeRows(const ItemList& items, ChangedRows& changed, std::mt19937& random) {
    const unsigned count = random() % 8 == 0 ? 20 : random() % 5;
    for (unsigned i = 0; i < count; ++i) {
        FileItem& row = *items[random() % items.size()];
        if (row.isParentDir || !row.isDirectory) continue;
        row.vantrelState = state::Calculating{static_cast<std::int64_t>(random() % 6), 1};
        changed.add(row);
    }
}

TEST(ItemOrder, afterAFewTotalsAListIsOrderedAsIfItHadBeenSortedAnew) {
    std::mt19937 random(13);
    for (int round = 0; round < 60; ++round) {
        const SortDirection direction = round % 2 == 0 ? ascending : descending;
        ItemList items;
        for (unsigned i = 0; i < random() % 60; ++i) items.push_back(folder("d" + std::to_string(i)));
        for (unsigned i = 0; i < random() % 5; ++i) items.push_back(file("f" + std::to_string(i), i));
        if (random() % 2 == 0) items.insert(items.begin(), parent());
        sortItems(items, size, direction);
        for (int arrival = 0; arrival < 50 && !items.empty(); ++arrival) {
            ChangedRows changed;
            changeSomeRows(items, changed, random);
            ItemList expected = items;
            sortItems(expected, size, direction);
            sortChangedSizes(items, changed, direction);
            ASSERT_EQ(namesOf(items), namesOf(expected)) << "round " << round << ", arrival " << arrival;
        }
    }
}

TEST(ItemOrder, changedRowsAreKnownUntilTheyAreMany) {
    const ItemList rows{folder("a"), folder("b")};
    ChangedRows changed;
    for (int time = 0; time < 100; ++time) changed.add(*rows[0]);
    EXPECT_TRUE(changed.areFew());
    EXPECT_TRUE(changed.contains(*rows[0]));
    EXPECT_FALSE(changed.contains(*rows[1]));
    ItemList others;
    for (int i = 0; i < 20; ++i) changed.add(*others.emplace_back(folder("d" + std::to_string(i))));
    EXPECT_FALSE(changed.areFew());
    changed.clear();
    EXPECT_TRUE(changed.areFew());
    EXPECT_FALSE(changed.contains(*rows[0]));
}

TEST(ItemOrder, aChangedRowThatIsNotInTheListChangesNothing) {
    ItemList items{folder("a"), folder("b")};
    const auto gone = folder("gone", state::Calculated{9, 1});
    ChangedRows changed;
    changed.add(*gone);
    sortChangedSizes(items, changed, ascending);
    EXPECT_THAT(namesOf(items), ElementsAre("a", "b"));
}

TEST(ItemOrder, sortingNothingOrOneRowIsNothing) {
    EXPECT_THAT(sorted({}, name, descending), ElementsAre());
    EXPECT_THAT(sorted({file("a")}, size, descending), ElementsAre("a"));
}

}  // namespace
}  // namespace vantrel
