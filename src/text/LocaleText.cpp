#include "text/Text.h"

#include <algorithm>
#include <ctime>
#include <map>
#include <memory>

#include <unicode/gregocal.h>
#include <unicode/numberformatter.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include "text/Unicode.h"
#include "text/UserLocale.h"

namespace vantrel::text {

namespace {

// Four digits of a year: 0001-01-01 00:00 to the last millisecond of 9999, since 1970.
constexpr UDate firstMoment = -62'135'596'800'000;
constexpr UDate lastMoment = 253'402'300'799'999;

/// Formatters of one kind for the locale that was used last in this thread. They are not thread-safe, and
/// making one costs a thousand times what using it does.
template <class Formatter>
class LocaleCache {
public:
    /// The formatter for `key` ("" where the locale has only one), made by `make` on first use; may be null.
    template <class Make>
    Formatter* formatter(std::string_view localeName, std::string_view key, Make make) {
        if (localeName_ != localeName) {
            localeName_ = localeName;
            formatters_.clear();
        }
        auto place = formatters_.find(key);
        if (place == formatters_.end()) {
            place = formatters_.emplace(key, make(localeNamed(localeName))).first;
        }
        return place->second.get();
    }

private:
    std::string localeName_;
    std::map<std::string, std::unique_ptr<Formatter>, std::less<>> formatters_;
};

using DecimalFormatter = icu::number::LocalizedNumberFormatter;

std::unique_ptr<DecimalFormatter> makeDecimalFormatter(const icu::Locale& locale) {
    return std::make_unique<DecimalFormatter>(icu::number::NumberFormatter::withLocale(locale));
}

std::unique_ptr<icu::SimpleDateFormat> makeDateFormat(const icu::Locale& locale, std::string_view pattern) {
    UErrorCode status = U_ZERO_ERROR;
    auto format = std::make_unique<icu::SimpleDateFormat>(toUnicode(pattern), locale, status);
    if (U_FAILURE(status)) return nullptr;
    format->setTimeZone(*icu::TimeZone::getGMT());
    if (const auto* const calendar = dynamic_cast<const icu::GregorianCalendar*>(format->getCalendar())) {
        // ICU would go over to the Julian calendar in 1582, which other programs of this system do not.
        auto proleptic = std::unique_ptr<icu::GregorianCalendar>(calendar->clone());
        proleptic->setGregorianChange(firstMoment, status);
        format->adoptCalendar(proleptic.release());
    }
    return format;
}

/// Milliseconds since 1970 of the moment at which a clock in Greenwich shows what the user's clock showed at
/// `date`, or of the nearest one that can be shown. ICU knows a time zone by its name only; the C library
/// knows every TZ that POSIX allows.
UDate wallClockMoment(FileTime date) {
    // So far beyond what is shown that no time zone brings it back, and yet no trouble to any library.
    constexpr FileTime furthest{FileTime::duration(std::chrono::seconds(300'000'000'000))};
    const FileTime near = std::clamp(date, -furthest.time_since_epoch() + FileTime(), furthest);
    const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(near);
    const auto second = std::chrono::floor<std::chrono::seconds>(milliseconds);
    const auto moment = static_cast<std::time_t>(second.time_since_epoch().count());
    std::tm local{};
    const long offset = localtime_r(&moment, &local) != nullptr ? local.tm_gmtoff : 0;
    const double wallClock = (static_cast<double>(moment) + static_cast<double>(offset)) * 1000 +
                             static_cast<double>((milliseconds - second).count());
    return std::clamp(wallClock, firstMoment, lastMoment);
}

}  // namespace

std::string groupedDecimal(std::int64_t value) {
    thread_local LocaleCache<DecimalFormatter> cache;
    const DecimalFormatter* const formatter =
        cache.formatter(userLocaleName("LC_NUMERIC"), "", makeDecimalFormatter);
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString text = formatter->formatInt(value, status).toString(status);
    return U_SUCCESS(status) ? toUtf8(text) : std::to_string(value);
}

std::string formattedDate(FileTime date, std::string_view pattern) {
    thread_local LocaleCache<icu::SimpleDateFormat> cache;
    const icu::SimpleDateFormat* const format =
        cache.formatter(userLocaleName("LC_TIME"), pattern,
                        [&](const icu::Locale& locale) { return makeDateFormat(locale, pattern); });
    if (format == nullptr) return "";
    icu::UnicodeString text;
    return toUtf8(format->format(wallClockMoment(date), text));
}

}  // namespace vantrel::text
