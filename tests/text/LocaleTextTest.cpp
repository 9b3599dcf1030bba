#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <memory>

#include <unicode/timezone.h>

#include "support/ScopedEnvironment.h"
#include "text/Text.h"

namespace vantrel::text {

namespace {

using test::ScopedEnvironment;
using test::ScopedLocale;

constexpr const char* noBreakSpace = "\u00A0";
constexpr const char* narrowNoBreakSpace = "\u202F";

std::string groupedIn(const char* locale, std::int64_t value) {
    const ScopedLocale scope(locale);
    return groupedDecimal(value);
}

FileTime moment(std::int64_t secondsSince1970, std::int64_t nanoseconds = 0) {
    return FileTime(std::chrono::seconds(secondsSince1970) + std::chrono::nanoseconds(nanoseconds));
}

constexpr std::int64_t julyNoon = 1'720'008'000;     // 2024-07-03 12:00:00 UTC
constexpr std::int64_t januaryNoon = 1'704'283'200;  // 2024-01-03 12:00:00 UTC

}  // namespace

TEST(GroupedDecimal, groupsByTheUsersLanguage) {
    EXPECT_EQ(groupedIn("en_US.UTF-8", 1'234'567), "1,234,567");
    EXPECT_EQ(groupedIn("de_DE.UTF-8", 1'234'567), "1.234.567");
    EXPECT_EQ(groupedIn("fr_FR.UTF-8", 1'234'567),
              std::string("1") + narrowNoBreakSpace + "234" + narrowNoBreakSpace + "567");
    EXPECT_EQ(groupedIn("hi_IN.UTF-8", 1'234'567), "12,34,567");
}

TEST(GroupedDecimal, leavesFourDigitsTogetherWhereTheLanguageDoes) {
    EXPECT_EQ(groupedIn("es_ES.UTF-8", 1'234), "1234");
    EXPECT_EQ(groupedIn("es_ES.UTF-8", 12'345), "12.345");
    EXPECT_EQ(groupedIn("pl_PL.UTF-8", 1'234), "1234");
    EXPECT_EQ(groupedIn("pl_PL.UTF-8", 12'345), std::string("12") + noBreakSpace + "345");
}

TEST(GroupedDecimal, groupsAsInEnglishInTheCLocale) {
    for (const char* const name : {"C", "POSIX", "C.UTF-8", "", "xx_YY", "en_US_POSIX", "!"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(groupedIn(name, 1'234'567), "1,234,567");
    }
}

TEST(GroupedDecimal, writesEveryValueOfItsType) {
    EXPECT_EQ(groupedIn("C", 0), "0");
    EXPECT_EQ(groupedIn("C", 999), "999");
    EXPECT_EQ(groupedIn("C", -1'234), "-1,234");
    EXPECT_EQ(groupedIn("C", std::numeric_limits<std::int64_t>::max()), "9,223,372,036,854,775,807");
    EXPECT_EQ(groupedIn("C", std::numeric_limits<std::int64_t>::min()), "-9,223,372,036,854,775,808");
}

TEST(GroupedDecimal, readsLcAllBeforeLcNumericBeforeLang) {
    const ScopedLocale english("en_US.UTF-8");
    const ScopedEnvironment date("LC_TIME", "es_ES.UTF-8");
    EXPECT_EQ(groupedDecimal(12'345), "12,345");
    const ScopedEnvironment numeric("LC_NUMERIC", "de_DE.UTF-8");
    EXPECT_EQ(groupedDecimal(12'345), "12.345");
    const ScopedEnvironment all("LC_ALL", "en_GB.UTF-8");
    EXPECT_EQ(groupedDecimal(12'345), "12,345");
}

TEST(GroupedDecimal, understandsCodesetsModifiersAndRegions) {
    EXPECT_EQ(groupedIn("de_DE@euro", 12'345), "12.345");
    EXPECT_EQ(groupedIn("de", 12'345), "12.345");
    EXPECT_EQ(groupedIn("de_CH.utf8", 12'345),
              "12\u2019"
              "345");
    EXPECT_EQ(groupedIn("sr_RS.UTF-8@latin", 12'345), "12.345");
}

TEST(FormattedDate, followsThePattern) {
    const ScopedLocale english("en_US.UTF-8");
    const ScopedEnvironment zone("TZ", "UTC");
    EXPECT_EQ(formattedDate(moment(julyNoon), "yyyy-MM-dd"), "2024-07-03");
    EXPECT_EQ(formattedDate(moment(julyNoon), "HH:mm"), "12:00");
    EXPECT_EQ(formattedDate(moment(julyNoon + 59, 999'999'999), "HH:mm:ss.SSS"), "12:00:59.999");
    EXPECT_EQ(formattedDate(moment(0), "yyyy-MM-dd HH:mm"), "1970-01-01 00:00");
    EXPECT_EQ(formattedDate(moment(-1), "yyyy-MM-dd HH:mm:ss"), "1969-12-31 23:59:59");
    EXPECT_EQ(formattedDate(moment(-1, 1), "HH:mm:ss.SSS"), "23:59:59.000") << "just after the full second";
}

TEST(FormattedDate, isInTheTimeZoneOfTheCLibrary) {
    const ScopedLocale english("en_US.UTF-8");
    {
        const ScopedEnvironment zone("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
        EXPECT_EQ(formattedDate(moment(julyNoon), "HH:mm"), "14:00");
        EXPECT_EQ(formattedDate(moment(januaryNoon), "HH:mm"), "13:00");
    }
    {
        const ScopedEnvironment zone("TZ", "XYZ11:30");
        EXPECT_EQ(formattedDate(moment(julyNoon), "yyyy-MM-dd HH:mm"), "2024-07-03 00:30");
    }
    const ScopedEnvironment zone("TZ", "");
    EXPECT_EQ(formattedDate(moment(julyNoon), "HH:mm"), "12:00");
}

TEST(FormattedDate, showsEveryDateOfFourDigitYearsAsItIs) {
    const ScopedEnvironment zone("TZ", "UTC");
    using namespace std::chrono;
    // The calendar of today all the way back, as the other programs of this system have it.
    for (const auto& [date, expected] : {std::pair{year(1) / 1 / 1, "0001-01-01 23:59"},
                                         {year(1500) / 2 / 28, "1500-02-28 23:59"},
                                         {year(1582) / 10 / 10, "1582-10-10 23:59"},
                                         {year(1677) / 9 / 20, "1677-09-20 23:59"},
                                         {year(2262) / 4 / 12, "2262-04-12 23:59"},
                                         {year(2300) / 1 / 1, "2300-01-01 23:59"},
                                         {year(2400) / 2 / 29, "2400-02-29 23:59"},
                                         {year(9999) / 12 / 31, "9999-12-31 23:59"}}) {
        const auto minutes = sys_days(date).time_since_epoch() + hours(23) + std::chrono::minutes(59);
        EXPECT_EQ(formattedDate(FileTime(FileTime::duration(minutes)), "yyyy-MM-dd HH:mm"), expected);
    }
}

TEST(FormattedDate, showsTheLastAndTheFirstOfThemForDatesBeyond) {
    for (const char* const name : {"UTC", "XYZ11:30", "XYZ-13"}) {
        const ScopedEnvironment zone("TZ", name);
        EXPECT_EQ(formattedDate(FileTime::max(), "yyyy-MM-dd HH:mm:ss"), "9999-12-31 23:59:59");
        EXPECT_EQ(formattedDate(FileTime::min(), "yyyy-MM-dd HH:mm:ss"), "0001-01-01 00:00:00");
    }
}

TEST(FormattedDate, isWrittenInTheUsersLanguage) {
    const ScopedEnvironment zone("TZ", "UTC");
    const ScopedLocale german("de_DE.UTF-8");
    EXPECT_EQ(formattedDate(moment(julyNoon), "d. MMMM yyyy"), "3. Juli 2024");
    const ScopedEnvironment spanish("LC_TIME", "es_ES.UTF-8");
    EXPECT_EQ(formattedDate(moment(julyNoon), "MMMM"), "julio");
    const ScopedEnvironment plain("LC_ALL", "C");
    EXPECT_EQ(formattedDate(moment(julyNoon), "MMMM"), "July");
}

TEST(FormattedDate, isWrittenInTheScriptThatTheModifierNames) {
    const ScopedEnvironment zone("TZ", "UTC");
    const ScopedLocale plain("C");
    const ScopedEnvironment cyrillic("LC_TIME", "sr_RS.UTF-8");
    EXPECT_EQ(formattedDate(moment(julyNoon), "MMMM"), "\u0458\u0443\u043B");
    const ScopedEnvironment latin("LC_TIME", "sr_RS.UTF-8@latin");
    EXPECT_EQ(formattedDate(moment(julyNoon), "MMMM"), "jul");
}

TEST(FormattedDate, doesNotDependOnTheTimeZoneThatIcuIsSetTo) {
    const ScopedEnvironment zone("TZ", "UTC");
    const ScopedLocale english("en_US.UTF-8");
    const std::unique_ptr<icu::TimeZone> before(icu::TimeZone::createDefault());
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("Asia/Tokyo"));
    EXPECT_EQ(formattedDate(moment(julyNoon), "HH 'hours'"), "12 hours")
        << "a pattern that is used here first";
    icu::TimeZone::setDefault(*before);
}

TEST(LocaleText, eachCategoryCountsAloneWhereNothingElseIsSet) {
    const ScopedEnvironment zone("TZ", "UTC");
    for (const char* const language : {"", "C", "C.UTF-8", "POSIX"}) {
        SCOPED_TRACE(language);
        const ScopedLocale plain(language);
        {
            const ScopedEnvironment numeric("LC_NUMERIC", "de_DE.UTF-8");
            EXPECT_EQ(groupedDecimal(12'345), "12.345");
            EXPECT_EQ(formattedDate(moment(julyNoon), "MMMM"), "July");
        }
        const ScopedEnvironment time("LC_TIME", "de_DE.UTF-8");
        EXPECT_EQ(groupedDecimal(12'345), "12,345");
        EXPECT_EQ(formattedDate(moment(julyNoon), "MMMM"), "Juli");
        const ScopedEnvironment all("LC_ALL", "C");
        EXPECT_EQ(formattedDate(moment(julyNoon), "MMMM"), "July") << "LC_ALL is above the categories";
    }
}

TEST(LocaleText, digitsAreThoseOfTheLanguage) {
    const ScopedEnvironment zone("TZ", "UTC");
    const ScopedLocale plain("C");
    const ScopedEnvironment time("LC_TIME", "fa_IR.UTF-8");
    EXPECT_EQ(formattedDate(moment(0), "HH:mm"), "\u06F0\u06F0:\u06F0\u06F0");
    EXPECT_EQ(groupedDecimal(12'345), "12,345");
    const ScopedEnvironment numeric("LC_NUMERIC", "fa_IR.UTF-8");
    EXPECT_EQ(groupedDecimal(12), "\u06F1\u06F2");
}

TEST(FormattedDate, doesNotDependOnTheLocaleThatTheCLibraryIsSetTo) {
    const ScopedEnvironment zone("TZ", "UTC");
    const ScopedLocale german("de_DE.UTF-8");
    const std::string before = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(formattedDate(moment(julyNoon), "MMMM"), "Juli");
    EXPECT_EQ(groupedDecimal(12'345), "12.345");
    std::setlocale(LC_ALL, before.c_str());
}

}  // namespace vantrel::text
