#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
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
