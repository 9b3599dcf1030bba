#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <compare>
#include <iterator>
#include <random>
#include <thread>
#include <utility>
#include <vector>

#include "support/ScopedEnvironment.h"
#include "text/Text.h"

namespace vantrel::text {

namespace {

using test::ScopedEnvironment;
using test::ScopedLocale;

using Names = std::vector<std::string>;

/// The names in natural order, whatever order they come in.
Names inNaturalOrder(Names names) {
    std::ranges::reverse(names);
    std::ranges::sort(names, {}, naturalSortKey);
    return names;
}

/// Each list is written in the order that it must have.
void expectKeptOrder(const Names& names) {
    EXPECT_EQ(inNaturalOrder(names), names);
}

}  // namespace

TEST(NaturalSortKey, comparesRunsOfDigitsByValue) {
    const ScopedLocale english("en_US.UTF-8");
    expectKeptOrder({"file1", "file2", "file9.txt", "file10", "file010x", "file100"});
    expectKeptOrder({"1.9", "1.10", "2.0"});
    expectKeptOrder({"99999999999999999999", "100000000000000000000"});
}

TEST(NaturalSortKey, comparesRunsOfDigitsByValueAtAnyLength) {
    const auto nines = [](std::size_t count) { return std::string(count, '9'); };
    const auto power = [](std::size_t zeros) { return "1" + std::string(zeros, '0'); };
    for (const char* const locale : {"en_US.UTF-8", "de_DE.UTF-8", "ja_JP.UTF-8", "C"}) {
        const ScopedLocale language(locale);
        expectKeptOrder({nines(253), power(253), nines(254), power(254), nines(255), power(255), power(256)});
        expectKeptOrder({power(254), power(253) + "1", "2" + std::string(254, '0')});
        expectKeptOrder({"a" + nines(254) + "z", "a" + power(254), "a" + power(254) + "b", "b"});
        expectKeptOrder({"000" + nines(254), power(254), "0" + power(253) + "1"});
        expectKeptOrder({power(600), power(599) + "1", nines(601), power(601)});
        // Fullwidth digits: three bytes each.
        std::string wide;
        for (int i = 0; i < 255; ++i) wide += "\uFF11";
        expectKeptOrder({nines(254), power(254), wide, "2" + std::string(254, '0')});
    }
}

namespace {

/// Letters and long runs of digits around the length at which a language's rules begin to count pieces.
std::string randomName(std::mt19937& random) {
    std::string name;
    for (std::size_t parts = 1 + random() % 3; parts > 0; --parts) {
        if (random() % 2 == 0) name += static_cast<char>('a' + random() % 3);
        const std::size_t length = random() % 4 == 0 ? random() % 4 : 250 + random() % 8;
        // Mostly alike, so that the difference stands anywhere.
        std::string digits(length, random() % 2 == 0 ? '9' : '0');
        if (length > 0 && random() % 2 == 0)
            digits[random() % length] = static_cast<char>('0' + random() % 10);
        if (length > 0 && random() % 2 == 0) digits[0] = '1';
        name += digits;
    }
    return name;
}

/// A run of digits as its length without leading zeros and the digits, anything else as it is.
std::vector<std::pair<std::size_t, std::string>> partsOf(const std::string& name) {
    std::vector<std::pair<std::size_t, std::string>> parts;
    for (std::size_t at = 0; at < name.size();) {
        const std::size_t end = std::min(name.find_first_not_of("0123456789", at), name.size());
        if (end == at) {
            parts.emplace_back(std::string::npos, std::string(1, name[at++]));
            continue;
        }
        const std::size_t first = std::min(name.find_first_not_of('0', at), end);
        parts.emplace_back(end - first, name.substr(first, end - first));
        at = end;
    }
    return parts;
}

}  // namespace

TEST(NaturalSortKey, keepsTheOrderOfValuesAmongRandomLongNumbers) {
    const ScopedLocale english("en_US.UTF-8");
    std::mt19937 random(1);
    std::vector<std::string> names(300);
    std::ranges::generate(names, [&] { return randomName(random); });
    std::vector<std::string> keys;
    std::ranges::transform(names, std::back_inserter(keys),
                           [](const auto& name) { return naturalSortKey(name); });
    std::vector<decltype(partsOf(""))> parts;
    std::ranges::transform(names, std::back_inserter(parts), partsOf);
    int decided = 0;
    for (std::size_t a = 0; a < names.size(); ++a) {
        for (std::size_t b = 0; b < names.size(); ++b) {
            const auto order = parts[a] <=> parts[b];
            if (std::is_eq(order)) continue;  // leading zeros
            ++decided;
            ASSERT_EQ(keys[a] < keys[b], std::is_lt(order)) << names[a] << "\n" << names[b];
        }
    }
    EXPECT_GT(decided, 50'000);
}

TEST(NaturalSortKey, ordersLettersWithoutRegardToCase) {
    const ScopedLocale english("en_US.UTF-8");
    expectKeptOrder({"a", "B", "c", "D"});
    expectKeptOrder({"File1", "file2", "FILE3"});
}

TEST(NaturalSortKey, letsCaseDecideOnlyBetweenOtherwiseEqualNames) {
    const ScopedLocale english("en_US.UTF-8");
    expectKeptOrder({"readme", "Readme", "README"});
    expectKeptOrder({"Readme1", "readme2", "Readme2", "Readme3"});
    expectKeptOrder({"Anna", "anna\u0301", "Berta"});
}

TEST(NaturalSortKey, putsBlanksAndSignsBeforeDigitsAndDigitsBeforeLetters) {
    const ScopedLocale english("en_US.UTF-8");
    expectKeptOrder({"a b", "a.txt", "a1", "aa"});
    expectKeptOrder({".hidden", "9", "x"});
}

TEST(NaturalSortKey, followsTheUsersLanguage) {
    const Names germanOrder{"a", "\u00E4", "b", "z"};
    const Names swedishOrder{"a", "b", "z", "\u00E4"};
    {
        const ScopedLocale german("de_DE.UTF-8");
        EXPECT_EQ(inNaturalOrder(germanOrder), germanOrder);
    }
    {
        const ScopedLocale swedish("sv_SE.UTF-8");
        EXPECT_EQ(inNaturalOrder(germanOrder), swedishOrder);
    }
}

TEST(NaturalSortKey, readsLcAllBeforeLcCollateBeforeLang) {
    const Names germanOrder{"a", "\u00E4", "z"};
    const Names swedishOrder{"a", "z", "\u00E4"};
    const ScopedLocale german("de_DE.UTF-8");
    {
        const ScopedEnvironment collate("LC_COLLATE", "sv_SE.UTF-8");
        EXPECT_EQ(inNaturalOrder(germanOrder), swedishOrder);
        const ScopedEnvironment all("LC_ALL", "de_DE.UTF-8");
        EXPECT_EQ(inNaturalOrder(germanOrder), germanOrder);
    }
    const ScopedEnvironment empty("LC_ALL", "");
    EXPECT_EQ(inNaturalOrder(germanOrder), germanOrder);
}

TEST(NaturalSortKey, takesTheCLocaleAndAnUnknownLanguageForEnglish) {
    for (const char* const name : {"C", "C.UTF-8", "POSIX", "", "xx_YY.UTF-8", "en_US_POSIX"}) {
        SCOPED_TRACE(name);
        const ScopedLocale locale(name);
        expectKeptOrder({"a", "\u00E4", "B", "c2", "C10"});
    }
}

TEST(NaturalSortKey, sortsNaturallyWhereOnlyTheOtherCategoriesAreSet) {
    const ScopedLocale nothing("");
    const ScopedEnvironment numeric("LC_NUMERIC", "sv_SE.UTF-8");
    const ScopedEnvironment time("LC_TIME", "sv_SE.UTF-8");
    expectKeptOrder({"a", "\u00E4", "B", "c2", "C10"});
    const ScopedEnvironment all("LC_ALL", "POSIX");
    expectKeptOrder({"a", "\u00E4", "B", "c2", "C10"});
}

TEST(NaturalSortKey, differsForDifferentNamesThatTheLanguageDoesNotTellApart) {
    const ScopedLocale english("en_US.UTF-8");
    expectKeptOrder({"file02", "file2"});
    expectKeptOrder({"a\x80", "a\x81", "a\xFF"});
    expectKeptOrder(
        {"a\x01"
         "b",
         "a\x02"
         "b",
         "ab"});
    expectKeptOrder({"e\u0301", "\u00E9"});
    EXPECT_EQ(naturalSortKey("same"), naturalSortKey("same"));
}

TEST(NaturalSortKey, doesNotTellTheSpellingsOfOneCharacterApart) {
    const ScopedLocale english("en_US.UTF-8");
    const std::string dotThenHat = "a\u0323\u0302";
    const std::string hatThenDot = "a\u0302\u0323";
    expectKeptOrder({dotThenHat + "x", hatThenDot + "X"});
    expectKeptOrder({hatThenDot + "x", dotThenHat + "X"});
}

TEST(NaturalSortKey, countsBlanksAndSignsWhereTheLanguagePassesOverThem) {
    const ScopedLocale thai("th_TH.UTF-8");
    expectKeptOrder({"a b", "a.txt", "a1", "aa"});
}

TEST(NaturalSortKey, isWholeForNamesOfAnyLength) {
    const ScopedLocale english("en_US.UTF-8");
    const std::string start(5000, 'x');
    expectKeptOrder({"", start + "1a", start + "2", start + "10"});
}

TEST(NaturalSortKey, isTheSameInEveryThread) {
    const ScopedLocale english("en_US.UTF-8");
    const std::string expected = naturalSortKey("File10");
    std::vector<std::string> keys(4);
    {
        std::vector<std::jthread> threads;
        threads.reserve(keys.size());
        for (std::string& key : keys) {
            threads.emplace_back([&key] {
                for (int round = 0; round < 100; ++round) key = naturalSortKey("File10");
            });
        }
    }
    EXPECT_THAT(keys, testing::Each(expected));
}

}  // namespace vantrel::text
