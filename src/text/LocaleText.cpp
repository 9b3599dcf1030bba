#include "text/Text.h"

#include <ctime>
#include <map>
#include <memory>

#include <unicode/numberformatter.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include "text/Unicode.h"
#include "text/UserLocale.h"

namespace vantrel::text {

namespace {

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
    return format;
}

/// Milliseconds since 1970 of the moment at which a clock in Greenwich shows what the user's clock showed at
/// `date`. ICU knows a time zone by its name only; the C library knows every TZ that POSIX allows.
UDate wallClockMoment(FileTime date) {
    // By way of milliseconds: the second that holds the first moment begins too early for nanoseconds.
    const auto wholeMilliseconds = std::chrono::floor<std::chrono::milliseconds>(date);
    const auto seconds = std::chrono::floor<std::chrono::seconds>(wholeMilliseconds);
    const auto milliseconds = wholeMilliseconds - seconds;
    const std::time_t moment = seconds.time_since_epoch().count();
    std::tm local{};
    const long offset = localtime_r(&moment, &local) != nullptr ? local.tm_gmtoff : 0;
    return (static_cast<double>(moment) + static_cast<double>(offset)) * 1000 +
           static_cast<double>(milliseconds.count());
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
